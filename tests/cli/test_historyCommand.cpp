#include "examples/examples.h"
#include "sources/tableFile.h"
#include "tests/cli/CliRun.h"
#include "tests/support/embedded.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QJsonArray>
#include <QTest>

/// The runs that the program keeps, by the command line.
class TestHistoryCommand : public QObject {
    Q_OBJECT

    CliRun m_run;

    CliRun::Ended History(const QStringList& arguments) const { return m_run.Run(QStringList("history") + arguments); }

private slots:
    void initTestCase() {
        const QString source = m_run.Folder.filePath("fonte");
        examples::Options options;
        options.rows = 20;
        options.folder = source;
        options.company = "X01";
        QDir().mkpath(source);
        examples::Make("arca2000", options);
        m_run.Set("IMPORT", "Databasename", source);
        QCOMPARE(m_run.CreateCompany().exitCode, 0);
        const auto imported = m_run.Run({"import", "--company", "X01", "--origin", "Arca 2000", "--data", "cli",
                                         "--errors", "ignore", "--answer", "no"});
        QVERIFY2(imported.exitCode == 0 || imported.exitCode == 4, qPrintable(imported.errors));
    }

    void refusals_data() {
        Columns<QStringList, int, QString>("arguments", "exitCode", "told");
        Row("no number", QStringList{"--run", "uno"}, 2, "--run: 'uno' non è il numero di un'esecuzione");
        Row("no such run", QStringList{"--run", "9"}, 1, "9");
        Row("no such company", QStringList{"--company", "X99"}, 2, "L'azienda 'X99' non esiste");
        Row("notes of no run", QStringList{"--notes", "note.csv"}, 2, "--notes vale con --run");
        Row("notes of another kind of file", QStringList{"--run", "1", "--notes", "note.pdf"}, 1,
            "il nome deve finire in .csv o .xlsx");
        Row("no day", QStringList{"--forget-before", "2024-01-01", "--yes"}, 2, "non è una data GG/MM/AAAA");
        Row("forgetting one run", QStringList{"--run", "1", "--forget-before", "01/01/2024", "--yes"}, 2,
            "--run non vale con --forget-before");
        Row("log and rejects", QStringList{"--run", "1", "--log", "--rejects", "r.csv"}, 2,
            "--rejects non vale con --log");
        Row("how many go", QStringList{"--company", "X01", "--forget-before", "01/01/2999"}, 2,
            "le esecuzioni dell'azienda X01 cominciate prima del 01/01/2999, che sono 1");
        Row("forgetting unconfirmed", QStringList{"--forget-before", "01/01/2024"}, 2, "--yes");
    }
    void refusals() {
        QFETCH(QString, told);
        QFETCH(QStringList, arguments);
        const auto ended = History(arguments);
        QTEST(ended.exitCode, "exitCode");
        QVERIFY2(ended.errors.contains(told), qPrintable(ended.errors));
    }

    /// What --yes answers names the rows of a hand that are left behind.
    void asksAboutWhatRefers() {
        ovConnection quadrix;
        OpenEmbedded(quadrix, m_run.Database())
            .Execute("INSERT INTO X01_ART_FOR (CDART, CDCON) SELECT 'A', MIN(CDCON) FROM X01_CON_TRO");
        const auto asked = m_run.Run({"undo", "--run", "1"});
        QCOMPARE(asked.exitCode, 2);
        QVERIFY2(asked.errors.contains("lascia righe che vi si riferiscono (X01_ART_FOR (CDCON): 1): ripetere"),
                 qPrintable(asked.errors));
        const auto tried = m_run.Run({"undo", "--run", "1", "--dry-run", "--json"});
        QCOMPARE(tried.exitCode, 4);
        QCOMPARE(tried.Json()["leftReferring"].toArray().at(0)["table"].toString(), QString("X01_ART_FOR"));
    }

    /// What is told of a run by row is the same in JSON and in a table, and goes with the run.
    void tellsNotesByRow() {
        const QJsonObject run = History({"--run", "1", "--json"}).Json();
        QCOMPARE(run["origin"].toString(), QString("Arca 2000"));
        const QJsonArray notes = run["annotations"].toArray();
        const QString file = m_run.Folder.filePath("note.csv");
        QCOMPARE(History({"--run", "1", "--notes", file}).exitCode, 0);
        const sources::TableOfFile table = sources::ReadTable(file);
        QVERIFY(!notes.isEmpty());
        QCOMPARE(qsizetype(table.rows.size()), notes.size());
        for (qsizetype i = 0; i < notes.size(); ++i) {
            const QJsonObject note = notes.at(i).toObject();
            const QStringList values{note["kind"].toString(), note["procedure"].toString(), note["row"].toString(),
                                     note["text"].toString(), note["done"].toBool() ? "sì" : "no"};
            QCOMPARE(values, table.rows.at(static_cast<size_t>(i)).values);
        }

        QCOMPARE(History({"--forget-before", "01/01/2000", "--yes", "--json"}).Json()["forgotten"].toInt(), 0);
        m_run.Run({"create-database", "--company", "X02", "--name", "Prova Due"});
        const QStringList ofAnother{"--company", "X02", "--forget-before", "01/01/2999", "--yes", "--json"};
        QCOMPARE(History(ofAnother).Json()["forgotten"].toInt(), 0);
        QCOMPARE(History({"--json"}).Json()["runs"].toArray().size(), 1);
        QCOMPARE(History({"--forget-before", "01/01/2999", "--yes", "--json"}).Json()["forgotten"].toInt(), 1);
        QCOMPARE(History({"--json"}).Json()["runs"].toArray().size(), 0);
    }

    /// So does the result of an import that empties, which asks nobody.
    void tellsWhatAResetLeaves() {
        const auto ended = m_run.Run({"import", "--company", "X01", "--origin", "Arca 2000", "--data", "cli",
                                      "--errors", "ignore", "--answer", "no", "--reset", "--dry-run"});
        QVERIFY2(ended.output.contains("si riferiscono a ciò che si elimina: X01_ART_FOR (CDCON): 1"),
                 qPrintable(ended.output + ended.errors));
    }
};

QUADRIX_TEST(TestHistoryCommand)
#include "test_historyCommand.moc"
