#include "sources/tableFile.h"
#include "sources/workbookFile.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

using namespace sourcesTest;

/// Which rows of a sheet are its data.
class SheetRowsTest : public QObject {
    Q_OBJECT

private slots:
    /// A sheet made for the module has captions in its second row; one of somebody's own begins there.
    void TellsDataFromCaptions_data() {
        Columns<QString, QVector<QVariant>, QString, QString>("header", "second", "read", "noted");
        Row("captions", "Cod", QVector<QVariant>{"Codice", "Sconto 1", "="}, "3,5", "");
        Row("a code", "Cod", QVector<QVariant>{"C1", "Rossi"}, "3,5", "colonna 'Cod': 'C1' sembra un dato");
        Row("a code without a digit", "Cod", QVector<QVariant>{"ROSSI", "Rossi"}, "3,5", "'ROSSI' sembra un dato");
        Row("a number beside", "Cod", QVector<QVariant>{"Codice", "Rossi", "02345678901"}, "3,5",
            "colonna 'IVA': '02345678901' sembra un dato");
        Row("beyond the header", "Cod", QVector<QVariant>{"Codice", "Rossi", {}, 7}, "3,5", "riga 2: '7' sembra");
        Row("own, a code", "Codice cliente", QVector<QVariant>{"ROSSI", "Rossi"}, "2,3,5", "");
        Row("own, captions", "Codice cliente", QVector<QVariant>{"Cod.", "Nome"}, "3,5",
            "'Cod.' sembra una didascalia");
        Row("own, without a code", "Codice cliente", QVector<QVariant>{{}, "Anagrafica"}, "3,5",
            "'Anagrafica' sembra un dato");
        Row("own, blank", "Codice cliente", QVector<QVariant>{}, "3,5", "");
        Row("own, its header again", "Codice cliente", QVector<QVariant>{"Codice cliente", "Nome"}, "3,5",
            "RIPETUTA: File");
    }
    void TellsDataFromCaptions() {
        QFETCH(const QString, header);
        QFETCH(const QVector<QVariant>, second);
        QFETCH(const QString, noted);
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.xlsx");
        const auto file = sources::TableWriter::Create(path, "F", {header, "Nome", "IVA"});
        for (QVector<QVariant> row : {second, {"C2", "Rossi"}, {header, "Nome"}, {"C3", "X"}, {{}, "3"}, {"C9", "Y"}}) {
            row.resize(std::max<qsizetype>(row.size(), 3));
            file->AddRow(row);
        }
        file->Close();
        ConnectionSettings settings;
        QStringList notes;
        settings.note = [&notes](const QString& note) { notes.append(note); };
        const auto engine = sources::OpenWorkbookFile(
            path, settings, {{.table = "T", .firstRow = 3, .end = {"Cod"}, .endInFile = {header}}});
        QTEST(Values(*engine, "SELECT _RIGA FROM T"), "read");
        const QString all = notes.join('\n');
        QVERIFY2(all.contains(noted), qPrintable(all));
        QCOMPARE(all.contains("RIGA SOPRA I DATI"), noted.contains("sembra"));
        QVERIFY2(all.contains("RIGHE OLTRE LA FINE") &&
                     all.contains("riga 6: i dati finiscono alla prima riga senza '" + header + "'") &&
                     all.contains("(così 2 volte)"),
                 qPrintable(all));
    }
};
QUADRIX_TEST(SheetRowsTest)
#include "test_sheetRows.moc"
