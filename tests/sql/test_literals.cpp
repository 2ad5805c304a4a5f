#include "sql/mod_ovTools.h"
#include "sql/SqlText.h"
#include "tests/sql/localeSeparators.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

#include <limits>

using namespace localeSeparators;
using namespace mod_ovTools;

namespace {

const QVector<Provider> Providers{Provider::SqlServer, Provider::Access, Provider::Sybase,       Provider::MySql,
                                  Provider::Oracle,    Provider(5),      Provider::VisualFoxPro, Provider(7)};

} // namespace

/// The SQL literals of values.
class TestLiterals : public QObject {
    Q_OBJECT

private slots:
    void Literals_data() {
        Columns<QVariant, DataType, QString>("value", "type", "literal");
        Row("text", QVariant("O'Brien"), DataType::Char, "'O''Brien'");
        Row("quotes alone", QVariant("''"), DataType::VarChar, "''''''");
        Row("empty text", QVariant(""), DataType::NVarChar, "''");
        Row("blanks stay", QVariant(" a "), DataType::NChar, "' a '");
        Row("number as text", QVariant(12), DataType::Memo, "'12'");
        Row("real as text", QVariant(0.5), DataType::VarChar, "'0.5'");
        Row("large real as text", QVariant(1e15), DataType::VarChar, "'1000000000000000'");
        Row("true as text", QVariant(true), DataType::NText, "'True'");
        Row("text null in other case", QVariant("NULL"), DataType::VarChar, "'NULL'");

        Row("empty integer", QVariant(""), DataType::Integer, "0");
        Row("blank integer", QVariant("  "), DataType::Integer, "0");
        Row("integer rounded", QVariant("12.7"), DataType::Integer, "13");
        Row("half to even, down", QVariant("12.5"), DataType::Integer, "12");
        Row("half to even, up", QVariant("13.5"), DataType::Integer, "14");
        Row("half and a bit", QVariant("12.50001"), DataType::Integer, "13");
        Row("negative rounded", QVariant("-2.5"), DataType::Integer, "-2");
        Row("leading digits", QVariant(" 12abc"), DataType::Integer, "12");
        Row("comma ends the digits", QVariant("12,9"), DataType::Integer, "12");
        Row("no digits", QVariant("abc"), DataType::Integer, "0");
        Row("leading zeros", QVariant("000123"), DataType::Integer, "123");
        Row("real to integer", QVariant(2.5), DataType::Integer, "2");
        Row("integer bounds", QVariant(2147483647LL), DataType::Integer, "2147483647");
        Row("integer beyond", QVariant(2147483648LL), DataType::Integer, "Null");
        Row("integer text beyond", QVariant("2147483648"), DataType::AutoIncrement, "Null");
        Row("long beyond 32 bits", QVariant(2147483648LL), DataType::Long, "2147483648");
        Row("long text, largest", QVariant("9223372036854775807"), DataType::Long, "9223372036854775807");
        Row("long text, smallest", QVariant("-9223372036854775808"), DataType::BigAutoIncrement,
            "-9223372036854775808");
        Row("long text beyond", QVariant("9223372036854775808"), DataType::Long, "Null");
        Row("long keeps its digits", QVariant(9007199254740993LL), DataType::Long, "9007199254740993");
        Row("true as number", QVariant(true), DataType::Integer, "1");

        Row("empty real", QVariant(""), DataType::Double, "0");
        Row("real", QVariant(1234.5), DataType::Double, "1234.5");
        Row("real without a fraction", QVariant(1000000.0), DataType::Double, "1000000");
        Row("small real", QVariant(0.00001), DataType::Double, "0.00001");
        Row("negative real", QVariant("-0,25"), DataType::Double, "-0.25");
        Row("real with both separators", QVariant("1.234,50"), DataType::Double, "1234.5");
        Row("float keeps its digits", QVariant(0.1F), DataType::Double, "0.1");
        Row("no number", QVariant("abc"), DataType::Double, "0");
        Row("beyond a double", QVariant("-1e400"), DataType::Double, "Null");
        Row("beyond a double, without exponent", QVariant("1" + QString(400, u'0')), DataType::Double, "Null");
        Row("too small for a double", QVariant("0.001e-400"), DataType::Double, "0");
        Row("beyond a double for whole numbers", QVariant("1e400"), DataType::Long, "Null");
        Row("infinite", QVariant(std::numeric_limits<double>::infinity()), DataType::Double, "Null");

        Row("bit of empty text", QVariant(""), DataType::Bit, "0");
        Row("bit of 0", QVariant("0"), DataType::Bit, "0");
        Row("bit of FALSE", QVariant("FALSE"), DataType::Bit, "0");
        Row("bit of any text", QVariant("N"), DataType::Bit, "1");
        Row("bit of blank", QVariant(" "), DataType::Bit, "1");
        Row("bit of true", QVariant(true), DataType::Bit, "1");
        Row("bit of false", QVariant(false), DataType::Bit, "0");
        Row("bit of -1", QVariant(-1), DataType::Bit, "1");
        Row("bit of 0.0", QVariant(0.0), DataType::Bit, "0");

        Row("byte", QVariant(255), DataType::TinyInt, "255");
        Row("byte rounded", QVariant("1.5"), DataType::TinyInt, "2");
        Row("byte beyond", QVariant(256), DataType::TinyInt, "Null");
        Row("byte below", QVariant(-1), DataType::TinyInt, "Null");
        Row("byte of no number", QVariant("12x"), DataType::TinyInt, "Null");

        Row("duration", QVariant("1:30:00"), DataType::Duration, "'00013000'");
        Row("duration, minutes beyond", QVariant("1:75:00"), DataType::Duration, "'00000000'");
        Row("duration, digits alone", QVariant("13000"), DataType::Duration, "'00013000'");
        Row("duration, eight digits", QVariant("99995959"), DataType::Duration, "'99995959'");
        Row("duration, too many digits", QVariant("100000000"), DataType::Duration, "'00000000'");
        Row("duration, hours beyond", QVariant("10000:00:00"), DataType::Duration, "'00000000'");
        Row("duration, other separators", QVariant("  2.05.09 "), DataType::Duration, "'00020509'");
        Row("duration, no seconds", QVariant("2:05"), DataType::Duration, "'00020500'");
        Row("duration, no digits", QVariant("abc"), DataType::Duration, "'00000000'");
        Row("duration, empty", QVariant(""), DataType::Duration, "'00000000'");
        Row("duration of a time", QVariant(QTime(7, 8, 9)), DataType::Duration, "'00070809'");

        Row("expression", QVariant("GETDATE()"), DataType::Expression, "GETDATE()");
        Row("always null", QVariant("x"), DataType::Null, "Null");
        Row("binary has no literal", QVariant("x"), DataType::Object, "Null");
        Row("type without a rule", QVariant("x"), DataType(10), "Null");
    }
    void Literals() {
        QFETCH(QVariant, value);
        QFETCH(DataType, type);
        QFETCH(QString, literal);
        for (const Provider provider : Providers) {
            QCOMPARE(FormatSqlValue(value, type, provider, English), literal);
        }
    }

    void DateLiterals_data() {
        Columns<QVariant, DataType>("value", "type");
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
        const QStringList dates =
            but(all("'20240305'"),
                {{3, "'2024-03-05'"}, {4, "TO_DATE('20240305','YYYYMMDDHH24MISS')"}, {6, "{^2024/03/05}"}});
        Row("date", QVariant(day), DataType::Date, dates);
        Row("date of a moment", QVariant(moment), DataType::Date, dates);
        Row("date of a text", QVariant("05/03/2024"), DataType::Date, dates);
        Row("time", QVariant(moment), DataType::Time, but(all("'04:06:07'"), {{6, "{04:06:07}"}}));
        Row("time of a date", QVariant(day), DataType::Time, but(all("'00:00:00'"), {{6, "{00:00:00}"}}));
        Row("moment", QVariant(moment), DataType::DateTime,
            but(all("'20240305 04:06:07'"), {{1, "#2024/03/05 04:06:07#"},
                                             {4, "TO_DATE('20240305040607','YYYYMMDDHH24MISS')"},
                                             {6, "{^2024/03/05 04:06:07}"}}));
        Row("moment with dots", QVariant("2024-03-05 04.06.07"), DataType::DateTime,
            but(all("'20240305 04:06:07'"), {{1, "#2024/03/05 04:06:07#"},
                                             {4, "TO_DATE('20240305040607','YYYYMMDDHH24MISS')"},
                                             {6, "{^2024/03/05 04:06:07}"}}));
        const QStringList none = but(all("Null"), {{6, "{00:00:00}"}});
        for (const DataType type : {DataType::Date, DataType::Time, DataType::DateTime}) {
            QTest::addRow("no date, type %d", int(type)) << QVariant("31/02/2024") << type << none;
            QTest::addRow("empty, type %d", int(type)) << QVariant("") << type << none;
            QTest::addRow("number, type %d", int(type)) << QVariant(45356.5) << type << none;
        }
    }
    void DateLiterals() {
        QFETCH(QVariant, value);
        QFETCH(DataType, type);
        QFETCH(QStringList, literals);
        for (qsizetype index = 0; index < Providers.size(); ++index) {
            QCOMPARE(FormatSqlValue(value, type, Providers[index]), literals[index]);
        }
    }

    void NullIsNullForEveryType() {
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

    void LiteralsUnderLocales_data() {
        Columns<LocaleSeparators>("separators");
        Row("Italian", Italian);
        Row("English", English);
        Row("French", French);
        Row("none", LocaleSeparators{});
    }
    void LiteralsUnderLocales() {
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

    /// Texts that share the memory of their statement: what is made of it, and a copy, outlive it.
    void SharedTexts() {
        SqlText whole;
        whole += u"SELECT N FROM T";
        SqlText copy;
        {
            SqlText part(Provider::SqlServer, " WHERE A = ? AND B = ? AND C = ? AND D = ?", 4);
            part.Reserve(12);
            for (const char* text : {"Vite", "perch\xc3\xa9", "", "lungo, oltre lo spazio"}) {
                QVERIFY(part.Fill(text, DataType::NVarChar));
            }
            whole += part;
            copy = part;
            QVERIFY(part.Fill("ancora", DataType::NVarChar));
        }
        const QString text =
            QString::fromUtf8(" WHERE A = 'Vite' AND B = 'perch\xc3\xa9' AND C = '' AND D = 'lungo, oltre lo spazio'");
        QCOMPARE(whole.Text(), "SELECT N FROM T" + text);
        QCOMPARE(copy.Text(), text);
    }
};

QUADRIX_TEST(TestLiterals)

#include "test_literals.moc"
