#include "sources/tableFile.h"
#include "tests/cli/CliRun.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QJsonArray>
#include <QTest>

class TestTemplateCommand : public QObject {
    Q_OBJECT

    /// A sheet with a row of each of these codes, whose discount is no number.
    static void WriteSheet(const QString& file, const QStringList& codes) {
        const auto sheet =
            sources::TableWriter::Create(file, "CLIENTI", {"COCGE", "CORAS", "CORA2", "COIVA", "COFIS", "COSC1"});
        sheet->AddRow({"Codice", "Nome", "Nome", "P.IVA", "C.F.", "Sconto"});
        for (const QString& code : codes) {
            sheet->AddRow({code, QString("Ditta " + code), "", "", "", "x"});
        }
        sheet->Close();
    }

private slots:
    void refusals_data() {
        Columns<QStringList, int, QString>("arguments", "exitCode", "told");
        Row("nothing told", QStringList{}, 2, "Mancano le opzioni --data, --output");
        Row("no such sheet", QStringList{"--data", "dis", "--output", "a.xlsx"}, 2, "valori ammessi: cli, art");
        Row("another kind of file", QStringList{"--data", "cli", "--output", "a.csv"}, 1, "deve finire in .xlsx");
        Row("no folder", QStringList{"--data", "cli", "--output", "nessuna/a.xlsx"}, 1, "nessuna' non c'è");
        Row("no database", QStringList{"--data", "cli", "--output", "a.xlsx", "--company", "X01"}, 1, "quadrix.db");
    }
    void refusals() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const CliRun run;
        const auto ended = run.Run(QStringList("template") + arguments);
        QTEST(ended.exitCode, "exitCode");
        QVERIFY2(ended.errors.contains(told) && !ended.errors.contains("[ERROR]"), qPrintable(ended.errors));
    }

    /// Written for a company, and imported as it is; without a company no database is needed.
    void writesAndImports() {
        const CliRun run;
        const QString file = run.Folder.filePath("clienti.xlsx");
        const auto bare = run.Run({"template", "--data", "CLI", "--output", file});
        QVERIFY2(bare.exitCode == 0 && bare.output.contains("nessun codice da scegliere"), qPrintable(bare.output));
        QCOMPARE(run.CreateCompany().exitCode, 0);
        const auto written = run.Run({"template", "--data", "cli", "--output", file, "--company", "x01", "--json"});
        QVERIFY2(written.exitCode == 0, qPrintable(written.errors));
        QVERIFY(written.Json()["lists"].toArray().contains("Valute"));
        QVERIFY(written.Json()["codes"].toInt() > 0);
        const QString other = run.Folder.filePath("articoli.xlsx"); // made for the wrong data, and nothing in it yet
        for (const char* data : {"art", "cli", "art"}) {
            QCOMPARE(run.Run({"template", "--data", data, "--output", other}).exitCode, 0);
        }
        const auto imported =
            run.Run({"import", "--company", "X01", "--origin", "Excel", "--data", "cli", "--file", file});
        QVERIFY2(imported.exitCode == 0, qPrintable(imported.output + imported.errors));
    }

    /// What is left open is done with the file that was chosen: it is asked for again.
    void namesTheFileAgain() {
        const CliRun run;
        QCOMPARE(run.CreateCompany().exitCode, 0);
        const QString file = run.Folder.filePath("i clienti.xlsx");
        WriteSheet(file, {"C1"});
        const auto ended = run.Run(
            {"import", "--company", "X01", "--origin", "Excel", "--data", "cli", "--file", file, "--errors", "ignore"});
        QVERIFY2(ended.output.contains("import --rejects-of 1 --mended FILE --file \"" + file + '"'),
                 qPrintable(ended.output + ended.errors));
    }

    /// A row that was mended is the same wherever its sheet has it now; those that do not come are told.
    void findsMendedRowsThatMoved_data() {
        Columns<QStringList, int, int>("codes", "exitCode", "inserted");
        Row("where they were", QStringList{"C1", "C2"}, 0, 2);
        Row("another one above", QStringList{"C0", "C1", "C2"}, 0, 2);
        Row("in each other's place", QStringList{"C2", "C1"}, 0, 2);
        Row("a twin that is nobody's", QStringList{"C1", "C1", "C2"}, 0, 2);
        Row("one gone", QStringList{"C2"}, 4, 1);
        Row("all gone", QStringList{"C3"}, 4, 0);
    }
    void findsMendedRowsThatMoved() {
        QFETCH(QStringList, codes);
        const CliRun run;
        QCOMPARE(run.CreateCompany().exitCode, 0);
        const QString file = run.Folder.filePath("clienti.xlsx");
        const QString rejects = run.Folder.filePath("scarti.csv");
        WriteSheet(file, {"C1", "C2"});
        QCOMPARE(run.Run({"import", "--company", "X01", "--origin", "Excel", "--data", "cli", "--file", file,
                          "--errors", "ignore"})
                     .exitCode,
                 4);
        QCOMPARE(run.Run({"history", "--run", "1", "--rejects", rejects}).exitCode, 0);
        WriteFile(rejects, ReadFile(rejects).replace(";x", ";5"));
        WriteSheet(file, codes);
        const auto ended = run.Run({"import", "--rejects-of", "1", "--mended", rejects, "--file", file, "--json"});
        QTEST(ended.exitCode, "exitCode");
        QTEST(ended.Json()["inserted"].toInt(), "inserted");
        QCOMPARE(ended.Json()["outcome"].toString(), QString(ended.exitCode == 0 ? "done" : "incomplete"));
    }
};

QUADRIX_TEST(TestTemplateCommand)
#include "test_templateCommand.moc"
