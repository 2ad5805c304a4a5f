#include "examples/DbfWriter.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QDateTime>
#include <QTemporaryDir>

using namespace sourcesTest;
using examples::Column;
using examples::DbfStyle;
using examples::DbfWriter;

/// Every type of column comes back as it was written.
class DbfValuesTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    std::unique_ptr<Engine> WriteAndOpen(const Column& column, const QVariant& value, const DbfStyle& style = {}) {
        DbfWriter writer(m_dir.filePath("tabella.dbf"), {column, {"dopo", 'C', 1}}, style);
        writer.Set(column.name, value).Set("dopo", QString("X"));
        writer.Add();
        writer.Finish();
        return OpenFolder(m_dir.path());
    }

private slots:
    void ReadsWhatWasWritten_data() {
        Columns<char, int, int, QVariant, QVariant>("type", "length", "decimals", "written", "read");
        const auto row = [](const char* name, char type, int length, int decimals, const QVariant& written,
                            const QVariant& read) { Row(name, type, length, decimals, written, read); };
        const auto same = [&](const char* name, char type, int length, int decimals, const QVariant& value) {
            row(name, type, length, decimals, value, value);
        };
        same("text with accents", 'C', 20, 0, "Città è perché €");
        same("zeros and blanks in front", 'C', 20, 0, "  00123");
        row("blanks behind", 'C', 20, 0, "abc   ", "abc");
        row("blank text", 'C', 20, 0, QVariant(), "");
        same("longest text", 'C', 254, 0, QString(254, u'x'));
        row("whole number", 'N', 10, 0, 1234567, qint64(1234567));
        row("nine nines", 'N', 18, 0, "999999999999999999", qint64(999999999999999999));
        row("decimals", 'N', 12, 2, -1234.56, -1234.56);
        row("decimals that are none", 'N', 12, 2, 5.0, qint64(5));
        row("float", 'F', 12, 3, 0.125, 0.125);
        row("plus sign", 'N', 10, 0, "+7", qint64(7));
        row("zero", 'N', 10, 2, 0, qint64(0));
        row("no number", 'N', 10, 2, QVariant(), QVariant());
        same("stars of an overflow", 'N', 6, 0, "******");
        same("discount in words", 'N', 10, 0, "10+5");
        same("decimal comma", 'N', 10, 0, "1,5");
        same("infinity is no number", 'N', 10, 0, "inf");
        same("date", 'D', 0, 0, QDate(2024, 3, 5));
        same("leap day", 'D', 0, 0, QDate(2024, 2, 29));
        row("no date", 'D', 0, 0, QVariant(), QVariant());
        row("date of zeros", 'D', 0, 0, "00000000", QVariant());
        same("impossible month", 'D', 0, 0, "20241301");
        same("leap day of no leap year", 'D', 0, 0, "20230229");
        same("half a date", 'D', 0, 0, "2024");
        same("time", 'T', 0, 0, QDateTime(QDate(2024, 3, 5), QTime(13, 7, 59)));
        row("time short of a second", 'T', 0, 0, QDateTime(QDate(2024, 12, 31), QTime(23, 59, 59, 999)),
            QDateTime(QDate(2025, 1, 1), QTime(0, 0)));
        row("no time", 'T', 0, 0, QVariant(), QVariant());
        same("true", 'L', 0, 0, true);
        same("false", 'L', 0, 0, false);
        row("yes", 'L', 0, 0, "y", true);
        row("not known", 'L', 0, 0, "?", QVariant());
        same("no logical value", 'L', 0, 0, "9");
        row("lowest integer", 'I', 0, 0, std::numeric_limits<int>::min(), qint64(std::numeric_limits<int>::min()));
        row("double", 'B', 0, 0, 1.0 / 3, 1.0 / 3);
        row("money", 'Y', 0, 0, -12345.6789, -12345.6789);
        same("memo", 'M', 0, 0, "Nota\r\ncon due righe, perché sì  ");
        same("long memo", 'M', 0, 0, QString("àbcdefghij").repeated(20000));
        row("no memo", 'M', 0, 0, QVariant(), "");
    }
    void ReadsWhatWasWritten() {
        QFETCH(char, type);
        QFETCH(int, length);
        QFETCH(int, decimals);
        QFETCH(QVariant, written);
        QFETCH(QVariant, read);
        const auto engine = WriteAndOpen({"campo", type, length, decimals}, written);
        const QVariant value = Value(*engine, "SELECT campo FROM tabella");
        QCOMPARE(value, read);
        QCOMPARE(value.isNull(), read.isNull());
        QCOMPARE(Value(*engine, "SELECT dopo FROM tabella").toString(), QString("X"));
    }

    void ReadsDosTablesOfFoxPro2() {
        DbfWriter writer(m_dir.filePath("dos.dbf"), {{"nome", 'C', 20}, {"note", 'M'}}, {false, 0x02});
        writer.Set("nome", QString("Città")).Set("note", QString("perché ù")).Add();
        writer.Finish();
        const auto engine = OpenFolder(m_dir.path());
        QCOMPARE(Value(*engine, "SELECT nome FROM dos").toString(), QString("Città"));
        QCOMPARE(Value(*engine, "SELECT note FROM dos").toString(), QString("perché ù"));
    }

    void KeepsThePlaceOfEachMemo() {
        DbfWriter writer(m_dir.filePath("memo.dbf"), {{"note", 'M'}});
        for (int i = 0; i < 300; ++i) {
            writer.Set("note", QString(i, u'a')).Add();
        }
        writer.Finish();
        const auto engine = OpenFolder(m_dir.path());
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM memo WHERE LENGTH(note) = _RECNO - 1").toInt(), 300);
    }
};

QUADRIX_TEST(DbfValuesTest)
#include "test_dbfValues.moc"
