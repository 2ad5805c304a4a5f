#include "examples/examples.h"
#include "tests/cli/CliRun.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QJsonArray>
#include <QTest>

class TestCodesCommand : public QObject {
    Q_OBJECT

    CliRun m_run;

    CliRun::Ended Codes(const QStringList& arguments) const {
        return m_run.Run(QStringList("codes") + arguments + QStringList{"--company", "X01"});
    }

private slots:
    void initTestCase() {
        QCOMPARE(m_run.CreateCompany().exitCode, 0);
        m_run.Value("INSERT INTO TAB_MOP (CDMOP, MPDES) VALUES ('RD', 'Rimessa diretta')");
        m_run.Value("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('anagrafe', 'pag', '007', ''), "
                    "('ARCLFR', 'ZONCLFOR', '1', '')");
    }

    void refusals_data() {
        Columns<QStringList, int, QString>("arguments", "exitCode", "told");
        Row("no word", QStringList{}, 2, "manca una parola tra list, values, set, export, import, apply");
        Row("no such word", QStringList("lst"), 2, "'codes lst' non esiste: forse 'list'?");
        Row("no code", QStringList{"set", "--table", "anagrafe"}, 2, "Mancano le opzioni --field, --old");
        Row("unknown code", QStringList{"set", "--table", "anagrafe", "--field", "pag", "--old", "007", "--new", "XX"},
            1, "'XX' non è in TAB_MOP");
        Row("descriptions of nobody", QStringList{"list", "--describe"}, 2, "--origin");
        Row("a trial of a code", QStringList{"set", "--table", "anagrafe", "--dry-run"}, 2,
            "--dry-run non vale con set: vale con apply");
        Row("a trial of a file", QStringList{"import", "--in", "a.csv", "--dry-run"}, 2,
            "--dry-run non vale con import");
        Row("a file without its source", QStringList{"list", "--file", "a.db"}, 2, "Risposte --file in più: 1");
        Row("a field that is none", QStringList{"list", "--field", "pgg"}, 1, "i codici di 'pgg': forse 'pag'?");
        Row("a list of another origin", QStringList{"list", "--origin", "Gescom", "--table", "anagrafe"}, 1,
            "l'origine 'Gescom' non chiede i codici di 'anagrafe'");
        Row("a file of another kind", QStringList{"export", "--out", "c.txt"}, 1, "deve finire in .csv o .xlsx");
        Row("a folder that is not there", QStringList{"export", "--out", "nessuna/c.xlsx"}, 1, "nessuna' non c'è");
        Row("a list that is none", QStringList{"list", "--table", "anagrafe", "--field", "pgg"}, 1, "'anagrafe.pgg'");
    }
    void refusals() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const auto ended = Codes(arguments);
        QTEST(ended.exitCode, "exitCode");
        QVERIFY2(ended.errors.contains(told) && !ended.errors.contains("[ERROR]"), qPrintable(ended.errors));
    }

    /// Listed, exported, filled in wrongly and then rightly, until nobody waits.
    void worksTheListOff() {
        const auto listed = Codes({"list", "--origin", "Arca 2000", "--json"});
        QCOMPARE(listed.exitCode, 4);
        QCOMPARE(listed.Json()["open"].toInt(), 1);
        const QJsonObject code = listed.Json()["codes"].toArray().at(0).toObject();
        QCOMPARE(code["oldCode"].toString(), QString("007"));
        QCOMPARE(code["baseTables"].toArray(), QJsonArray{"TAB_MOP"});

        const QJsonObject others = Codes({"list", "--table", "arclfr", "--json"}).Json();
        QCOMPARE(others["codes"].toArray().size(), 1);
        QCOMPARE(others["codes"].toArray().first().toObject()["table"].toString(), QString("ARCLFR"));

        const QString file = m_run.Folder.filePath("codici.csv");
        QCOMPARE(Codes({"export", "--out", file}).exitCode, 0);
        const QByteArray written = ReadFile(file);
        const auto fill = [&](const QByteArray& term, const QByteArray& zone) {
            QByteArray filled = written;
            filled.replace("codice di TAB_MOP;", QByteArray("codice di TAB_MOP;" + term));
            filled.replace("caratteri\";", QByteArray("caratteri\";" + zone));
            WriteFile(file, filled);
            return Codes({"import", "--in", file});
        };
        const auto wrong = fill("R D", "NORD");
        QCOMPARE(wrong.exitCode, 1);
        QVERIFY2(wrong.output.startsWith("Riga 2, colonna 'Nuovo codice': 'R D' non è in TAB_MOP: forse 'RD' (Rimessa "
                                         "diretta)?"),
                 qPrintable(wrong.output));
        QCOMPARE(m_run.Value("SELECT COUNT(*) FROM SYS_IMP WHERE TBNEW <> ''"), QString("0"));
        const auto right = fill("rd", "NORD");
        QVERIFY2(right.exitCode == 0, qPrintable(right.output + right.errors));
        QCOMPARE(m_run.Value("SELECT TBNEW FROM SYS_IMP WHERE TBOLD = '007'"), QString("RD"));
        QCOMPARE(Codes({"list"}).exitCode, 0);

        QCOMPARE(Codes({"set", "--table", "anagrafe", "--field", "pag", "--old", "8", "--new", "vf", "--create",
                        "--description", "Vista fattura"})
                     .exitCode,
                 0);
        QCOMPARE(m_run.Value("SELECT MPDES FROM TAB_MOP WHERE CDMOP = 'VF'"), QString("Vista fattura"));
    }

    /// What the imports ask that are done again is asked for before they begin.
    void appliesWithAnAnswer() {
        examples::Options options;
        options.rows = 20;
        options.folder = m_run.Folder.filePath("fonte");
        options.company = "X01";
        QDir().mkpath(options.folder);
        examples::Make("arca2000", options);
        m_run.Set("IMPORT", "Databasename", options.folder);
        m_run.Run({"import", "--company", "X01", "--origin", "Arca 2000", "--data", "cli", "--answer", "no"});
        m_run.Value("UPDATE SYS_IMP SET TBNEW = 'RD' WHERE TBFLD = 'pag' AND TBNEW = ''");
        const QString blank = "SELECT COUNT(*) FROM X01_CON_TRO WHERE COALESCE(COMOP, '') = '' AND COCLI = 1";
        const int before = m_run.Value(blank).toInt();
        const auto unanswered = Codes({"apply"});
        QCOMPARE(unanswered.exitCode, 2);
        QVERIFY2(unanswered.errors.contains("Manca la risposta a"), qPrintable(unanswered.errors));
        m_run.Set("IMPORT", "Databasename", options.folder + "-altrove");
        const auto unopened = Codes({"apply", "--dry-run", "--answer", "no"});
        QVERIFY2(unopened.exitCode == 1 && !unopened.output.contains("Nessuna cella") &&
                     unopened.output.contains("La prova non è arrivata alla fine"),
                 qPrintable(unopened.output));
        m_run.Set("IMPORT", "Databasename", options.folder);
        const auto answered = Codes({"apply", "--answer", "no"});
        QVERIFY2(m_run.Value(blank).toInt() < before, qPrintable(answered.output + answered.errors));
        QVERIFY(Codes({"apply"}).output.contains("Nessuna riga importata attende"));
    }
};

QUADRIX_TEST(TestCodesCommand)
#include "test_codesCommand.moc"
