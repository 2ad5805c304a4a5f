#include "sources/workbookFile.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

#include <xlsxwriter.h>
#include <zip.h>

using namespace sourcesTest;

/// Which sheet of a workbook is read.
class ChosenSheetTest : public QObject {
    Q_OBJECT

private:
    const QString Folder = QUADRIX_SOURCE_DIR "/tests/sources/workbooks/";
    QStringList m_notes;

    std::unique_ptr<Engine> Open(const QString& path, const std::vector<sources::SheetTable>& sheets) {
        ConnectionSettings settings;
        m_notes.clear();
        settings.note = [this](const QString& note) { m_notes.append(note); };
        return sources::OpenWorkbookFile(path, settings, sheets);
    }
    bool IsNoted(const QString& part) const { return m_notes.join('\n').contains(part); }

private slots:
    /// Hidden sheets come last where places count; which one was read is told where there are several.
    void PassesHiddenSheetsOver_data() {
        Columns<QString, QString>("file", "noted");
        const QString chosen = "letto il foglio 'Nuovo', non gli altri: 'Vecchio' (nascosto)";
        Row("xlsx", "a.xlsx", chosen);
        Row("OpenDocument", "a.ods", chosen);
        Row("xls", "xlwt.xls", "letto il foglio 'Articoli', non gli altri: 'Lettere' (nascosto)");
    }
    void PassesHiddenSheetsOver() {
        QFETCH(const QString, file);
        QFETCH(const QString, noted);
        const QTemporaryDir folder;
        QByteArray xls = ReadFile(Folder + "xlwt.xls");
        xls[xls.indexOf("Lettere") - 4] = 2; // it does not stand in the menu either
        WriteFile(folder.filePath("xlwt.xls"), xls);
        lxw_workbook* workbook = workbook_new(folder.filePath("a.xlsx").toUtf8().constData());
        lxw_worksheet* old = workbook_add_worksheet(workbook, "Vecchio");
        lxw_worksheet* sheet = workbook_add_worksheet(workbook, "Nuovo");
        worksheet_write_string(old, 0, 0, "Codice", nullptr);
        worksheet_write_string(sheet, 0, 0, "Codice", nullptr);
        worksheet_write_string(sheet, 1, 0, "C1", nullptr);
        workbook_add_worksheet(workbook, "Foglio3"); // empty, as programs add them
        worksheet_activate(sheet);
        worksheet_set_first_sheet(sheet);
        worksheet_hide(old);
        workbook_close(workbook);
        const QByteArray table =
            "<t:table t:style-name='%1' t:name='%2'><t:table-row><t:table-cell o:value-type='string'>"
            "<x:p>Codice</x:p></t:table-cell></t:table-row></t:table>";
        const QString content =
            QString("<o:document-content xmlns:o='urn:oasis:names:tc:opendocument:xmlns:office:1.0'"
                    " xmlns:t='urn:oasis:names:tc:opendocument:xmlns:table:1.0'"
                    " xmlns:s='urn:oasis:names:tc:opendocument:xmlns:style:1.0'"
                    " xmlns:x='urn:oasis:names:tc:opendocument:xmlns:text:1.0'>"
                    "<o:automatic-styles><s:style s:name='ta1'><s:table-properties t:display='false'/>"
                    "</s:style><s:style s:name='ta2'><s:table-properties t:display='true'/></s:style>"
                    "</o:automatic-styles><o:body><o:spreadsheet>%1%2</o:spreadsheet></o:body>"
                    "</o:document-content>")
                .arg(QString(table).arg("ta1", "Vecchio"), QString(table).arg("ta2", "Nuovo"));
        const QByteArray bytes = content.toUtf8();
        const QByteArray kind = "application/vnd.oasis.opendocument.spreadsheet";
        zip_t* package = zip_open(folder.filePath("a.ods").toUtf8().constData(), ZIP_CREATE, nullptr);
        for (const auto& [name, part] : {std::pair("mimetype", &kind), {"content.xml", &bytes}}) {
            zip_file_add(package, name, zip_source_buffer(package, part->constData(), size_t(part->size()), 0), 0);
        }
        QCOMPARE(zip_close(package), 0);
        const auto engine = Open(folder.filePath(file), {{.table = "T", .sheet = "Clienti/#1"}});
        engine->Columns(noted.section('\'', 1, 1)); // by its name: nothing is to be told
        QVERIFY(!IsNoted("FOGLIO SCELTO"));
        QCOMPARE(engine->Columns("T").value(1).name, QString("Codice"));
        QVERIFY2(IsNoted("FOGLIO SCELTO: File '") && IsNoted(noted), qPrintable(m_notes.join('\n')));
        engine->Columns(file == "a.xlsx" ? "#3" : "#2");
        QVERIFY2(IsNoted("' (nascosto), non gli altri"), qPrintable(m_notes.join('\n')));
    }

    void RefusesWhatIsNotThere() {
        const auto engine = Open(Folder + "xlwt.xls", {{"T", "Clienti"}, {"U", "#3"}, {"V", "Articoli", 4}});
        QVERIFY(Holds(ErrorTextOf([&] { engine->Query("SELECT * FROM T"); }),
                      {"xlwt.xls': non ha il foglio 'Clienti'; ha: 'Articoli', 'Lettere'"}));
        QVERIFY(ErrorTextOf([&] { engine->Query("SELECT * FROM U"); }).contains("foglio '#3'"));
        QVERIFY(ErrorTextOf([&] { engine->Query("SELECT * FROM V"); }).contains("la riga 4, che deve avere i nomi"));
    }
};

QUADRIX_TEST(ChosenSheetTest)
#include "test_chosenSheet.moc"
