#include "sources/workbook/Workbook.h"
#include "sources/workbookFile.h"
#include "tests/sources/sourcesTest.h"
#include "tests/sources/xlsBytes.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <xlsxwriter.h>

using namespace sourcesTest;

namespace {

const QString Folder = QUADRIX_SOURCE_DIR "/tests/sources/workbooks/";

/// The values of a row as one text, Null as "-"; an error is told as its last words.
QString RowOf(Engine& engine, const QString& query) {
    const auto cursor = engine.Query(query);
    if (!cursor->Next()) {
        return "no row";
    }
    QStringList values;
    for (int column = 0; column < cursor->Columns().size(); ++column) {
        try {
            const QVariant value = cursor->Value(column);
            values.append(value.isNull()                           ? QString("-")
                          : value.typeId() == QMetaType::QDate     ? value.toDate().toString("d/M/yyyy")
                          : value.typeId() == QMetaType::QDateTime ? value.toDateTime().toString("d/M/yyyy hh:mm:ss")
                          : value.typeId() == QMetaType::QString   ? '\'' + value.toString() + '\''
                                                                   : value.toString());
        } catch (const ImportError& error) {
            values.append('!' + error.Message().section(": ", -1));
        }
    }
    return values.join('|');
}

} // namespace

/// A workbook is a database.
class WorkbookTest : public QObject {
    Q_OBJECT

private:
    QStringList m_notes;

    std::unique_ptr<Engine> Open(const QString& path, const std::vector<sources::SheetTable>& sheets = {}) {
        ConnectionSettings settings;
        m_notes.clear();
        settings.note = [this](const QString& note) { m_notes.append(note); };
        return sources::OpenWorkbookFile(path, settings, sheets);
    }
    bool IsNoted(const QString& part) const {
        return std::any_of(m_notes.begin(), m_notes.end(), [&](const QString& note) { return note.contains(part); });
    }

private slots:
    void RowsBelongToThoseOfTheLevelBefore() {
        const auto engine =
            Open(QUADRIX_SOURCE_DIR "/tests/adapters/fixtures/modImport_NubrioExcel/files/workbook.xlsx",
                 {{.table = "LIVELLI", .end = {"Livello", "Codice"}, .level = "Livello"}});
        QCOMPARE(RowOf(*engine, "SELECT GROUP_CONCAT(COALESCE(_PADRE, '-'), ' ') FROM LIVELLI"),
                 "'- 2 3 3 2 - 2 - 9 - 11 - - -'");
        QVERIFY2(IsNoted("LIVELLO NON VALIDO") && IsNoted("riga 7") && IsNoted("(così 3 volte)"),
                 qPrintable(m_notes.join('\n')));
    }

    /// The same cells written by two libraries, in both formats.
    void ReadsCells_data() {
        Columns<QString, QString, QString>("file", "total", "text");
        Row("xlsx", "xlsxwriter.xlsx", "'25'", "'testo'");
        Row("xls", "xlwt.xls", "-", "-"); // the library keeps an empty text for every formula
    }
    void ReadsCells() {
        QFETCH(const QString, file);
        QFETCH(const QString, total);
        QFETCH(const QString, text);
        const auto engine = Open(Folder + file);
        QCOMPARE(engine->Tables(), (QStringList{"Articoli", "Lettere"}));
        const auto row = [&](int number) {
            return RowOf(*engine, QString("SELECT * FROM Articoli WHERE _RIGA = %1").arg(number));
        };
        QCOMPARE(row(2), "2|'00120'|'  due blanks  '|12.5|5/3/2024|5/3/2024 14:30:15|true|" + total +
                             "|!la cella contiene l'errore #N/A|-|-");
        QCOMPARE(row(3), QString::fromUtf8("3|'A-1'|'Città € fine'|1234567|-|-|false|") + text + "|'due\nrighe'|-|-");
        QCOMPARE(row(5), QString("5|'7'|-|-|!-5 non è una data|-|-|-|'7'|-|'oltre'"));
        QCOMPARE(row(6), QString("6|'unita'|-|-|-|-|-|-|-|-|-"));
        QCOMPARE(row(7), QString("7|-|'sotto'|-|-|-|-|-|-|-|-"));
        QCOMPARE(Values(*engine, "SELECT _RIGA FROM Articoli WHERE Codice IN ('00120', 'a-1', '7')"), QString("2,3,5"));
        QVERIFY(IsNoted("RIGA NASCOSTA") && IsNoted("riga 3"));
        QVERIFY(IsNoted("CELLE UNITE") && IsNoted("A6:A7"));
        QVERIFY(IsNoted("VALORE NON LEGGIBILE") && IsNoted("foglio 'Articoli', riga 2, colonna 'Esito'"));
        QCOMPARE(IsNoted("FORMULE SENZA RISULTATO"), total == "-");
    }

    /// Rows and cells that stand in the file once for several.
    void ReadsOpenDocument() {
        const auto engine = Open(Folder + "odfpy.ods");
        QCOMPARE(engine->Tables(), (QStringList{"Vuoto", "Dati"}));
        const auto row = [&](int number) {
            return RowOf(*engine, QString("SELECT * FROM Dati WHERE _RIGA = %1").arg(number));
        };
        QCOMPARE(row(2), QString("2|'007'|0.25|true|'14:30:05'|12.5|'visibile'"));
        QCOMPARE(row(6), QString("6|'x'|'x'|-|!'abc' non è un numero|!'2024-02-30' non è una data|-"));
        QCOMPARE(row(7), row(6).replace('6', '7'));
        QCOMPARE(row(8), QString("8|'ultima'|-|-|-|-|-"));
        QVERIFY(IsNoted("PERCENTUALE: File") && IsNoted("dove il foglio mostra 25% si legge 0.25"));
        QVERIFY(IsNoted("A8:B8"));
        QVERIFY(IsNoted("RIGA NASCOSTA"));
    }

    /// An error ends who asks for the value, with the place of the cell.
    void NamesTheCell() {
        const auto engine = Open(Folder + "xlsxwriter.xlsx");
        const auto cursor = engine->Query("SELECT TRIM(Esito) AS Esito, Codice FROM Articoli");
        QVERIFY(cursor->Next());
        QCOMPARE(cursor->Value(1).toString(), QString("00120"));
        QVERIFY(Holds(ErrorTextOf([&] { cursor->Value(0); }),
                      {"xlsxwriter.xlsx', foglio 'Articoli', riga 2, colonna 'Esito'", "#N/A"}));
        QVERIFY(cursor->Next());
        QCOMPARE(cursor->Value(0).toString(), QString("due\nrighe"));
    }

    /// Its row would be missing from a query that decides by it, or be reckoned with as 0.
    void RefusesToDecideByTheCell_data() {
        Columns<bool>("refused");
        Row("SELECT Codice FROM Articoli WHERE Esito = '1'", true);
        Row("SELECT Codice FROM Articoli WHERE Codice IN (SELECT esito FROM Articoli)", true);
        Row("SELECT A.Codice FROM Articoli A LEFT JOIN Lettere L ON L.uno = A.[Esito]", true);
        Row("SELECT Codice, UPPER(Esito) FROM Articoli", true);
        Row("SELECT SUM(T.Esito) FROM (SELECT Esito FROM Articoli) T", true);
        Row("SELECT COUNT(*) FROM (SELECT DISTINCT Esito FROM Articoli) T", false);
        Row("SELECT Codice, Esito AS E, RTRIM(LTRIM(Esito)) AS F FROM Articoli WHERE Codice > '' ORDER BY Esito",
            false);
        Row("SELECT L.uno, A.Esito FROM Lettere L, Articoli A WHERE L.uno = A.Codice", false);
    }
    void RefusesToDecideByTheCell() {
        QFETCH(const bool, refused);
        const auto engine = Open(Folder + "xlsxwriter.xlsx");
        engine->Columns("Articoli");
        const QString error = ErrorTextOf([&] { engine->Query(QTest::currentDataTag()); });
        QVERIFY2(refused ? Holds(error, {"foglio 'Articoli', riga 2, colonna 'Esito'", "#N/A", "non si leggono: 1"})
                         : error == "no error",
                 qPrintable(error));
    }

    void ReadsConnectionSettings_data() {
        Columns<QString>("text");
        Row("driver", "Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=%1");
        Row("Jet", "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=%1;Extended Properties=\"Excel 8.0;HDR=YES\"");
        Row("file alone", "Data Source=%1");
    }
    void ReadsConnectionSettings() {
        QFETCH(const QString, text);
        ConnectionSettings settings;
        settings.connectionString = text.arg(Folder + "XLWT.XLS");
        QCOMPARE(Value(*sources::OpenFileSource(settings), "SELECT uno FROM lettere").toString(), QString());
        QVERIFY(Holds(ErrorTextOf([] {
                          ConnectionSettings missing;
                          missing.connectionString = "Data Source=/niente/a.xlsx";
                          sources::OpenFileSource(missing);
                      }),
                      {"/niente/a.xlsx' non esiste"}));
    }

    void FindsSheets_data() {
        Columns<QString, int, QString>("sheet", "header", "row");
        Row("by name", "lettere ", 1, "no row");
        Row("by place", "#2", 0, "1|'uno'|2|-");
        Row("first", "#1", 6, "7|-|'sotto'|-");
    }
    void FindsSheets() {
        QFETCH(const QString, sheet);
        QFETCH(const int, header);
        const auto engine = Open(Folder + "xlwt.xls", {{"T", sheet, header, 0, 3}});
        QTEST(RowOf(*engine, "SELECT * FROM T"), "row");
        QCOMPARE(engine->Columns("T").value(2).name, header == 1 ? QString("2") : QString("B"));
    }

    void ReadsDatesFrom1904AndRepeatedNames() {
        const auto engine = Open(Folder + "openpyxl.xlsx");
        const QString query = "SELECT * FROM [Dati 1904] WHERE _RIGA = ";
        QCOMPARE(RowOf(*engine, query + '2'), QString("2|1|5/3/2024 00:00:00|2.25|'senza nome'|'r'"));
        QCOMPARE(RowOf(*engine, query + '3'), QString("3|!aprirlo con Excel e salvarlo|5/3/2024 "
                                                      "14:30:15|-|-|-"));
        QStringList names;
        for (const ColumnInfo& column : engine->Columns("Dati 1904")) {
            names.append(column.name);
        }
        QCOMPARE(names.join(','), QString("_RIGA,Prezzo (A),Data,Prezzo (C),D,_RIGA (E)"));
        QVERIFY(IsNoted("COLONNA RIPETUTA"));
        QCOMPARE(Value(*Open(Folder + "xlwt_lunghi.xls"), "SELECT B FROM Lunghi").toDate(), QDate(2024, 3, 5));
    }

    void EndsDaysFrom1904InTheSameYear() {
        const auto date = [](double serial) {
            return sources::DateOfSerial(serial, sources::CellFormat::Kind::Date, true);
        };
        QCOMPARE(date(2957003), QByteArray("99991231"));
        QVERIFY(!date(2957004));
        QCOMPARE(date(0.5), QByteArray("19040101 12:00:00"));
    }

    /// A sheet of Excel 95 byte by byte, as programs of other makers leave them.
    void ReadsSheetsOfOtherPrograms_data() {
        using namespace xlsBytes;
        Columns<QByteArray, QString, QString>("records", "columns", "row");
        const QByteArray text = Record(0x06, Words({1, 0, 0}) + Words({0, 0, 0, 0xffff}) + QByteArray(6, '\0'));
        const auto label = [](int row, int column, const char* value) {
            return Record(0x204, Words({row, column, 0, static_cast<int>(strlen(value))}) + value);
        };
        const QByteArray number = Record(0x203, Words({1, 1, 0}) + RawBytes(0.5));
        const QByteArray header = label(0, 0, "a") + label(0, 1, "b");
        Row("formula without its text", header + text + number, "a,b", "2|!aprirlo con Excel e salvarlo|0.5");
        Row("shared formula",
            header + text + Record(0x4bc, QByteArray(8, '\0')) + Record(0x207, Words({1}) + "x") + number, "a,b",
            "2|'x'|0.5");
        const QByteArray zero = Record(0x06, Words({1, 0, 0}) + RawBytes(0.0) + Words({3, 0, 0, 0}));
        Row("formula to be reckoned", header + zero + number, "a,b", "2|!aprirlo con Excel e salvarlo|0.5");
        Row("header in any order", label(0, 1, "b") + label(0, 0, "a") + number + label(1, 0, "x"), "a,b", "2|'x'|0.5");
        Row("letter that is a name", label(0, 0, "C") + label(0, 1, "b") + label(1, 0, "x") + label(1, 2, "y"),
            "C,b,C (C)", "2|'x'|-|'y'");
        Row("letters that are names", label(0, 0, "B") + label(0, 2, "B (B)") + label(1, 0, "x") + label(1, 1, "y"),
            "B,B (B) (B),B (B)", "2|'x'|'y'|-");
        Row("far beyond the header", label(0, 0, "a") + label(1, 0, "x") + label(1, 4, "y"), "a,B,C,D,E",
            "2|'x'|-|-|-|'y'");
    }
    void ReadsSheetsOfOtherPrograms() {
        using namespace xlsBytes;
        QFETCH(const QByteArray, records);
        const QTemporaryDir folder;
        WriteFile(folder.filePath("a.xls"),
                  Workbook("Book", 1252, "F", Record(0x809, Words({0x500, 0x10, 0, 0})) + records + Record(0x0a, {})));
        const auto engine = Open(folder.filePath("a.xls"));
        QStringList names;
        for (const ColumnInfo& column : engine->Columns("F").mid(1)) {
            names.append(column.name);
        }
        QTEST(names.join(','), "columns");
        QTEST(RowOf(*engine, "SELECT * FROM F"), "row");
        QCOMPARE(IsNoted("COLONNA RIPETUTA"), names.join(',').contains('('));
    }

    /// What a column holds together tells how its texts are meant.
    void TellsTextsOfAColumn_data() {
        Columns<QStringList, QString, QString>("cells", "read", "noted");
        Row("thousands", QStringList{"1.234", "12,50", "#7.5"}, "1234,12,50,7.5", "SEGNO DELLE MIGLIAIA");
        Row("nothing tells", QStringList{"1.234", "#7"}, "1.234,7", "NUMERO AMBIGUO");
        Row("codes", QStringList{"10.100", "A-1"}, "10.100,A-1", "");
        Row("a code that became a date", QStringList{"A-1", "@45629"}, "A-1,2024-12-03",
            "1 celle sono date (la prima alla riga 3), 1 testi (il primo alla riga 2)");
        Row("a date among numbers and texts", QStringList{"#12", "@45629", "12/A", "#7"}, "12,20241203,12/A,7",
            "1 celle sono date (la prima alla riga 3), 2 numeri senza il formato di una data (non si leggono come "
            "date), 1 testi (il primo alla riga 4)");
        Row("a percentage", QStringList{"#5", "%0.1"}, "5,0.1", "riga 3, colonna 'a': 1 celle hanno il formato");
        Row("more digits than a cell keeps", QStringList{"#8012340000024123", "#5"}, "8012340000024123,5",
            "riga 2, colonna 'a': '8012340000024123' ha più delle 15 cifre");
        Row("a code that Excel has cut", QStringList{"8.01234E+12", "A"}, "8.01234E+12,A", "è un numero abbreviato");
        Row("a sign behind", QStringList{"1.234-", "2,5"}, "1234-,2,5", "scrivere in altro modo");
        Row("codes without decimals", QStringList{"10.100", "12/5"}, "10.100,12/5", "");
        Row("a formula nobody has reckoned", QStringList{"=5", "=0"}, "5,!", "aprirlo con Excel e salvarlo");
        Row("a date written as a text", QStringList{"5/3/2024", "@45629"}, "5/3/2024,2024-12-03", "");
    }
    void TellsTextsOfAColumn() {
        QFETCH(const QStringList, cells);
        QFETCH(const QString, noted);
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.xlsx");
        lxw_workbook* workbook = workbook_new(path.toUtf8().constData());
        lxw_worksheet* sheet = workbook_add_worksheet(workbook, "F");
        lxw_format* day = workbook_add_format(workbook);
        format_set_num_format(day, "dd/mm/yyyy");
        lxw_format* percent = workbook_add_format(workbook);
        format_set_num_format(percent, "0.0%");
        const QMap<QChar, lxw_format*> formats{{'#', nullptr}, {'@', day}, {'%', percent}};
        worksheet_write_string(sheet, 0, 0, "a", nullptr);
        for (int row = 1; row <= cells.size(); ++row) {
            const QString& cell = cells.at(row - 1);
            if (cell.startsWith('=')) {
                worksheet_write_formula_num(sheet, row, 0, "=1-1", nullptr, cell.mid(1).toDouble());
            } else if (formats.contains(cell.front())) {
                worksheet_write_number(sheet, row, 0, cell.mid(1).toDouble(), formats.value(cell.front()));
            } else {
                worksheet_write_string(sheet, row, 0, cell.toUtf8().constData(), nullptr);
            }
        }
        workbook_close(workbook);
        const auto engine = Open(path);
        QStringList read;
        const auto values = engine->Query("SELECT a FROM F");
        while (values->Next()) {
            const QString error = ErrorTextOf([&] { read.append(values->Value(0).toString()); });
            read += error == "no error" ? QStringList() : QStringList("!");
        }
        QTEST(read.join(','), "read");
        QVERIFY2(noted.isEmpty() ? m_notes.isEmpty() : IsNoted(noted), qPrintable(m_notes.join('\n')));
    }

    void ReadsTextsThatGoOnInFurtherRecords() {
        const auto engine = Open(Folder + "xlwt_lunghi.xls");
        for (int row = 1; row < 6; ++row) {
            const QString text = QString::fromUtf8(row % 2 == 1 ? "abcdefghi " : "αβγ€à ").repeated(250 + row);
            QCOMPARE(Value(*engine, QString("SELECT Testo FROM Lunghi WHERE _RIGA = %1").arg(row + 1)).toString(),
                     text);
        }
    }

    void ReadsValuesOfFormulas_data() {
        Columns<QString, QString>("file", "logical");
        Row("xlsx", "calc.xlsx", "true");
        Row("Excel 97", "calc.xls", "true");
        Row("OpenDocument", "calc.ods", "1"); // it keeps a number, shown as one
    }
    void ReadsValuesOfFormulas() {
        QFETCH(const QString, file);
        QFETCH(const QString, logical);
        const auto engine = Open(Folder + file);
        QCOMPARE(RowOf(*engine, "SELECT * FROM Calcoli"),
                 QString::fromUtf8("2|0.25|'città'|" + logical.toUtf8() +
                                   "|!la cella contiene l'errore #DIV/0!|5/3/2024|'00120'|-"));
    }

    /// Excel 95 keeps texts in a code page, which the file tells or the settings.
    void ReadsExcel95_data() {
        Columns<quint16, QByteArray, QString>("page", "town", "read");
        Row("told", quint16(850), QByteArray("Forl\x8d"), QString::fromUtf8("Forlì"));
        Row("Windows", quint16(0x8001), QByteArray("Forl\xec"), QString::fromUtf8("Forlì"));
        Row("untold", quint16(0), QByteArray("Forl\xec"), QString::fromUtf8("Forlì"));
    }
    void ReadsExcel95() {
        using namespace xlsBytes;
        QFETCH(const quint16, page);
        QFETCH(const QByteArray, town);
        const QByteArray sheet = Record(0x809, Words({0x500, 0x10, 0, 0})) +
                                 Record(0x204, Words({0, 0, 0, 5}) + "Paese") +
                                 Record(0x204, Words({0, 1, 0, 1}) + "N") +
                                 Record(0x204, Words({1, 0, 0, static_cast<int>(town.size())}) + town) +
                                 Record(0x27e, Words({1, 1, 1}) + RawBytes(quint32(120 << 2 | 2))) +
                                 Record(0x203, Words({2, 1, 0}) + RawBytes(0.5)) +
                                 Record(0x06, Words({3, 1, 0}) + Words({0, 0, 0, 0xffff}) + QByteArray(6, '\0')) +
                                 Record(0x207, Words({5}) + town) + Record(0x0a, {});
        const QTemporaryDir folder;
        WriteFile(folder.filePath("a.xls"), Workbook("Book", page, "Foglio1", sheet));
        const auto engine = Open(folder.filePath("a.xls"));
        QTEST(Value(*engine, "SELECT Paese FROM Foglio1 WHERE _RIGA = 2").toString(), "read");
        QTEST(Value(*engine, "SELECT N FROM Foglio1 WHERE _RIGA = 4").toString(), "read");
        QCOMPARE(Value(*engine, "SELECT N FROM Foglio1 WHERE _RIGA = 2").toString(), QString("0120"));
        QCOMPARE(Value(*engine, "SELECT N FROM Foglio1 WHERE _RIGA = 3").toDouble(), 0.5);
        QCOMPARE(IsNoted("CODE PAGE NON DICHIARATA"), page == 0);
    }

    void ReadsNumberFormats_data() {
        Columns<QString, double, QString>("format", "number", "shown");
        Row("plain", "General", 120.0, "120");
        Row("zeros", "00000", 120.0, "00120");
        Row("more digits than zeros", "000", 12345.0, "12345");
        Row("with signs", "00\\-000", 12345.0, "12-345");
        Row("with a text", "\"ART\"0000", 12.0, "ART0012");
        Row("with a language", "[$-410]00000", 120.0, "00120");
        Row("no whole number", "00000", 1.5, "1.5");
        Row("below zero", "000", -7.0, "-7");
        Row("amount", "#,##0.00", 1234.5, "1234.5");
        Row("decimals", "00.00", 5.0, "5");
        Row("exponent", "0.00E+00", 12.0, "12");
        Row("unit", "0\" kg\"", 12.0, "12");
        Row("day", "dd/mm/yyyy", 45356.0, "20240305");
        Row("day with its time", "d/m/yy", 45356.5, "20240305 12:00:00");
        Row("month", "mmm-yy", 45356.0, "20240305");
        Row("Italian letters", "gg/mm/aaaa", 45356.0, "20240305");
        Row("time", "hh:mm", 0.75, "18:00:00");
        Row("moment", "hh:mm", 45356.75, "20240305 18:00:00");
        Row("hours that go on", "[h]:mm", 1.5, "1.5");
        Row("midnight comes next", "d/m/yyyy", 45356.999999, "20240306");
        Row("colour, condition", "[Red][<0]-0;0", 12.0, "12");
        Row("first day", "d/m/yyyy", 1.0, "19000101");
        Row("last before the leap day that was none", "d/m/yyyy", 59.0, "19000228");
        Row("leap day that was none", "d/m/yyyy", 60.0, "none");
        Row("first after it", "d/m/yyyy", 61.0, "19000301");
        Row("no date", "d/m/yyyy", 0.0, "");
        Row("a time without its day", "d/m/yyyy", 0.5, "none");
        Row("midnight of no day", "hh:mm", 0.999999, "00:00:00");
        Row("rounded beyond the last day", "d/m/yyyy", 2958465.999999, "none");
        Row("before 1900", "d/m/yyyy", -1.0, "none");
        Row("last day", "d/m/yyyy", 2958465.0, "99991231");
        Row("after it", "d/m/yyyy", 2958466.0, "none");
    }
    void ReadsNumberFormats() {
        QFETCH(const QString, format);
        QFETCH(const double, number);
        const sources::CellFormat cell(format);
        const auto kind = cell.GetKind();
        const bool isDate = kind == sources::CellFormat::Kind::Date || kind == sources::CellFormat::Kind::Time;
        const auto date = sources::DateOfSerial(number, kind, false);
        QTEST(isDate ? date ? QString::fromLatin1(*date) : QString("none")
                     : QString::fromUtf8(cell.Padded(number).value_or(QByteArray::number(number))),
              "shown");
    }

    void TellsColumns() {
        for (const auto& [column, letters] : {std::pair(0, "A"), {25, "Z"}, {26, "AA"}, {701, "ZZ"}, {16383, "XFD"}}) {
            QCOMPARE(sources::ColumnLetters(column), QString(letters));
            QCOMPARE(sources::ColumnOfLetters(QString("%1%2").arg(letters).arg(12)), column);
        }
        QCOMPARE(sources::ColumnOfLetters(u"XFE1"), -1);
        QCOMPARE(sources::ColumnOfLetters(u"12"), -1);
    }

    /// What stands under the name of a workbook and is none, or is damaged, is told for what it is.
    void TellsWhatIsNoWorkbook_data() {
        Columns<QByteArray, QString>("content", "cause");
        const QByteArray xls = ReadFile(Folder + "xlwt.xls");
        const QByteArray xlsx = ReadFile(Folder + "xlsxwriter.xlsx");
        const auto utf16 = [](const char* text) {
            return QByteArray(reinterpret_cast<const char*>(QString(text).utf16()),
                              static_cast<qsizetype>(2 * strlen(text)));
        };
        const auto replaced = [&](const char* name, const char* by) {
            QByteArray bytes = xls;
            const qsizetype at = bytes.indexOf(utf16(name));
            const QByteArray entry = utf16(by);
            bytes.replace(at, entry.size(), entry);
            bytes[at + 64] = static_cast<char>(entry.size() + 2);
            return bytes;
        };
        QByteArray locked = xls;
        const qsizetype protect = locked.indexOf(QByteArray("\x19\0\2\0", 4)); // a record that means nothing here
        locked[protect] = '\x2f';
        QByteArray rubbed = xlsx;
        const qsizetype middle = rubbed.indexOf("xl/worksheets/sheet1.xml") + 100;
        rubbed.replace(middle, 8, "XXXXXXXX");
        Row("nothing", QByteArray(), "il file è vuoto");
        Row("web page", QByteArray("<html><table>"), "pagina HTML");
        Row("XML", QByteArray("<?xml version='1.0'?>"), "file XML");
        Row("text", QByteArray("a;b\n"), "testo con separatori");
        Row("Excel 2.0", QByteArray("\x09\x00\x04\x00\x02\x00\x10\x00", 8), "prima della 5.0");
        Row("document", replaced("Workbook", "WordText"), "non è una cartella di lavoro");
        Row("xlsx with a password", replaced("Workbook", "EncryptedPackage"), "protetto da una password");
        Row("xls with a password", locked, "protetto da una password");
        Row("sheet that begins elsewhere", xlsBytes::Workbook("Book", 1252, "F", xlsBytes::Record(0x0a, {})),
            "danneggiato");
        Row("xls cut in its head", xls.left(300), "incompleto");
        Row("xls cut", xls.left(xls.size() / 2), "incompleto");
        Row("xlsx cut", xlsx.left(xlsx.size() / 2), "incompleto");
        Row("xlsx damaged", rubbed, "danneggiat");
    }
    void TellsWhatIsNoWorkbook() {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, cause);
        const QTemporaryDir folder;
        WriteFile(folder.filePath("Listino.xls"), content);
        const QString message = ErrorTextOf([&] { Open(folder.filePath("listino.XLS"))->Query("SELECT * FROM [#1]"); });
        QVERIFY(Holds(message, {"Listino.xls'", cause}));
    }

    /// Queries that are under way go on while another sheet is read.
    void ReadsSheetsWhileRowsAreRead() {
        const auto engine = Open(Folder + "xlwt.xls");
        const auto rows = engine->Query("SELECT Codice FROM Articoli");
        QVERIFY(rows->Next());
        QCOMPARE(Value(*engine, "SELECT uno FROM Lettere").toString(), QString());
        QVERIFY(rows->Next());
        QCOMPARE(rows->Value(0).toString(), QString("A-1"));
    }
};

QUADRIX_TEST(WorkbookTest)
#include "test_workbook.moc"
