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
        Columns<QString, QVector<QVariant>, QStringList, QString, QString>("header", "second", "codes", "read",
                                                                           "noted");
        const QStringList numbered{"C2", "C3"};
        const QStringList words{"NERI", "BIANCHI"};
        const QStringList mixed{"C2", "BIANCHI"};
        const auto row = [](const char* name, const char* header, const QVector<QVariant>& second,
                            const QStringList& codes, const char* read,
                            const char* noted) { Row(name, header, second, codes, read, noted); };
        row("captions", "Cod", {"Codice", "Sconto 1", "="}, words, "3,5", "");
        for (const char* code : {"CodArt", "Articolo", "ID", "Cod_Art", "Sigla cliente", "cod"}) {
            row(code, "Cod", {code, "Nome"}, words, "3,5", "");
        }
        row("captions unlike the codes", "Cod", {"Mnemonico", "Nome", "Prezzo"}, numbered, "3,5", "");
        row("unlike the codes, not of each column", "Cod", {"ROSSI", "Rossi"}, numbered, "3,5",
            "'ROSSI' può essere un dato");
        row("a code", "Cod", {"C1", "Rossi"}, numbered, "3,5", "colonna 'Cod': 'C1' sembra un dato");
        row("a code like those below", "Cod", {"ROSSI", "Rossi", "Roma"}, words, "3,5", "'ROSSI' può essere un dato");
        row("begins like a caption", "Cod", {"CODOGNO", "Rossi", "Roma"}, mixed, "3,5", "'CODOGNO' può essere un dato");
        row("a number beside", "Cod", {"Codice", "Rossi", "02345678901"}, numbered, "3,5",
            "colonna 'IVA': '02345678901' sembra un dato");
        row("beyond the header", "Cod", {"Codice", "Rossi", {}, 7}, numbered, "3,5", "riga 2: '7' sembra");
        row("own, a code", "Codice cliente", {"C1", "Rossi"}, numbered, "2,3,5", "");
        row("own, a code like those below", "Codice cliente", {"ROSSI", "Rossi"}, words, "2,3,5", "");
        row("own, a code like some below", "Codice cliente", {"ROSSI", "Rossi"}, mixed, "2,3,5",
            "FORSE DIDASCALIE: File");
        row("own, captions", "Codice cliente", {"Cod.", "Nome"}, words, "3,5", "'Cod.' sembra una didascalia");
        row("own, other captions", "Codice cliente", {"Articolo", "Descrizione"}, mixed, "3,5",
            "'Articolo' sembra una didascalia");
        row("own, captions unlike the codes", "Codice cliente", {"Mnemonico", "Nome"}, numbered, "3,5",
            "'Mnemonico' sembra una didascalia");
        row("own, without a code", "Codice cliente", {{}, "Anagrafica"}, numbered, "3,5",
            "'Anagrafica' può essere un dato");
        row("own, blank", "Codice cliente", {}, numbered, "3,5", "");
        row("own, its header again", "Codice cliente", {"Codice cliente", "Nome"}, numbered, "3,5", "RIPETUTA: File");
    }
    void TellsDataFromCaptions() {
        QFETCH(const QString, header);
        QFETCH(const QVector<QVariant>, second);
        QFETCH(const QStringList, codes);
        QFETCH(const QString, noted);
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.xlsx");
        const auto file = sources::TableWriter::Create(path, "F", {header, "Nome", "IVA"});
        for (QVector<QVariant> row :
             {second, {codes[0], "Rossi"}, {header, "Nome"}, {codes[1], "X"}, {{}, "3"}, {"C9", "Y"}}) {
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
        QCOMPARE(all.contains("RIGA SOPRA I DATI"), noted.contains("sembra") || noted.contains("può essere"));
        QCOMPARE(all.contains("FORSE DIDASCALIE"), noted.contains("FORSE"));
        QVERIFY2(all.contains("RIGHE OLTRE LA FINE") &&
                     all.contains("riga 6: i dati finiscono alla prima riga senza '" + header + "'") &&
                     all.contains("(così 2 volte)"),
                 qPrintable(all));
    }
};
QUADRIX_TEST(SheetRowsTest)
#include "test_sheetRows.moc"
