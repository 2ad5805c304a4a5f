#include "adapters/sheetCells.h"
#include "adapters/sourceSettings.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

using namespace sheetCells;

/// A workbook that the operator chooses is read cell by cell.
class TestSheetCells : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestTarget> m_target;
    std::unique_ptr<ovConnection> m_source;

private slots:
    void init() {
        m_target = std::make_unique<TestTarget>();
        m_target->Person.Files = {QString(QUADRIX_SOURCE_DIR "/tests/sources/workbooks/xlsxwriter.xlsx")};
        m_source = std::make_unique<ovConnection>();
        const auto prepare = sourceSettings::OpenFileExcel({{.table = "Foglio", .headerRow = 0}});
        QVERIFY(prepare(m_target->Get(), *m_source));
        m_source->OpenConnection();
    }
    void cleanup() {
        m_source.reset();
        m_target.reset();
    }

    void findsColumns() {
        QCOMPARE(GetColumn(*m_source, "Foglio", " prezzo"), 3);
        QCOMPARE(GetColumn(*m_source, "Foglio", "Sconto"), 0);
    }

    void readsValues_data() {
        Columns<int, int, DataType, QVariant>("row", "column", "type", "value");
        Row("code with zeros", 2, 1, DataType::VarChar, QVariant("00120"));
        Row("number as text", 5, 1, DataType::VarChar, QVariant("7"));
        Row("number", 2, 3, DataType::Double, QVariant(12.5));
        Row("number of nothing", 7, 3, DataType::Double, QVariant(0));
        Row("date", 2, 4, DataType::Date, QVariant("20240305"));
        Row("moment", 2, 5, DataType::DateTime, QVariant("20240305 14:30:15"));
        Row("date of nothing", 3, 4, DataType::Date, QVariant(""));
        Row("column without anything", 2, 150, DataType::VarChar, QVariant(""));
        Row("row behind the last one", 99, 1, DataType::VarChar, QVariant(""));
    }
    void readsValues() {
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(DataType, type);
        QFETCH(QVariant, value);
        const QVariant read = GetXlsValue(*m_source, "Foglio", row, column, type);
        QCOMPARE(read.toString(), value.toString());
        QCOMPARE(read.typeId() == QMetaType::QString, value.typeId() == QMetaType::QString);
    }

    void namesWhatIsNone() {
        const auto number = ErrorOf<ImportError>([&] { GetXlsValue(*m_source, "Foglio", 3, 2, DataType::Double); });
        QVERIFY(number && number->Message().contains("riga 3, colonna 'B': 'Citt"));
        const auto date = ErrorOf<ImportError>([&] { GetXlsValue(*m_source, "Foglio", 2, 2, DataType::Date); });
        QVERIFY(date && date->Message().contains("riga 2, colonna 'B': '  due blanks  ' non è una data"));
        const auto cell = ErrorOf<ImportError>([&] { GetXlsValue(*m_source, "Foglio", 2, 8, DataType::VarChar); });
        QVERIFY(cell && cell->Message().contains("xlsxwriter.xlsx', foglio 'Articoli', riga 2, colonna 'H'"));
    }
};

Q_DECLARE_METATYPE(DataType)
QUADRIX_TEST(TestSheetCells)
#include "test_sheetCells.moc"
