#include "adapters/contract/rules.h"
#include "sql/mod_ovTools.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace contract;
using namespace contract::rules;

Q_DECLARE_METATYPE(contract::Rule)

namespace {

const QString LeftOut = QStringLiteral("(left out)");
const QString Null = QStringLiteral("(Null)");

QString TextOf(const RuleValue& value) {
    return !value ? LeftOut : value->isNull() ? Null : mod_ovTools::ToText(*value);
}

} // namespace

/// Each rule on the values that a source may hold.
class TestRules : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        m_target = std::make_unique<TestTarget>();
        for (const char* row : {"'a', 'X1'", "'b', ''", "'n4', 'N4'", "'ord', '022'", "'zz', 'MANCA'", "'D', 'DEU'"}) {
            m_target->Execute(
                QString("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('tab', 'col', %1)").arg(row));
        }
        m_target->Execute("INSERT INTO X01_CON_TRO (CDCON, COFGE, CORAS) VALUES ('000007', 'F7', 'Acciai')");
    }
    void cleanupTestCase() { m_target.reset(); }

    void converts_data() {
        QTest::addColumn<Rule>("rule");
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("result");
        TextRows();
        NumberRows();
        CodeRows();
        ConditionRows();
    }
    void converts() {
        QFETCH(const Rule, rule);
        QFETCH(const QString, row);
        QTEST(TextOf(Apply(rule, row)), "result");
    }

    /// Values that cannot be carried over name themselves.
    void refuses_data() {
        QTest::addColumn<Rule>("rule");
        QTest::addColumn<QString>("row");
        QTest::newRow("RoundedTo") << RoundedTo(2) << "'dieci' A";
        QTest::newRow("RoundedTo, two points") << RoundedTo(2) << "'1.000.000' A";
        QTest::newRow("FirstNotZero, behind a zero") << FirstNotZero() << "0 A, 'dieci' B";
        QTest::newRow("MarkUp") << MarkUp() << "'dieci' A, 1 B";
        QTest::newRow("LeadingNumber") << LeadingNumber() << "'circa 10' A";
    }
    void refuses() {
        QFETCH(const Rule, rule);
        QFETCH(const QString, row);
        const auto error = ErrorOf<ImportError>([&] { Apply(rule, row); });
        QVERIFY(error);
        QVERIFY2(error->Message().contains("' non è un numero"), qPrintable(error->Message()));
    }

    /// Of a number of which only the beginning counts, the rest does not get lost silently.
    void logsWhatLeadingNumberLeaves() {
        Apply(LeadingNumber(), "'12.5' A");
        QVERIFY(!m_target->Log().contains("'12.5'"));
        Apply(LeadingNumber(), "'30+4' A");
        QVERIFY2(m_target->Log().contains("'A': '30+4' letto come 30\r\n"), m_target->Log().constData());
    }

    /// Codes without a translation are recorded once for the operator; those of the other rules are not.
    void recordsMissingCodes() {
        const QString recorded = "SELECT COUNT(*) FROM SYS_IMP WHERE TBNAM = 'tab' AND TBOLD = 'nuovo'";
        for (const Rule& rule :
             {Translated("tab", "col"), TranslatedOrUpper("tab", "col", "NR"), Country("tab", "col")}) {
            Apply(rule, "'nuovo' A");
        }
        QCOMPARE(m_target->Value(recorded), QString("1"));
        QCOMPARE(m_target->Value("SELECT COUNT(*) FROM SYS_IMP WHERE TBOLD = ''"), QString("0"));
    }

    /// The mapping pages tell the rules apart.
    void wordsRules() {
        QCOMPARE(CustomerOnly(NotBlank(First(35))).text,
                 QString("first 35 characters; only when not blank; customers only"));
        QCOMPARE(Choice({{"P", "PF"}}, "CM").text, QString("\"PF\" for \"P\", else \"CM\""));
        QCOMPARE(Or(Translated("t", "c"), "EUR").text, Translated("t", "c").text + "; \"EUR\" when there is none");
    }

    void rounds_data() {
        QTest::addColumn<double>("number");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<double>("rounded");
        QTest::newRow("a half held below itself") << 1.005 << 2 << 1.01;
        QTest::newRow("away from zero") << -2.5 << 0 << -3.0;
        QTest::newRow("less than a half") << 1.00499 << 2 << 1.0;
        QTest::newRow("large") << 123456789.125 << 2 << 123456789.13;
    }
    void rounds() {
        QFETCH(const double, number);
        QFETCH(const int, decimals);
        QTEST(contract::RoundedTo(number, decimals), "rounded");
    }

private:
    RuleValue Apply(const Rule& rule, const QString& row, bool customer = true) {
        const Recordset rows = m_target->Db().ExecuteWC("SELECT " + row);
        const SourceRow source(rows);
        const Facts facts{"K1", customer};
        const QStringList columns = rows.Columns().filter(QRegularExpression("^[ABC]$"));
        return rule.apply({m_target->Get(), source, columns, facts});
    }

    static void TextRows() {
        QTest::newRow("Text, trimmed") << Text() << "'  x y ' A"
                                       << "x y";
        QTest::newRow("Text, joined without blank ones") << Text() << "'Uno' A, NULL B, ' Tre ' C"
                                                         << "Uno Tre";
        QTest::newRow("Text, a number is not written with an exponent") << Text() << "1e15 A"
                                                                        << "1000000000000000";
        QTest::newRow("First, of the joined text") << First(5) << "'Uno' A, 'Due' B"
                                                   << "Uno D";
        QTest::newRow("From") << From(4) << "'abcdef' A"
                              << "def";
        QTest::newRow("From, behind the end") << From(9) << "'abc' A"
                                              << "";
        QTest::newRow("FirstUpper, cut then trimmed") << FirstUpper(4) << "'via x' A"
                                                      << "VIA";
        QTest::newRow("Part, trimmed then cut") << Part(4, 3) << "'abc  12345' A"
                                                << "123";
        QTest::newRow("Digits") << Digits(5) << "'3069' A"
                                << "03069";
        QTest::newRow("Digits, longer") << Digits(3) << "'12345' A"
                                        << "12345";
        QTest::newRow("Digits, of a number") << ThreeDigits() << "7 A"
                                             << "007";
        QTest::newRow("Digits, not whole") << ThreeDigits() << "'1.5' A"
                                           << "1.5";
        QTest::newRow("Digits, negative") << ThreeDigits() << "'-1' A"
                                          << "-1";
        QTest::newRow("Digits, no number") << ThreeDigits() << "'EST' A"
                                           << "EST";
        QTest::newRow("WithoutBlanks") << WithoutBlanks() << "'IT60 X030 6905' A"
                                       << "IT60X0306905";
        QTest::newRow("CodeAndText") << CodeAndText(9) << "'Vite' A"
                                     << "K1 - Vite";
        QTest::newRow("CodeAndText, cut") << CodeAndText(6) << "'Vite' A"
                                          << "K1 - V";
        QTest::newRow("UpperOr, cut") << UpperOr(2, "NR") << "'kgx' A"
                                      << "KG";
        QTest::newRow("UpperOr, blank") << UpperOr(2, "NR") << "' ' A"
                                        << "NR";
        QTest::newRow("Choice") << Choice({{"P", "PF"}, {"S", "SL"}}, "CM") << "'s' A"
                                << "SL";
        QTest::newRow("Choice, else") << Choice({{"P", "PF"}}, "CM") << "NULL A"
                                      << "CM";
    }

    static void NumberRows() {
        QTest::newRow("RoundedTo, comma") << RoundedTo(2) << "'12,345' A"
                                          << "12.35";
        QTest::newRow("RoundedTo, blank") << RoundedTo(2) << "'' A" << Null;
        QTest::newRow("FirstNotZero") << FirstNotZero() << "0 A, NULL B, 3.5 C"
                                      << "3.5";
        QTest::newRow("FirstNotZero, none") << FirstNotZero() << "'' A, 0 B"
                                            << "0";
        QTest::newRow("MarkUp") << MarkUp() << "100 A, 0 B, 80 C"
                                << "25";
        QTest::newRow("MarkUp, without a cost") << MarkUp() << "100 A, 0 B"
                                                << "0";
        QTest::newRow("MarkUp, rounded") << MarkUp() << "10 A, 3 B"
                                         << "233.33";
        QTest::newRow("LeadingNumber") << LeadingNumber() << "'10+5' A"
                                       << "10";
        QTest::newRow("LeadingNumber, one point") << LeadingNumber() << "'1.5.2' A"
                                                  << "1.5";
        QTest::newRow("LeadingNumber, blank") << LeadingNumber() << "NULL A" << LeftOut;
    }

    static void CodeRows() {
        const QString table = QStringLiteral("tab");
        const QString field = QStringLiteral("col");
        QTest::newRow("Translated") << Translated(table, field) << "' a ' A"
                                    << "X1";
        QTest::newRow("Translated, still empty") << Translated(table, field) << "'b' A" << LeftOut;
        QTest::newRow("Translated, missing") << Translated(table, field) << "'q' A" << LeftOut;
        QTest::newRow("TranslatedOr, blank") << TranslatedOr(table, field, "022") << "NULL A"
                                             << "022";
        QTest::newRow("TranslatedOr, missing") << TranslatedOr(table, field, "022") << "'q' A" << LeftOut;
        QTest::newRow("TranslatedOrUpper, missing") << TranslatedOrUpper(table, field, "NR") << "'kg' A"
                                                    << "KG";
        QTest::newRow("TranslatedOrUpper, blank") << TranslatedOrUpper(table, field, "NR") << "'' A"
                                                  << "NR";
        QTest::newRow("Or, missing") << Or(Translated(table, field), "EUR") << "'q' A"
                                     << "EUR";
        QTest::newRow("Or, there") << Or(Translated(table, field), "EUR") << "'a' A"
                                   << "X1";
        QTest::newRow("Or, blank") << Or(Text(), "EUR") << "' ' A"
                                   << "EUR";
        QTest::newRow("ExemptVat, rate zero") << ExemptVat(table, field) << "'n4' A"
                                              << "N4";
        QTest::newRow("ExemptVat, ordinary rate") << ExemptVat(table, field) << "'ord' A" << LeftOut;
        QTest::newRow("ExemptVat, not in TAB_IVA") << ExemptVat(table, field) << "'zz' A" << LeftOut;
        QTest::newRow("Country, translated") << Country(table, field) << "'D' A"
                                             << "DEU";
        QTest::newRow("Country, blank") << Country(table, field) << "NULL A"
                                        << "ITA";
        QTest::newRow("Country, Italy") << Country(table, field) << "'Italia' A"
                                        << "ITA";
        QTest::newRow("Country, three letters") << Country(table, field) << "'fra' A"
                                                << "FRA";
        QTest::newRow("Country, two letters") << Country(table, field) << "'FR' A" << LeftOut;
        QTest::newRow("LookedUp") << LookedUp("CON_TRO", "COFGE", "CDCON") << "'F7' A"
                                  << "000007";
        QTest::newRow("LookedUp, none") << LookedUp("CON_TRO", "COFGE", "CDCON") << "'F8' A" << LeftOut;
        QTest::newRow("LookedUp, blank") << LookedUp("CON_TRO", "COCGE", "CDCON") << "'' A" << LeftOut;
    }

    static void ConditionRows() {
        QTest::newRow("NotBlank") << NotBlank(First(1)) << "'ab' A"
                                  << "a";
        QTest::newRow("NotBlank, blank") << NotBlank(First(1)) << "' ' A" << LeftOut;
        QTest::newRow("WhenNotBlank") << WhenNotBlank("OTHER", Text()) << "'x' A, 'y' OTHER"
                                      << "x";
        QTest::newRow("WhenNotBlank, blank") << WhenNotBlank("OTHER", Text()) << "'x' A, '' OTHER" << LeftOut;
        QTest::newRow("CustomerOnly") << CustomerOnly(Text()) << "'x' A"
                                      << "x";
        QTest::newRow("SupplierOnly") << SupplierOnly(Text()) << "'x' A" << LeftOut;
        QTest::newRow("IsSupplier") << IsSupplier() << "'x' A"
                                    << "False";
        QTest::newRow("Is, any case") << Is("s") << "'S' A"
                                      << "True";
        QTest::newRow("Is, blank") << Is("S") << "NULL A"
                                   << "False";
        for (const char* set : {"'s'", "'Y'", "'t'", "'true'", "1", "-1"}) {
            QTest::addRow("Flag, %s", set) << Flag() << QString(set) + " A"
                                           << "True";
        }
        for (const char* clear : {"'N'", "0", "NULL", "'x'"}) {
            QTest::addRow("Flag, %s", clear) << Flag() << QString(clear) + " A"
                                             << "False";
        }
        QTest::newRow("Today") << Today() << "'x' A"
                               << "2024-03-05";
        QTest::newRow("MomentOrNow, blank") << MomentOrNow() << "'' A"
                                            << "2024-03-05 10:20:30";
        QTest::newRow("MomentOrNow") << MomentOrNow() << "'20200101 08:00:00' A"
                                     << "20200101 08:00:00";
    }

    std::unique_ptr<TestTarget> m_target;
};

QUADRIX_TEST(TestRules)
#include "test_rules.moc"
