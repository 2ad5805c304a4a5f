#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/contract/map/rules.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/TargetRow.h"
#include "sql/mod_ovTools.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

#include <limits>

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
        m_target->Execute("INSERT INTO TAB_IVA (CDIVA, IVDES) VALUES ('E10', 'Senza aliquota')");
    }
    void cleanupTestCase() { m_target.reset(); }

    void converts_data() {
        Columns<Rule, QString, QString>("rule", "row", "result");
        TextRows();
        NumberRows();
        CodeRows();
        ConditionRows();
        ShapeRows();
    }
    void converts() {
        QFETCH(const Rule, rule);
        QFETCH(const QString, row);
        QTEST(TextOf(Apply(rule, row)), "result");
    }

    /// Values that cannot be carried over name themselves.
    void refuses_data() {
        Columns<Rule, QString>("rule", "row");
        Row("RoundedTo", RoundedTo(2), "'dieci' A");
        Row("RoundedTo, two points", RoundedTo(2), "'1.000.000' A");
        Row("FirstNotZero, behind a zero", FirstNotZero(), "0 A, 'dieci' B");
        Row("MarkUp", MarkUp(), "'dieci' A, 1 B");
        Row("LeadingNumber", LeadingNumber(), "'circa 10' A");
    }
    void refuses() {
        QFETCH(const Rule, rule);
        QFETCH(const QString, row);
        const auto error = ErrorOf<ImportError>([&] { Apply(rule, row); });
        QVERIFY(error);
        QVERIFY2(error->Message().contains("' non è un numero"), qPrintable(error->Message()));
    }

    void refusesShapes_data() {
        Columns<Rule, QString, QString>("rule", "row", "message");
        Row("DateText, no such day", DateText("yyyyMMdd"), "'20230231' A",
            "'20230231' non è una data scritta yyyyMMdd");
        Row("DateText, another format", DateText("dd/MM/yyyy"), "'2023-01-02' A", "non è una data scritta dd/MM/yyyy");
        Row("DateText, no leap day", DateText("ddMMyy"), "'290201' A", "non è una data scritta ddMMyy");
        Row("Day", Day(), "'domani' A", "'domani' non è una data");
        Row("Implied, with a point", Implied(2), "'12.5' A", "'12.5' non è un numero intero");
        Row("Implied, with an exponent", Implied(2), "'1E3' A", "'1E3' non è un numero intero");
        Row("NotZero", NotZero(), "'dieci' A", "'dieci' non è un numero");
        Row("UnitFactor, another operator", UnitFactor(), "'+' A, 2 B", "'+' non è né * né /");
        Row("CustomerOf", CustomerOf(), "'C9' A", "nessuna controparte ha il codice cliente 'C9'");
        Row("PartyOf, of a customer", PartyOf(), "'F7' A", "nessuna controparte ha il codice cliente 'F7'");
    }
    /// A value that has not the shape that the rule reads is never read as something else.
    void refusesShapes() {
        QFETCH(const Rule, rule);
        QFETCH(const QString, row);
        QFETCH(const QString, message);
        const auto error = ErrorOf<ImportError>([&] { Apply(rule, row); });
        QVERIFY(error);
        QVERIFY2(error->Message().contains(message), qPrintable(error->Message()));
    }

    void logsASupplierThatIsNotThere() {
        const ovErrors::Row underWay(m_target->Get().Errors, "riga 8");
        QCOMPARE(TextOf(Apply(KnownSupplier(), "'F9' A")), LeftOut);
        QVERIFY2(QString::fromLatin1(m_target->Log()).contains("FORNITORE NON TROVATO: riga 8: 'F9'"),
                 m_target->Log().constData());
    }

    /// Numbers of rows and years: what is behind the mark is cut, what a number of Quadrix does not hold is an error.
    void wholeParts() {
        QCOMPARE(WholePartOf(3.9), 3);
        QCOMPARE(WholePartOf(-2147483648.0 + 0.5), -2147483647);
        for (const double number : {2147483648.0, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
            QVERIFY(ErrorOf<ImportError>([number] { WholePartOf(number); }).has_value());
        }
    }

    /// Who mends a row sees at once all that is wrong with it, each thing once.
    void tellsEveryFault_data() {
        Columns<QString, QString>("columns", "told");
        Row("one", "'x' SC, 'MI' PR, '' N1, '' N2, '' N3", "colonna 'SC': 'x' non è un numero");
        Row("several", "'x' SC, 'MILANO' PR, '' N1, '' N2, '7y' N3",
            "colonna 'SC': 'x' non è un numero; colonna 'PR': 'MILANO' ha 6 caratteri, CON_TRO.COPRO ne tiene 5; "
            "colonna 'N3': '7y' non è un numero");
    }
    void tellsEveryFault() {
        QFETCH(const QString, columns);
        ImportRun run(m_target->Get(), "modImport_Prova", "ImportProva", "X");
        const Mapping mapping{"CON_TRO",
                              "CLIENTI",
                              {{"COSC1", "SC", RoundedTo(2)},
                               {"COSF1", "SC, N1", RoundedTo(2)},
                               {"COPRO", "PR", Text()},
                               {"COSC2", "N1", RoundedTo(2)},
                               {"COSC3", "N2", RoundedTo(2)},
                               {"COSF2", "N3", RoundedTo(2)}}};
        const auto fault = [&](const QString& row) {
            const Recordset rows = m_target->Db().ExecuteWC("SELECT " + row);
            TargetRow party(run, "CON_TRO");
            return ErrorOf<ImportError>([&] { mapping.Apply(party, m_target->Get(), SourceRow(rows), {}); })->Message();
        };
        QTEST(fault(columns), "told");
    }

    /// Of a number of which only the beginning counts, the rest does not get lost silently.
    void logsWhatLeadingNumberLeaves() {
        Apply(LeadingNumber(), "'12.5' A");
        QVERIFY(!m_target->Log().contains("'12.5'"));
        Apply(LeadingNumber(), "'30+4' A");
        QVERIFY2(m_target->Log().contains("SCONTO RIDOTTO A UN SOLO VALORE: , colonna 'A': '30+4' letto come 30\r\n"),
                 m_target->Log().constData());
        Apply(LeadingNumber(), "'30 gg' A");
        QVERIFY2(m_target->Log().contains("NUMERO RIDOTTO: , colonna 'A': '30 gg' letto come 30\r\n"),
                 m_target->Log().constData());
    }

    /// A code that Quadrix does not have is replaced, recorded for the operator, and named with its row.
    void replacesUnknownCodes_data() {
        Columns<Rule, QString, QString>("rule", "result", "line");
        Row("VAT code", VatCode("tab", "col"), "022",
            "CODICE IVA NON TROVATO: riga 7: 'w1' non è in TAB_IVA né tradotto in SYS_IMP (tab, col), scritto "
            "'022'");
        Row("currency", Currency("tab", "col"), "EUR",
            "VALUTA NON TROVATA: riga 7: 'w1' non è in TAB_VAL né tradotto in SYS_IMP (tab, col), scritto 'EUR'");
    }
    void replacesUnknownCodes() {
        QFETCH(const Rule, rule);
        const ovErrors::Row underWay(m_target->Get().Errors, "riga 7");
        QTEST(TextOf(Apply(rule, "'w1' A")), "result");
        QFETCH(const QString, line);
        QVERIFY2(QString::fromLatin1(m_target->Log()).contains(line), m_target->Log().constData());
        QCOMPARE(m_target->Value("SELECT COUNT(*) FROM SYS_IMP WHERE TBOLD = 'w1'"), QString("1"));
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

    /// A number that an import has given a list is another one in a company where somebody has made a list of it; what
    /// somebody has entered holds in all.
    void numbersListsByCompany() {
        TestTarget target;
        const auto number = [&target](const QString& company, const Rule& rule, const char* code = "L1") {
            target.Choose(company);
            Recordset rows = target.Db().ExecuteWC(QString("SELECT '%1' A").arg(code));
            return TextOf(rule.apply({target.Get(), SourceRow(rows), {"A"}, {}}));
        };
        const Rule numbered = NumberedList("Prova");
        const Rule ofParty = ListOfParty("Prova", "tab", "col");
        target.AddCompany("X02", "Prova Due S.r.l.");
        target.Execute("INSERT INTO X02_LIS_TES (CDLIS, LTDES, USINS) VALUES ('1', 'Promo', 'ANNA')");
        QCOMPARE(number("X01", numbered), QString("1"));
        QCOMPARE(number("X02", ofParty), QString("2"));
        QCOMPARE(number("X02", numbered), QString("2"));
        QCOMPARE(number("X01", numbered), QString("1"));
        QCOMPARE(number("X01", numbered, "L2"), QString("3")); // 2 is that of L1 in the other company
        QCOMPARE(number("X02", numbered, "L2"), QString("3"));
        QCOMPARE(target.Log().count("LISTINO OCCUPATO"), 1);
        target.Execute("UPDATE SYS_IMP SET TBNEW = '9' WHERE TBNAM = 'codicilistino' AND TBOLD = 'L1'");
        target.Get().Translations.clear();
        QCOMPARE(number("X02", numbered), QString("9"));
    }

    /// A code that waited for its translation and that Quadrix has itself by now waits no more.
    void takesCodesThatCameLater() {
        UntranslatedCodes& told = m_target->Get().Untranslated;
        const auto apply = [&](const Rule& rule) {
            told.Forget();
            return TextOf(Apply(rule, "'W2' A"));
        };
        const Rule currency = Currency("tab", "dopo");
        const Rule bank = OwnBank("tab", "dopo");
        QCOMPARE(apply(currency), QString("EUR"));
        QCOMPARE(told.First(), QStringList("tab.dopo = W2"));
        QCOMPARE(apply(bank), LeftOut);
        QCOMPARE(told.Count(), 1);
        m_target->Execute("INSERT INTO TAB_VAL (CDVAL) VALUES ('W2')");
        m_target->Execute("INSERT INTO X01_BAN_CHE (CDBAN, BAEXT) VALUES ('00009', 'W2')");
        QCOMPARE(apply(currency), QString("W2"));
        QCOMPARE(told.Count(), 0);
        QCOMPARE(apply(bank), QString("00009"));
        QCOMPARE(told.Count(), 0);
    }

    void rounds_data() {
        Columns<double, int, double>("number", "decimals", "rounded");
        Row("a half held below itself", 1.005, 2, 1.01);
        Row("away from zero", -2.5, 0, -3.0);
        Row("less than a half", 1.00499, 2, 1.0);
        Row("large", 123456789.125, 2, 123456789.13);
        Row("all digits known before the half", 100000000002012.5, 0, 100000000002013.0);
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
        const Facts facts{"K1", RoleOf(customer)};
        const QStringList columns = rows.Columns().filter(QRegularExpression("^[ABC]$"));
        return rule.apply({m_target->Get(), source, columns, facts});
    }

    static void TextRows() {
        Row("Text, trimmed", Text(), "'  x y ' A", "x y");
        Row("Text, joined without blank ones", Text(), "'Uno' A, NULL B, ' Tre ' C", "Uno Tre");
        Row("Text, a number is not written with an exponent", Text(), "1e15 A", "1000000000000000");
        Row("First, of the joined text", First(5), "'Uno' A, 'Due' B", "Uno D");
        Row("From", From(4), "'abcdef' A", "def");
        Row("From, behind the end", From(9), "'abc' A", "");
        Row("First, no half of a character", First(3), "'ab😀c' A", "ab");
        Row("From, the whole character", From(4), "'ab😀c' A", "😀c");
        Row("SecondName, what the first line leaves", SecondName(3), "'Rossi' A, 'Figli' B", "si Figli");
        Row("FirstUpper, cut then trimmed", FirstUpper(4), "'via x' A", "VIA");
        Row("Part, trimmed then cut", Part(4, 3), "'abc  12345' A", "123");
        Row("Digits", Digits(5), "'3069' A", "03069");
        Row("Digits, longer", Digits(3), "'12345' A", "12345");
        Row("Digits, of a number", Digits(3), "7 A", "007");
        Row("Digits, not whole", Digits(3), "'1.5' A", "1.5");
        Row("Digits, negative", Digits(3), "'-1' A", "-1");
        Row("Digits, no number", Digits(3), "'EST' A", "EST");
        Row("Digits, with a fraction of nothing", Digits(3), "'7,0' A", "007");
        Row("Digits, a code like a number", Digits(3), "'1E1' A", "1E1");
        Row("Digits, more than a number has", Digits(5), "'123456789012345678901' A", "123456789012345678901");
        Row("WithoutBlanks", WithoutBlanks(), "'IT60 X030 6905' A", "IT60X0306905");
        Row("CodeAndText", CodeAndText(9), "'Vite' A", "K1 - Vite");
        Row("CodeAndText, cut", CodeAndText(6), "'Vite' A", "K1 - V");
        Row("UpperOr, cut", UpperOr(2, "NR"), "'kgx' A", "KG");
        Row("UpperOr, blank", UpperOr(2, "NR"), "' ' A", "NR");
        Row("Choice", Choice({{"P", "PF"}, {"S", "SL"}}, "CM"), "'s' A", "SL");
        Row("Choice, else", Choice({{"P", "PF"}}, "CM"), "NULL A", "CM");
    }

    static void NumberRows() {
        Row("RoundedTo, comma", RoundedTo(2), "'12,345' A", "12.35");
        Row("RoundedTo, blank", RoundedTo(2), "'' A", Null);
        Row("FirstNotZero", FirstNotZero(), "0 A, NULL B, 3.5 C", "3.5");
        Row("FirstNotZero, none", FirstNotZero(), "'' A, 0 B", "0");
        Row("MarkUp", MarkUp(), "100 A, 0 B, 80 C", "25");
        Row("MarkUp, without a cost", MarkUp(), "100 A, 0 B", "0");
        Row("MarkUp, rounded", MarkUp(), "10 A, 3 B", "233.33");
        Row("LeadingNumber", LeadingNumber(), "'10+5' A", "10");
        Row("LeadingNumber, one point", LeadingNumber(), "'1.5.2' A", "1.5");
        Row("LeadingNumber, comma", LeadingNumber(), "'10,5' A", "10.5");
        Row("LeadingNumber, negative", LeadingNumber(), "'-5' A", "-5");
        Row("LeadingNumber, negative, then others", LeadingNumber(), "'-5+3' A", "-5");
        Row("LeadingNumber, blank", LeadingNumber(), "NULL A", Null);
        Row("Discount", Discount(2), "'10+5' A", "5");
        Row("Discount, none", Discount(2), "'8' A", Null);
    }

    static void CodeRows() {
        const QString table = QStringLiteral("tab");
        const QString field = QStringLiteral("col");
        Row("Translated", Translated(table, field), "' a ' A", "X1");
        Row("Translated, still empty", Translated(table, field), "'b' A", LeftOut);
        Row("Translated, missing", Translated(table, field), "'q' A", LeftOut);
        Row("TranslatedOr, blank", TranslatedOr(table, field, "022"), "NULL A", "022");
        Row("TranslatedOr, missing", TranslatedOr(table, field, "022"), "'q' A", LeftOut);
        Row("TranslatedOrUpper, missing", TranslatedOrUpper(table, field, "NR"), "'kg' A", "KG");
        Row("TranslatedOrUpper, blank", TranslatedOrUpper(table, field, "NR"), "'' A", "NR");
        Row("Or, missing", Or(Translated(table, field), "EUR"), "'q' A", "EUR");
        Row("Or, there", Or(Translated(table, field), "EUR"), "'a' A", "X1");
        Row("Or, blank", Or(Text(), "EUR"), "' ' A", "EUR");
        Row("VatCode, translated", VatCode(table, field), "'n4' A", "N4");
        Row("VatCode, known to Quadrix", VatCode(table, field), "'010' A", "010");
        Row("VatCode, blank", VatCode(table, field), "NULL A", "022");
        Row("Currency, known to Quadrix", Currency(table, field), "'USD' A", "USD");
        Row("Currency, blank", Currency(table, field), "'' A", "EUR");
        Row("ExemptVat, known to Quadrix", ExemptVat(table, field), "'N4' A", "N4");
        Row("ExemptVat, rate zero", ExemptVat(table, field), "'n4' A", "N4");
        Row("ExemptVat, blank rate", ExemptVat(table, field), "'E10' A", LeftOut);
        Row("ExemptVat, ordinary rate", ExemptVat(table, field), "'ord' A", LeftOut);
        Row("ExemptVat, not in TAB_IVA", ExemptVat(table, field), "'zz' A", LeftOut);
        Row("VatRate", VatRate(), "'22,5' A", "22.5");
        Row("VatRate, blank", VatRate(), "NULL A", "0");
        Row("Country, translated", Country(table, field), "'D' A", "DEU");
        Row("Country, blank", Country(table, field), "NULL A", "ITA");
        Row("Country, Italy", Country(table, field), "'Italia' A", "ITA");
        Row("Country, three letters", Country(table, field), "'fra' A", "FRA");
        Row("Country, three digits", Country(table, field), "'215' A", LeftOut);
        Row("Country, two letters", Country(table, field), "'FR' A", LeftOut);
        Row("LookedUp", LookedUp("CON_TRO", "COFGE", "CDCON"), "'F7' A", "000007");
        Row("LookedUp, none", LookedUp("CON_TRO", "COFGE", "CDCON"), "'F8' A", LeftOut);
        Row("LookedUp, blank", LookedUp("CON_TRO", "COCGE", "CDCON"), "'' A", LeftOut);
    }

    static void ConditionRows() {
        Row("NotBlank", NotBlank(First(1)), "'ab' A", "a");
        Row("NotBlank, blank", NotBlank(First(1)), "' ' A", LeftOut);
        Row("WhenNotBlank", WhenNotBlank("OTHER", Text()), "'x' A, 'y' OTHER", "x");
        Row("WhenNotBlank, blank", WhenNotBlank("OTHER", Text()), "'x' A, '' OTHER", LeftOut);
        Row("CustomerOnly", CustomerOnly(Text()), "'x' A", "x");
        Row("SupplierOnly", SupplierOnly(Text()), "'x' A", LeftOut);
        Row("IsSupplier", IsSupplier(), "'x' A", "False");
        Row("Is, any case", Is("s"), "'S' A", "True");
        Row("Is, blank", Is("S"), "NULL A", "False");
        for (const char* set : {"'s'", "'Y'", "'t'", "'true'", "1", "-1"}) {
            QTest::addRow("Flag, %s", set) << Flag() << QString(set) + " A"
                                           << "True";
        }
        for (const char* clear : {"'N'", "0", "NULL", "'x'"}) {
            QTest::addRow("Flag, %s", clear) << Flag() << QString(clear) + " A"
                                             << "False";
        }
        Row("Today", Today(), "'x' A", "2024-03-05");
        Row("MomentOrNow, blank", MomentOrNow(), "'' A", "2024-03-05 10:20:30");
        Row("MomentOrNow", MomentOrNow(), "'20200101 08:00:00' A", "20200101 08:00:00");
    }

    static void ShapeRows() {
        Row("FirstNotBlank", FirstNotBlank(First(2)), "' ' A, 'abc' B, 'x' C", "ab");
        Row("FirstNotBlank, none", FirstNotBlank(NotBlank(Text())), "NULL A, '' B", LeftOut);
        Row("DateText", DateText("yyyyMMdd"), "'20230115' A", "2023-01-15");
        Row("DateText, two digits of a year", DateText("ddMMyy"), "'150149' A", "2049-01-15");
        Row("DateText, a leap day of 2000", DateText("yyMMdd"), "'000229' A", "2000-02-29");
        Row("DateText, of the last century", DateText("ddMMyy"), "'150187' A", "1987-01-15");
        Row("DateText, zeros", DateText("yyyyMMdd"), "'00000000' A", Null);
        Row("DateText, separators alone", DateText("dd/MM/yyyy"), "'  /  /    ' A", Null);
        Row("Day", Day(), "'20230115' A", "2023-01-15");
        Row("Day, the one for none", Day(QDate(1799, 12, 31)), "'17991231' A", Null);
        Row("Day, none of SQL Server", Day(), "'19000101' A", Null);
        Row("Day, zero", Day(), "'30/12/1899' A", Null);
        Row("DayOrToday, none", DayOrToday(), "'19000101' A", "2024-03-05");
        Row("Day, blank", Day(), "' ' A", Null);
        Row("Implied", Implied(2), "'0012345' A", "123.45");
        Row("Implied, negative", Implied(3), "'-1500' A", "-1.5");
        Row("Implied, blank", Implied(2), "' ' A", Null);
        Row("NotZero", NotZero(), "'1,5' A", "1.5");
        Row("NotZero, zero", NotZero(), "'0,00' A", LeftOut);
        Row("NotZero, blank", NotZero(), "NULL A", LeftOut);
        Row("UnitFactor", UnitFactor(), "'*' A, '12,5' B", "12.5");
        Row("UnitFactor, zero", UnitFactor(), "'/' A, 0 B", LeftOut);
        Row("Street", Street(), "'Via Roma, 12/a' A", "Via Roma");
        Row("Street, number in its name", Street(), "'Piazza 4 Novembre' A", "Piazza 4 Novembre");
        Row("Street, with the mark of the number", Street(), "'Viale Po n. 7' A", "Viale Po");
        Row("StreetNumber", StreetNumber(), "'Via Roma, 12/a' A", "12/a");
        Row("StreetNumber, behind a number in the name", StreetNumber(), "'Piazza 4 Novembre 12' A", "12");
        Row("StreetNumber, none", StreetNumber(), "'Loc. Fornace' A", LeftOut);
        Row("Unit, known to Quadrix", Unit("tab", "col", "NR"), "'PZ' A", "PZ");
        Row("Unit, translated", Unit("tab", "col", "NR"), "'a' A", "X1");
        Row("Unit, blank", Unit("tab", "col", "NR"), "'' A", "NR");
        Row("Work, not translated", Work("tab", "col"), "'taglio' A", "taglio");
        Row("ArticleCode, case of keys", ArticleCode("tab", "col"), "'ab-1' A", "AB-1");
        Row("ArticleCode, blank", ArticleCode("tab", "col"), "' ' A", LeftOut);
        Row("SupplierOf", SupplierOf(), "'F7' A", "000007");
    }

    std::unique_ptr<TestTarget> m_target;
};

QUADRIX_TEST(TestRules)
#include "test_rules.moc"
