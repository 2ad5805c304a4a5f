#include "tests/cli/CliRun.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QJsonArray>
#include <QTest>

class TestMergeCommand : public QObject {
    Q_OBJECT

    CliRun m_run;

private slots:
    void initTestCase() {
        QCOMPARE(m_run.CreateCompany().exitCode, 0);
        QCOMPARE(m_run.Run({"create-database", "--company", "X02", "--name", "Prova Due"}).exitCode, 0);
        m_run.Value(
            "INSERT INTO X01_CON_TRO (CDCON, CORAS, COIVA) VALUES ('000001', 'Rossi', '01'), ('000002', 'Verdi', '')");
        m_run.Value("INSERT INTO X02_CON_TRO (CDCON, CORAS, COIVA) VALUES ('000009', 'Rossi S.r.l.', '01')");
        m_run.Value("INSERT INTO X01_DOC_VEN (DTNUM, DTCON) VALUES (1, '000002')");
    }

    void refusals_data() {
        Columns<QStringList, int, QString>("arguments", "exitCode", "told");
        Row("without confirmation", QStringList{"--from", "X01", "--to", "X02"}, 2, "--yes");
        Row("without destination", QStringList{"--from", "X01", "--yes"}, 2, "--to");
        Row("unknown company", QStringList{"--from", "X01", "--to", "X09", "--yes"}, 2, "'X09' non esiste");
        Row("same company", QStringList{"--from", "X01", "--to", "x01", "--preview"}, 2, "diverse");
    }
    void refusals() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const QString before = m_run.Value("SELECT COUNT(*) FROM X02_CON_TRO");
        const auto ended = m_run.Run(QStringList("merge") + arguments);
        QTEST(ended.exitCode, "exitCode");
        QVERIFY2(ended.errors.contains(told), qPrintable(ended.errors));
        QCOMPARE(m_run.Value("SELECT COUNT(*) FROM X02_CON_TRO"), before);
    }

    void previewsThenMerges() {
        const auto preview = m_run.Run({"merge", "--from", "X01", "--to", "X02", "--preview", "--json"});
        QCOMPARE(preview.exitCode, 0);
        QCOMPARE(preview.Json()["matches"].toArray().at(0).toObject(), (QJsonObject{{"oldCode", "000001"},
                                                                                    {"oldName", "Rossi"},
                                                                                    {"newCode", "000009"},
                                                                                    {"newName", "Rossi S.r.l."},
                                                                                    {"criterion", "PARTITA IVA"}}));
        QCOMPARE(m_run.Value("SELECT COUNT(*) FROM X02_CON_TRO"), QString("1"));

        const auto merged =
            m_run.Run({"merge", "--from", "x01", "--to", "x02", "--update-references", "--yes", "--json"});
        QCOMPARE(merged.exitCode, 0);
        const QJsonObject json = merged.Json();
        QCOMPARE(json["outcome"].toString(), QString("done"));
        QCOMPARE(json["merged"].toInt(), 2);
        QCOMPARE(json["criteria"].toObject()["NUOVO!!!!"].toInt(), 1);
        QCOMPARE(json["copied"].toObject()["CON_TRO"].toInt(), 1);
        QCOMPARE(json["referencesUpdated"].toInt(), 1);
        QCOMPARE(m_run.Value("SELECT CORAS FROM X02_CON_TRO WHERE CDCON = '000010'"), QString("Verdi"));
        QCOMPARE(m_run.Value("SELECT DTCON FROM X01_DOC_VEN"), QString("000010"));

        const QJsonObject run = m_run.Run({"history", "--json"}).Json()["runs"].toArray().first().toObject();
        QCOMPARE(run["work"].toString(), QString("fusione delle controparti di X01 in quelle di X02"));
        QCOMPARE(run["company"].toString(), QString("X02"));
        QCOMPARE(run["procedures"][0]["written"]["CON_TRO"]["inserted"].toInt(), 1);
        const QString log = m_run.Run({"history", "--run", QString::number(run["run"].toInt()), "--log"}).output;
        QVERIFY2(log.contains("NUOVO!!!!"), qPrintable(log));
    }

    /// Once more is refused, and told which merge was done; only the option by its own name re-points again.
    void secondMergeOfReferencesIsRefused() {
        const QStringList merge{"merge", "--from", "X01", "--to", "X02", "--yes"};
        const auto again = m_run.Run(merge + QStringList("--update-references"));
        QCOMPARE(again.exitCode, 1);
        QVERIFY2(again.errors.contains("La fusione di X01 Prova Uno in X02 Prova Due, con l'aggiornamento dei "
                                       "riferimenti, è già stata fatta"),
                 qPrintable(again.errors));
        QVERIFY(again.errors.contains("--update-references-again"));
        const auto preview =
            m_run.Run(QStringList(merge).replaceInStrings("--yes", "--preview") + QStringList("--update-references"));
        QVERIFY2(preview.exitCode == 0 && preview.output.contains("è già stata fatta"), qPrintable(preview.output));
        QCOMPARE(m_run.Value("SELECT DTCON FROM X01_DOC_VEN"), QString("000010"));
        m_run.Value("INSERT INTO X01_CON_TRO (CDCON, CORAS) VALUES ('000003', 'Gialli')");
        for (const QString how : {"--preview", "--yes"}) {
            const auto copying = m_run.Run({"merge", "--from", "X01", "--to", "X02", how});
            QCOMPARE(copying.exitCode, how == "--yes" ? 1 : 0);
            QVERIFY((how == "--yes" ? copying.errors : copying.output).contains("la prima: 000003 Gialli"));
        }
        QCOMPARE(m_run.Run(merge + QStringList("--update-references-again")).exitCode, 0);
    }

    /// Copies into a company that was merged itself want the option of that name.
    void copiesIntoAMergedCompanyAreRefused() {
        QCOMPARE(m_run.Run({"create-database", "--company", "X03", "--name", "Prova Tre"}).exitCode, 0);
        m_run.Value("INSERT INTO X03_CON_TRO (CDCON, CORAS) VALUES ('000001', 'Zeta')");
        const QStringList merge{"merge", "--from", "X03", "--to", "X01"};
        const auto refused = m_run.Run(merge + QStringList("--yes"));
        QCOMPARE(refused.exitCode, 1);
        QVERIFY2(refused.errors.contains("--into-merged"), qPrintable(refused.errors));
        const auto preview = m_run.Run(merge + QStringList("--preview"));
        QVERIFY2(preview.exitCode == 0 && preview.output.contains("la prima: 000001 Zeta"), qPrintable(preview.output));
        // Behind the button a question comes that the answers were not given for.
        const auto pressed =
            m_run.Run({"import", "--company", "X02", "--origin", "Kordel NetSuite", "--data", "disegni", "--input",
                       "X03", "--input", "X01", "--answer", "no", "--answer", "yes"});
        QCOMPARE(pressed.exitCode, 1);
        QVERIFY2(pressed.errors.contains("merge --into-merged"), qPrintable(pressed.errors + pressed.output));
        QCOMPARE(m_run.Run(merge + QStringList{"--yes", "--into-merged"}).exitCode, 0);
    }
};

QUADRIX_TEST(TestMergeCommand)
#include "test_mergeCommand.moc"
