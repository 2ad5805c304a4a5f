// Kordel NetSuite: files of the ACG package of an AS/400 over ODBC, data source NETSUITE unless the setting DSN names
// another, in the library of the setting Databasename; without it in that of the data source. Texts are padded with
// blanks, days are numbers. Counterparties, articles and bills stand here, orders and base tables in
// modImport_NetSuite_documents.cpp.
// ANCL200F, ANFO200F and the names of persons are known from installations, as are their codes, names and addresses, of
// ANPA200F the name alone; everything else is this system's own reading in their style. Left out: SPMAF (stamp
// charges). A row whose record state (ATREC) is not blank is cancelled, and told as left out; bills and base tables
// have none.

#include "adapters/origins/NetSuite/modImport_NetSuite.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/run/SourceLayout.h"
#include "adapters/sourceSettings.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "core/wholeSettings.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_NetSuite {

const contract::Origin& Entry();

namespace {

const QString Persone = QStringLiteral("ANFC200F"); ///< names of customers who are natural persons
const QString Mandati = QStringLiteral("ACGSEP00F");
const QString Legami = QStringLiteral("DIBA200F");
const QString Cicli = QStringLiteral("CICL200F");

/// Every file, for its library.
const QStringList& Files() {
    static const QStringList files{Clienti,    Fornitori,  Parti,      Persone,    Mandati,
                                   Legami,     Cicli,      "ORCT200F", "ORCR200F", "ORFT200F",
                                   "ORFR200F", "TBPA200F", "TBIV200F", "TBUM200F", "TBBA200F"};
    return files;
}

// --- Rules --------------------------------------------------------------------------------------------------------

/// Numbers of a bank that are all zeros are none.
Rule ZerosAsBlank(const Rule& rule) {
    return Around(rule, QStringLiteral("niente se è vuoto o tutto zeri; ") + rule.text,
                  [apply = rule.apply](const RuleInput& input) -> RuleValue {
                      const QString text = input.Text();
                      const bool isNone = std::all_of(text.begin(), text.end(), [](QChar one) { return one == u'0'; });
                      return isNone ? std::nullopt : apply(input);
                  });
}

/// The exemption (last column) of a customer whose flag (first column) is not "N".
Rule Esenzione() {
    const Rule exempt = ExemptVat(Clienti, "CDASS");
    return Needing(1, {exempt.text + QStringLiteral("; niente se il flag è \"N\""),
                       [apply = exempt.apply](const RuleInput& input) -> RuleValue {
                           const QStringList code{input.columns.last()};
                           return input.row.Text(input.columns.first()).toUpper() == u"N"
                                      ? std::nullopt
                                      : apply({input.session, input.row, code, input.facts});
                       }});
}

/// Anything but "N" and blank.
Rule Noted() {
    return {"falso per \"N\" e vuoto, altrimenti vero", [](const RuleInput& input) {
                const QString text = input.Text().toUpper();
                return RuleValue(!text.isEmpty() && text != u"N");
            }};
}

/// The counterparty that is of the other kind as well: the first column names that one, or that one's file the party.
/// @param naming the rows that do, by their column `code` @param known the counterparty of such a code
Rule SameParty(const QString& table, const ChildTable& naming, const QString& code, const Rule& known) {
    const Rule named = NotZeroCode(known);
    const Rule other = OfFirst(table, naming, code, known);
    return {QStringLiteral("%1, della prima colonna; altrimenti %2").arg(known.text, other.text),
            [named = named.apply, other = other.apply](const RuleInput& input) {
                const QStringList own{input.columns.first()};
                const RuleValue found = named({input.session, input.row, own, input.facts});
                return found ? found : other(input);
            },
            Side::Both, other.reads};
}

/// Rows of a file that some installations have, of the customer under way.
ChildTable OfCustomer(const QString& table, const QString& order) {
    return {.table = table, .on = {{"CDCLI"}}, .order = order, .isOptional = true};
}

Rule NameOfPerson(const QString& column) {
    return OfFirst(Clienti, OfCustomer(Persone, "CDCLI"), column, NotBlank(Text()));
}

/// The account that a customer's first mandate is on.
Rule IbanOfMandate() { return OfFirst(Clienti, OfCustomer(Mandati, "CDMAN"), "CDIBA", NotBlank(WithoutBlanks())); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Counterparties ContropartiClienti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiNetSuite", .step = "Clienti"},
        .source = {.table = Clienti, .key = "CDCLI", .order = "CDCLI"},
        .roles = Always({.customer = true}),
        .name = "RASCL, RASC2",
        .vatNumber = "PARIV",
        .taxCode = "CDFIS",
        .sameAs = {"CDFCL, CDCLI",
                   SameParty(Clienti, {.table = Fornitori, .on = {{"CDCLF", "CDCLI"}}, .order = "CDFOR"}, "CDFOR",
                             LookedUp("CON_TRO", "COFGE", "CDCON"))},
        .lines =
            {
                {"CORAS", "RASCL", First(35)},
                {"CORA2", "RASCL, RASC2", SecondName(35)},
                {"COPER", "FLPFI", Not(Is("G"))},
                {"COCOG", "CDCLI", NameOfPerson("COGNO")},
                {"CONOM", "CDCLI", NameOfPerson("NOMEP")},
                {"COIND", "INDCL", Text()},
                {"COCIT", "LOCCL", Text()},
                {"COPRO", "PROCL", Text()},
                {"COCAP", "CAPCL", Text()},
                {"CONAZ", "CDNAZ", Country(Clienti, "CDNAZ")},
                {"COFIS", "CDFIS", NotBlank(Text())},
                {"COIVA", "PARIV", NotBlank(Text())},
                {"COVAL", "CDVAL", Valuta(Clienti)},
                {"COMOP", "CDPAG", CustomerOnly(Translated(Clienti, "CDPAG"))},
                {"COABI", "CDABI", ZerosAsBlank(Digits(5))},
                {"COCAB", "CDCAB", ZerosAsBlank(Digits(5))},
                {"COCOC", "NRCCR", ZerosAsBlank(Text())},
                {"COIBA", "CDCLI", IbanOfMandate()},
                {"COESE", "FLIVA, CDASS", Esenzione()},
                {"COCCC", "CATEG", CustomerOnly(Translated(Clienti, "CATEG"))},
                {"COCLC", "CLPAR", Translated(Clienti, "CLPAR")},
                {"COMAC", "CDCNT", CustomerOnly(Translated(Clienti, "CDCNT"))},
                {"COAGE", "CDAGE", Translated(Clienti, "CDAGE")},
                {"COLSC", "CDLIS", CustomerOnly(Translated(Clienti, "CDLIS"))},
                {"COZON", "CDZON", Translated(Clienti, "CDZON")},
                {"COSC1", "SCON1", CustomerOnly(RoundedTo(2))},
                {"CONOT", "CNOTE", Text()},
                {"COSPP", "FLSPL", Noted()},
            },
        .numbers = {.office = "NTECL", .fax = "FAXCL", .mail = "EMAIL"},
        .cancelled = Cancelled,
        .further = ReadsState(Clienti),
    };
}

Counterparties ContropartiFornitori() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiNetSuite", .step = "Fornitori"},
        .source = {.table = Fornitori, .key = "CDFOR", .order = "CDFOR"},
        .roles = Always({.supplier = true}),
        .name = "RASFO, RASF2",
        .vatNumber = "PARIV",
        .taxCode = "CDFIS",
        .sameAs = {"CDCLF, CDFOR",
                   SameParty(Fornitori, {.table = Clienti, .on = {{"CDFCL", "CDFOR"}}, .order = "CDCLI"}, "CDCLI",
                             KnownCustomer())},
        .lines =
            {
                {"CORAS", "RASFO", First(35)},
                {"CORA2", "RASFO, RASF2", SecondName(35)},
                {"COPER", "FLPFI", Not(Is("G"))},
                {"COIND", "INDFO", Text()},
                {"COCIT", "LOCFO", Text()},
                {"COPRO", "PROFO", Text()},
                {"COCAP", "CAPFO", Text()},
                {"COFIS", "CDFIS", NotBlank(Text())},
                {"COIVA", "PARIV", NotBlank(Text())},
                {"COVAL", "CDVAL", Valuta(Fornitori)},
                {"COABI", "CDABI", ZerosAsBlank(Digits(5))},
                {"COCAB", "CDCAB", ZerosAsBlank(Digits(5))},
                {"COCOC", "NRCCR", ZerosAsBlank(Text())},
                {"COMOA", "CDPAG", SupplierOnly(Translated(Fornitori, "CDPAG"))},
                {"COCCF", "CATEG", SupplierOnly(Translated(Fornitori, "CATEG"))},
                {"COMAF", "CDCNT", SupplierOnly(Translated(Fornitori, "CDCNT"))},
                {"COBLA", "FLBLO", SupplierOnly(Noted())},
                {"COCLC", "FOPAR", Translated(Fornitori, "FOPAR")},
            },
        .numbers = {.office = "NTEFO", .fax = "FAXFO", .mail = "EMAIL"},
        .empties = false,
        .cancelled = Cancelled,
        .further = ReadsState(Fornitori),
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliNetSuite"},
        .source = {.table = Parti, .key = "CDPAR", .order = "CDPAR"},
        .code = {"CDPAR", Article()},
        .description = "DSPAR",
        .lines =
            {
                {"CDEXT", "CDPAR", First(50)},
                {"ARDE2", "DSPA2", First(100)},
                {"ARUMS", "UMMAG", Unit(Parti, "UMMAG", schema::defaults::Unit)},
                {"ARUMP", "UMACQ", Unit(Parti, "UMMAG", "")},
                {"ARCOE", "CFCON", NotZero()},
                {"ARIVA", "CDIVA", VatCode(Parti, "CDIVA")},
                {"ARCLA", "TPPAR", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                {"ARFAM", "CDGRU", Translated(Parti, "CDGRU")},
                {"ARCOS", "CSSTD, CSULT", FirstNotZero()},
                {"ARPRZ", "PRVEN", RoundedTo(6)},
                {"ARPSN", "PSNET", RoundedTo(3)},
                {"ARPSL", "PSLOR", RoundedTo(3)},
                {"ARSMN", "SCMIN", RoundedTo(6)},
                {"ARSMX", "SCMAX", RoundedTo(6)},
                {"ARLOR", "LTRIO", RoundedTo(6)},
                {"ARGGA", "GGAPP", RoundedTo(0)},
                {"ARDIS", "NRDIS", Text()},
                {"ARANN", "ATPAR", Not(Is(""))},
            },
        .suppliers = {{.supplier = {"CDFOR", KnownSupplier()},
                       .price = {"CSSTD, CSULT", FirstNotZero()},
                       .leadDays = "GGAPP",
                       .lot = "LTRIO"}},
        .cancelled = Cancelled,
        .more = SetMarkUp,
        .further = ReadsState(Parti),
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// A day of nines alone is no end.
Rule LastDay() {
    const Rule day = Giorno();
    return Around(day, day.text + QStringLiteral(", o tutto nove"),
                  [apply = day.apply](const RuleInput& input) -> RuleValue {
                      const QString text = input.Text();
                      const bool isOpen = std::all_of(text.begin(), text.end(), [](QChar c) { return c == u'9'; });
                      return isOpen ? RuleValue(QVariant()) : apply(input);
                  });
}

/// A file holds the components of every bill, each under the code of its article.
Bills Distinte() {
    return {
        .frame = {.module = Module, .procedure = "ImportDistinteNetSuite"},
        .source = {.table = Legami, .key = "CDPAD", .order = "CDPAD", .distinct = true},
        .article = {"CDPAD", Article()},
        .components =
            {
                .rows = {.table = Legami, .on = {{"CDPAD"}}, .order = "NRSEQ", .naming = "CDPAD, NRSEQ"},
                .article = {"CDFIG", Article()},
                .quantity = "QTIMP",
                .from = {"DTINV", Giorno()},
                .note = "DSNOT",
                .position = "NRSEQ",
                .until = {"DTFIV", LastDay()},
                .lines = {{"DCCOE", "PCSCA", WasteFactor()}},
            },
        .phases =
            BillPhases{
                .rows = {.table = Cicli, .on = {{"CDPAR", "CDPAD"}}, .order = "NRFAS", .naming = "CDPAR, NRFAS"},
                .key = "NRFAS",
                .number = "NRFAS",
                .work = {"CDCDL", Work(Cicli, "CDCDL")},
                .setUpTime = "TMATT",
                .unitTime = "TMUNI",
                .supplier = {"CDFOR", NotZeroCode(KnownSupplier())},
            },
    };
}

// --- Source and entry ---------------------------------------------------------------------------------------------

/// What names a library of the system; a path or a file is the source of another origin.
bool IsLibrary(const QString& name) {
    static const QRegularExpression library(QStringLiteral("^[A-Z$#@][A-Z0-9_$#@]{0,9}$"),
                                            QRegularExpression::CaseInsensitiveOption);
    return library.match(name).hasMatch();
}

/// The files stand in a library, which the layout file can tell for each.
bool PrepareSource(Session& session, ovConnection& source) {
    const bool prepared = sourceSettings::DataSource("NETSUITE")(session, source);
    const QString section = sourceSettings::SectionOf(session, "Kordel NetSuite", "Databasename");
    const QString library = modMain::GetWholeConfig(session, section, "Databasename", {}).trimmed();
    if (prepared && IsLibrary(library)) {
        for (const QString& file : Files()) {
            LayoutOf(source).CallTable(file, library + u'.' + file);
        }
    }
    return prepared;
}

/// Customers, who empty the tables, then suppliers.
Procedure Controparti() {
    return ProcedureOf(Button::Cli, FrameOf(ContropartiClienti()),
                       {PartOf(ContropartiClienti()), PartOf(ContropartiFornitori())});
}

} // namespace

Rule Valuta(const QString& table) {
    const Rule currency = Currency(table, "CDVAL");
    return Around(currency, "\"EURO\" vale \"EUR\"; " + currency.text,
                  [apply = currency.apply](const RuleInput& input) {
                      const QString text = input.Text();
                      const bool isEuro = text.compare(u"EURO", Qt::CaseInsensitive) == 0;
                      return apply({input.session, input.row, input.columns, input.facts,
                                    isEuro ? schema::defaults::Currency : text});
                  });
}

Rule Giorno() {
    return {"giorno come numero aaaammgg o aammgg; nessuno se è 0",
            [whole = DateText("yyyyMMdd"), brief = DateText("yyMMdd")](const RuleInput& input) {
                constexpr int briefSize = 6;
                const QString text = input.Text();
                return text.isEmpty() || text.size() > briefSize
                           ? whole.apply(input)
                           : brief.apply({input.session, input.row, input.columns, input.facts,
                                          text.rightJustified(briefSize, u'0')});
            }};
}

QString Cancelled(const SourceRow& row) {
    return row.IsBlank("ATREC") ? QString() : QStringLiteral("record annullato (ATREC)");
}

Needs ReadsState(const QString& table) { return {{}, {{table, {}, {"ATREC"}}}, {}}; }

const Origin& Entry() {
    static const Origin origin{
        "Kordel NetSuite",
        Module,
        {"ODBC", {PrepareSource, Place::DataSource, sourceSettings::DataSource("NETSUITE").keys}},
        Buttons("YYYYYYNY", {{Button::Saldi, "Importa Tabelle Generali"}, {Button::Disegni, "Fusione Controparti"}}),
        Shown::Keep,
        {
            Controparti(),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(Button::Doc, Ordini(true)),
            ProcedureOf(Button::Acq, Ordini(false)),
            TabelleBase(),
        },
    };
    return origin;
}

} // namespace modImport_NetSuite
