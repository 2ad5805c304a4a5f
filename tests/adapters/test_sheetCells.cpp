#include "adapters/sheetCells.h"
#include "adapters/sourceSettings.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

using namespace sheetCells;

/// Cells of a workbook that the operator chooses, by the names in its first row.
class TestSheetCells : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestTarget> m_target;
    std::unique_ptr<ovConnection> m_source;

    QVariant Read(int row, const QString& column, DataType type) {
        const Recordset rows = m_source->ExecuteWC(QString("SELECT * FROM [Foglio] WHERE _RIGA = %1").arg(row));
        return GetXlsValue(contract::SourceRow(rows), column, type);
    }

private slots:
    void init() {
        m_target = std::make_unique<TestTarget>();
        m_target->Person.Files = {QString(QUADRIX_SOURCE_DIR "/tests/sources/workbooks/xlsxwriter.xlsx")};
        m_source = std::make_unique<ovConnection>();
        QVERIFY(sourceSettings::OpenFileExcel({{.table = "Foglio"}})(m_target->Get(), *m_source));
        m_source->OpenConnection();
    }
    void cleanup() {
        m_source.reset();
        m_target.reset();
    }

    void FindsColumns() {
        QCOMPARE(GetColumn(*m_source, "Foglio", " prezzo"), 3);
        QCOMPARE(GetColumn(*m_source, "Foglio", "Sconto"), 0);
    }

    void ReadsValues_data() {
        Columns<int, QString, DataType, QVariant>("row", "column", "type", "value");
        Row("code with zeros", 2, "Codice", DataType::VarChar, QVariant("00120"));
        Row("number as text", 5, "Codice", DataType::VarChar, QVariant("7"));
        Row("number", 2, "Prezzo", DataType::Double, QVariant(12.5));
        Row("number of nothing", 7, "Prezzo", DataType::Double, QVariant(0));
        Row("date", 2, "Data", DataType::Date, QVariant("20240305"));
        Row("moment", 2, "Ora", DataType::DateTime, QVariant("20240305 14:30:15"));
        Row("date of nothing", 3, "Data", DataType::Date, QVariant(""));
    }
    void ReadsValues() {
        QFETCH(int, row);
        QFETCH(QString, column);
        QFETCH(DataType, type);
        QFETCH(QVariant, value);
        const QVariant read = Read(row, column, type);
        QCOMPARE(read.toString(), value.toString());
        QCOMPARE(read.typeId() == QMetaType::QString, value.typeId() == QMetaType::QString);
    }

    void ReadsYesAndNo_data() {
        Columns<QString>("word");
        for (const char* yes : {"1", "-1", "1.0", "TRUE", "vero", "S\u00ec", "SI", " s ", "Y", "x"}) {
            Row(yes, QString("yes"));
        }
        for (const char* no : {"0", "False", "FALSO", "no", "N", ""}) {
            Row(no, QString("no"));
        }
        for (const char* none : {"2", "forse", "si?"}) {
            Row(none, QString("colonna 'C': '%1' non \u00e8 n\u00e9 un s\u00ec (").arg(none));
        }
    }
    void ReadsYesAndNo() {
        const QString cell = QString::fromUtf8(QTest::currentDataTag());
        const QString number = cell.contains(u'.') ? "%1" : "'%1'"; // a cell of numbers
        const Recordset rows =
            m_source->ExecuteWC("SELECT " + number.arg(cell) + " AS C FROM [Foglio] WHERE _RIGA = 2");
        QString said;
        const auto error = ErrorOf<ImportError>([&] { said = IsYes(contract::SourceRow(rows), "C") ? "yes" : "no"; });
        QFETCH(QString, word);
        QVERIFY2(error ? error->Message().contains(word) : said == word, qPrintable(error ? error->Message() : said));
    }

    void NamesWhatIsNone() {
        const auto number = ErrorOf<ImportError>([&] { Read(3, "Descrizione", DataType::Double); });
        QVERIFY(number && number->Message().contains("colonna 'Descrizione': 'Citt"));
        const auto date = ErrorOf<ImportError>([&] { Read(2, "Descrizione", DataType::Date); });
        QVERIFY(date && date->Message().contains("colonna 'Descrizione': '  due blanks  ' non è una data"));
        const auto cell = ErrorOf<ImportError>([&] { Read(2, "Esito", DataType::VarChar); });
        QVERIFY(cell && cell->Message().contains("xlsxwriter.xlsx', foglio 'Articoli', riga 2, colonna 'Esito'"));
    }
};

Q_DECLARE_METATYPE(DataType)
QUADRIX_TEST(TestSheetCells)
#include "test_sheetCells.moc"
