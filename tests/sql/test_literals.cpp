#include "sql/mod_ovTools.h"
#include "tests/support/QuadrixTest.h"

#include <QTest>

#include <limits>

using namespace mod_ovTools;

namespace {

const LocaleSeparators Italian{",", "."};
const LocaleSeparators English{".", ","};
const LocaleSeparators French{",", QString::fromUtf8("\xe2\x80\xaf")}; // a narrow blank

const QVector<Provider> Providers{Provider::SqlServer, Provider::Access, Provider::Sybase,       Provider::MySql,
                                  Provider::Oracle,    Provider(5),      Provider::VisualFoxPro, Provider(7)};

} // namespace

/// The SQL literals of values.
class TestLiterals : public QObject {
    Q_OBJECT

private slots:
    void Literals_data();
    void Literals();
    void DateLiterals_data();
    void DateLiterals();
    void NullIsNullForEveryType();
    void LiteralsUnderLocales_data();
    void LiteralsUnderLocales();
};

void TestLiterals::Literals_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<DataType>("type");
    QTest::addColumn<QString>("literal");
    const auto add = [](const char* name, const QVariant& value, DataType type, const char* literal) {
        QTest::newRow(name) << value << type << QString::fromUtf8(literal);
    };
    add("text", "O'Brien", DataType::Char, "'O''Brien'");
    add("quotes alone", "''", DataType::VarChar, "''''''");
    add("empty text", "", DataType::NVarChar, "''");
    add("blanks stay", " a ", DataType::NChar, "' a '");
    add("number as text", 12, DataType::Memo, "'12'");
    add("real as text", 0.5, DataType::VarChar, "'0.5'");
    add("large real as text", 1e15, DataType::VarChar, "'1000000000000000'");
    add("true as text", true, DataType::NText, "'True'");
    add("text null in other case", "NULL", DataType::VarChar, "'NULL'");

    add("empty integer", "", DataType::Integer, "0");
    add("blank integer", "  ", DataType::Integer, "0");
    add("integer rounded", "12.7", DataType::Integer, "13");
    add("half to even, down", "12.5", DataType::Integer, "12");
    add("half to even, up", "13.5", DataType::Integer, "14");
    add("half and a bit", "12.50001", DataType::Integer, "13");
    add("negative rounded", "-2.5", DataType::Integer, "-2");
    add("leading digits", " 12abc", DataType::Integer, "12");
    add("comma ends the digits", "12,9", DataType::Integer, "12");
    add("no digits", "abc", DataType::Integer, "0");
    add("leading zeros", "000123", DataType::Integer, "123");
    add("real to integer", 2.5, DataType::Integer, "2");
    add("integer bounds", 2147483647LL, DataType::Integer, "2147483647");
    add("integer beyond", 2147483648LL, DataType::Integer, "Null");
    add("integer text beyond", "2147483648", DataType::AutoIncrement, "Null");
    add("long beyond 32 bits", 2147483648LL, DataType::Long, "2147483648");
    add("long text, largest", "9223372036854775807", DataType::Long, "9223372036854775807");
    add("long text, smallest", "-9223372036854775808", DataType::BigAutoIncrement, "-9223372036854775808");
    add("long text beyond", "9223372036854775808", DataType::Long, "Null");
    add("long keeps its digits", 9007199254740993LL, DataType::Long, "9007199254740993");
    add("true as number", true, DataType::Integer, "1");

    add("empty real", "", DataType::Double, "0");
    add("real", 1234.5, DataType::Double, "1234.5");
    add("real without a fraction", 1000000.0, DataType::Double, "1000000");
    add("small real", 0.00001, DataType::Double, "0.00001");
    add("negative real", "-0,25", DataType::Double, "-0.25");
    add("real with both separators", "1.234,50", DataType::Double, "1234.5");
    add("float keeps its digits", QVariant(0.1F), DataType::Double, "0.1");
    add("no number", "abc", DataType::Double, "0");
    add("infinite", std::numeric_limits<double>::infinity(), DataType::Double, "Null");

    add("bit of empty text", "", DataType::Bit, "0");
    add("bit of 0", "0", DataType::Bit, "0");
    add("bit of FALSE", "FALSE", DataType::Bit, "0");
    add("bit of any text", "N", DataType::Bit, "1");
    add("bit of blank", " ", DataType::Bit, "1");
    add("bit of true", true, DataType::Bit, "1");
    add("bit of false", false, DataType::Bit, "0");
    add("bit of -1", -1, DataType::Bit, "1");
    add("bit of 0.0", 0.0, DataType::Bit, "0");

    add("byte", 255, DataType::TinyInt, "255");
    add("byte rounded", "1.5", DataType::TinyInt, "2");
    add("byte beyond", 256, DataType::TinyInt, "Null");
    add("byte below", -1, DataType::TinyInt, "Null");
    add("byte of no number", "12x", DataType::TinyInt, "Null");

    add("duration", "1:30:00", DataType::Duration, "'00013000'");
    add("duration, minutes beyond", "1:75:00", DataType::Duration, "'00000000'");
    add("duration, digits alone", "13000", DataType::Duration, "'00013000'");
    add("duration, eight digits", "99995959", DataType::Duration, "'99995959'");
    add("duration, too many digits", "100000000", DataType::Duration, "'00000000'");
    add("duration, hours beyond", "10000:00:00", DataType::Duration, "'00000000'");
    add("duration, other separators", "  2.05.09 ", DataType::Duration, "'00020509'");
    add("duration, no seconds", "2:05", DataType::Duration, "'00020500'");
    add("duration, no digits", "abc", DataType::Duration, "'00000000'");
    add("duration, empty", "", DataType::Duration, "'00000000'");
    add("duration of a time", QTime(7, 8, 9), DataType::Duration, "'00070809'");

    add("expression", "GETDATE()", DataType::Expression, "GETDATE()");
    add("always null", "x", DataType::Null, "Null");
    add("binary has no literal", "x", DataType::Object, "Null");
    add("type without a rule", "x", DataType(10), "Null");
}

void TestLiterals::Literals() {
    QFETCH(QVariant, value);
    QFETCH(DataType, type);
    QFETCH(QString, literal);
    for (const Provider provider : Providers) {
        QCOMPARE(FormatSqlValue(value, type, provider, English), literal);
    }
}

void TestLiterals::DateLiterals_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<DataType>("type");
    QTest::addColumn<QStringList>("literals"); ///< SQL Server, Access, Sybase, MySQL, Oracle, 5, Visual FoxPro, 7
    const auto all = [](const char* text) { return QStringList(8, QString(text)); };
    const auto but = [](QStringList list, std::initializer_list<std::pair<int, const char*>> others) {
        for (const auto& [at, text] : others) {
            list[at] = QString(text);
        }
        return list;
    };
    const QDate day(2024, 3, 5);
    const QDateTime moment(day, QTime(4, 6, 7), Qt::UTC);
    const QStringList dates = but(
        all("'20240305'"), {{3, "'2024-03-05'"}, {4, "TO_DATE('20240305','YYYYMMDDHH24MISS')"}, {6, "{^2024/03/05}"}});
    QTest::newRow("date") << QVariant(day) << DataType::Date << dates;
    QTest::newRow("date of a moment") << QVariant(moment) << DataType::Date << dates;
    QTest::newRow("date of a text") << QVariant("05/03/2024") << DataType::Date << dates;
    QTest::newRow("time") << QVariant(moment) << DataType::Time << but(all("'04:06:07'"), {{6, "{04:06:07}"}});
    QTest::newRow("time of a date") << QVariant(day) << DataType::Time << but(all("'00:00:00'"), {{6, "{00:00:00}"}});
    QTest::newRow("moment") << QVariant(moment) << DataType::DateTime
                            << but(all("'20240305 04:06:07'"), {{1, "#2024/03/05 04:06:07#"},
                                                                {4, "TO_DATE('20240305040607','YYYYMMDDHH24MISS')"},
                                                                {6, "{^2024/03/05 04:06:07}"}});
    QTest::newRow("moment with dots") << QVariant("2024-03-05 04.06.07") << DataType::DateTime
                                      << but(all("'20240305 04:06:07'"),
                                             {{1, "#2024/03/05 04:06:07#"},
                                              {4, "TO_DATE('20240305040607','YYYYMMDDHH24MISS')"},
                                              {6, "{^2024/03/05 04:06:07}"}});
    const QStringList none = but(all("Null"), {{6, "{00:00:00}"}});
    for (const DataType type : {DataType::Date, DataType::Time, DataType::DateTime}) {
        QTest::addRow("no date, type %d", int(type)) << QVariant("31/02/2024") << type << none;
        QTest::addRow("empty, type %d", int(type)) << QVariant("") << type << none;
        QTest::addRow("number, type %d", int(type)) << QVariant(45356.5) << type << none;
    }
}

void TestLiterals::DateLiterals() {
    QFETCH(QVariant, value);
    QFETCH(DataType, type);
    QFETCH(QStringList, literals);
    for (qsizetype index = 0; index < Providers.size(); ++index) {
        QCOMPARE(FormatSqlValue(value, type, Providers[index]), literals[index]);
    }
}

void TestLiterals::NullIsNullForEveryType() {
    for (const Provider provider : Providers) {
        for (int type = 0; type <= 103; ++type) {
            QCOMPARE(FormatSqlValue({}, DataType(type), provider), "Null");
            QCOMPARE(FormatSqlValue("Null", DataType(type), provider), "Null");
        }
        const bool sqlServer = provider == Provider::SqlServer;
        QCOMPARE(FormatSqlValue("6F9619FF", DataType::Guid, provider),
                 sqlServer ? "CONVERT(uniqueidentifier, '6F9619FF')" : "6F9619FF");
    }
}

void TestLiterals::LiteralsUnderLocales_data() {
    QTest::addColumn<LocaleSeparators>("separators");
    QTest::newRow("Italian") << Italian;
    QTest::newRow("English") << English;
    QTest::newRow("French") << French;
    QTest::newRow("none") << LocaleSeparators{};
}

void TestLiterals::LiteralsUnderLocales() {
    QFETCH(LocaleSeparators, separators);
    const auto literal = [&](const QVariant& value) {
        return FormatSqlValue(value, DataType::Double, Provider::SqlServer, separators);
    };
    QCOMPARE(literal(1234.5), "1234.5");
    QCOMPARE(literal("1234.5"), "1234.5");
    QCOMPARE(literal("1234,5"), "1234.5");
    QCOMPARE(literal("1.234,5"), "1234.5");
    QCOMPARE(literal("1,234.5"), "1234.5");
    QCOMPARE(FormatSqlValue("12.7", DataType::Integer, Provider::SqlServer, separators), "13");
}

QUADRIX_TEST(TestLiterals)

#include "test_literals.moc"
