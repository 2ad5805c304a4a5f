#include "sources/tableFile.h"
#include "tests/cli/CliRun.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QJsonArray>
#include <QTest>

class TestTemplateCommand : public QObject {
    Q_OBJECT

private slots:
    void refusals_data() {
        Columns<QStringList, int, QString>("arguments", "exitCode", "told");
        Row("nothing told", QStringList{}, 2, "Mancano le opzioni --data, --output");
        Row("no such sheet", QStringList{"--data", "dis", "--output", "a.xlsx"}, 2, "valori ammessi: cli, art");
        Row("another kind of file", QStringList{"--data", "cli", "--output", "a.csv"}, 1, "deve finire in .xlsx");
        Row("no database", QStringList{"--data", "cli", "--output", "a.xlsx", "--company", "X01"}, 1, "quadrix.db");
    }
    void refusals() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const CliRun run;
        const auto ended = run.Run(QStringList("template") + arguments);
        QTEST(ended.exitCode, "exitCode");
        QVERIFY2(ended.errors.contains(told), qPrintable(ended.errors));
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
        const auto imported =
            run.Run({"import", "--company", "X01", "--origin", "Excel", "--data", "cli", "--file", file});
        QVERIFY2(imported.exitCode == 0, qPrintable(imported.output + imported.errors));
    }

    /// What is left open is done with the file that was chosen: it is asked for again.
    void namesTheFileAgain() {
        const CliRun run;
        QCOMPARE(run.CreateCompany().exitCode, 0);
        const QString file = run.Folder.filePath("i clienti.xlsx");
        const auto sheet =
            sources::TableWriter::Create(file, "CLIENTI", {"COCGE", "CORAS", "CORA2", "COIVA", "COFIS", "COSC1"});
        sheet->AddRow({"Codice", "Nome", "Nome", "P.IVA", "C.F.", "Sconto"});
        sheet->AddRow({"C1", "Rossi", "", "", "", "x"});
        sheet->Close();
        const auto ended = run.Run(
            {"import", "--company", "X01", "--origin", "Excel", "--data", "cli", "--file", file, "--errors", "ignore"});
        QVERIFY2(ended.output.contains("import --rejects-of 1 --mended FILE --file \"" + file + '"'),
                 qPrintable(ended.output + ended.errors));
    }
};

QUADRIX_TEST(TestTemplateCommand)
#include "test_templateCommand.moc"
