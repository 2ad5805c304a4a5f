// Cometa: a database over ODBC, data source COMETA unless the setting DSN names another. Customers and suppliers with
// their destinations, articles from a day on, price lists. The whole layout, tables and columns, is this system's own
// in the product's style, all releases alike, and is fitted to an installation by the layout file
// "Tracciati/Cometa.ini". Quadrix numbers the price lists: SYS_IMP tells the number of each code (codicilistino,
// COMETA). A price holds up to LRQTAX, blank or 0 for any quantity. Left out: prices of a list that LISTES does not
// have, which are told. Known gaps: bills, stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/askedSince.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Cometa {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Cometa");

/// How SYS_IMP calls the origin where it numbers price lists.
const QString Numbering = QStringLiteral("COMETA");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Anagcf = QStringLiteral("ANAGCF");
const QString Destinazioni = QStringLiteral("DESTIN");
const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString Testate = QStringLiteral("LISTES");
const QString Righe = QStringLiteral("LISRIG");

Rule Article() { return ArticleCode(ArticoliTable, "ARCODI"); }

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "ACRAG1",
    .name2 = "ACRAG2",
    .street = "ACINDI",
    .postCode = "ACCAPP",
    .town = "ACLOCA",
    .province = "ACPROV",
    .country = "ACNAZI",
    .vatNumber = "ACPIVA",
    .taxCode = "ACCFIS",
    .payment = "ACPAGA",
    .ownBank = "ACBANA",
    .abi = "ACABIX",
    .cab = "ACCABX",
    .cin = "ACCINX",
    .account = "ACCOCO",
    .iban = "ACIBAN",
    .bic = "ACBICX",
    .discount1 = "ACSCO1",
    .discount2 = "ACSCO2",
    .agent = "ACAGEN",
    .currency = "ACVALU",
    .language = "ACLING",
    .zone = "ACZONA",
    .category = "ACCATE",
    .exemption = "ACESEN",
    .port = "ACPORT",
    .carrier = "ACVETT",
    .credit = "ACFIDO",
    .ledger = "ACCONT",
    .isBlocked = "ACBLOC",
    .isCancelled = "ACANNU",
    .note = "ACNOTE",
    .created = "ACDINS",
};

/// Customers or suppliers.
struct Half {
    QString procedure;
    QString announcement;
    QString step;
    QString completion;
    QString where;
    bool empties; ///< suppliers follow the customers, whose import has emptied the tables
};
const Half Clienti{"ImportClientiCometa",
                   "Inizio importazione clienti",
                   "Clienti",
                   "Clienti importati correttamente!",
                   "ACTIPO = 'C'",
                   true};
const Half Fornitori{"ImportFornitoriCometa",
                     "Inizio importazione fornitori",
                     "Fornitori",
                     "Fornitori importati correttamente!",
                     "ACTIPO = 'F'",
                     false};

Branches Sedi() {
    return {
        .rows = {.table = Destinazioni, .on = {{"DSTIPO", "ACTIPO"}, {"DSCODI", "ACCODI"}}, .order = "DSPROG"},
        .lines =
            {
                {"CDCON", "DSCODI", Code()},
                {"CDSED", "DSPROG", Digits(3)},
                {"SERAS", "DSRAGI", First(100)},
                {"SEIND", "DSINDI", Text()},
                {"SECAP", "DSCAPP", WhenNotBlank("DSLOCA", Text())},
                {"SECIT", "DSLOCA", WhenNotBlank("DSLOCA", Text())},
                {"SEPRO", "DSPROV", Text()},
            },
        .numbers = {.office = "DSTELE"},
    };
}

Counterparties PartiesOf(const Half& half) {
    const SourceTable source{
        .table = Anagcf, .key = "ACCODI", .order = "ACCODI", .where = half.where, .naming = "ACTIPO, ACCODI"};
    return {
        .frame = {.module = Module,
                  .procedure = half.procedure,
                  .announcement = half.announcement,
                  .log = half.empties ? LogStart::Anew : LogStart::Behind,
                  .step = half.step,
                  .completion = half.completion},
        .source = source,
        .roles = ByLetter("ACTIPO", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "ACRAG1, ACRAG2",
        .vatNumber = "ACPIVA",
        .taxCode = "ACCFIS",
        .lines = {LineGroup(PartyLines(Anagcf, Columns).Over({})),
                  ByRole("COLSC", "COLSF", "ACLIST", ListOfParty(Numbering, Anagcf, "ACLIST"))},
        .numbers = {.office = "ACTEL1",
                    .office2 = "ACTEL2",
                    .fax = "ACFAXX",
                    .mobile = "ACCELL",
                    .mail = "ACMAIL",
                    .web = "ACSITO"},
        .created = "ACDINS",
        .branches = {Sedi()},
        .contacts = {{.lines = {{"RFNOM", "ACRIFE", Text()}}}},
        .empties = half.empties,
        .more = SetIban,
        .before = half.empties ? TellingUntyped(source, "ACTIPO", "ACRAG1") : nullptr, // once, with the customers
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliCometa"},
        .source = {.table = ArticoliTable, .key = "ARCODI", .order = "ARCODI"},
        .code = {"ARCODI", Article()},
        .description = "ARDES1",
        .lines =
            {
                {"CDEXT", "ARCODI", Text()},
                {"ARDE2", "ARDES2", First(100)},
                {"ARUMS", "ARUNMI", Unit(ArticoliTable, "ARUNMI", schema::defaults::Unit)},
                {"ARUM2", "ARUNM2", Unit(ArticoliTable, "ARUNM2", "")},
                {"ARCOE", "ARCOEF", NotZero()},
                {"ARIVA", "ARCIVA", VatCode(ArticoliTable, "ARCIVA")},
                {"ARCLA", "ARTIPO", Choice({{"PF", "PF"}}, "CM")},
                {"ARFAM", "ARFAMI", Translated(ArticoliTable, "ARFAMI")},
                {"ARCOS", "ARCULT, ARCSTD", FirstNotZero()},
                {"ARPRZ", "ARPRE1", RoundedTo(6)},
                {"ARSCO", "ARSCON", RoundedTo(2)},
                {"ARPSN", "ARPNET", RoundedTo(3)},
                {"ARPSL", "ARPLOR", RoundedTo(3)},
                {"ARSMN", "ARSMIN", RoundedTo(6)},
                {"ARSMX", "ARSMAX", RoundedTo(6)},
                {"ARPUR", "ARPRIO", RoundedTo(6)},
                {"ARLOR", "ARLOTT", RoundedTo(6)},
                {"ARGGA", "ARGGCO", RoundedTo(0)},
                {"ARANN", "ARANNU", Flag()},
                {"ARNOT", "ARNOTE", Text()},
                {"DTINS", "ARDINS", NotBlank(MomentOrNow())},
            },
        .suppliers = {{.supplier = {"ARFORN", KnownSupplier()},
                       .ownCode = "ARCODF",
                       .price = {"ARCULT, ARCSTD", FirstNotZero()},
                       .leadDays = "ARGGCO",
                       .lot = "ARLOTT"}},
        .aliases = {{.code = "ARBARC"}},
        .location = "ARUBIC",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

/// Articles created from the day on that the operator enters.
Procedure ArticoliDaData() {
    const Articles articles = Articoli();
    return ProcedureOf(Button::Art, FrameOf(articles),
                       {AskedSince(PartOf(articles), "Importare gli articoli creati dal (gg/mm/aaaa):", {"ARDINS"})});
}

// --- Price lists --------------------------------------------------------------------------------------------------

QString WithoutHead(const SourceRow& row) {
    return row.IsBlank("LTCODI") ? QStringLiteral("riga di un listino che LISTES non ha") : QString();
}

PriceLists Listini() {
    return {
        .frame = {.module = Module, .procedure = "ImportListiniCometa"},
        .source = {.table = Righe,
                   .key = "LRLIST",
                   .order = "LRLIST, LRARTI, LRDINI, LRQTAX",
                   .naming = "LRLIST, LRARTI",
                   .joins = {{.table = Testate,
                              .on = {{"LTCODI", "LRLIST"}},
                              .columns = {"LTCODI", "LTDESC", "LTTIPO", "LTVALU", "LTDINI"}}}},
        .article = {"LRARTI", Article()},
        .prices = {{
            .list = {"LRLIST", NumberedList(Numbering)},
            .direction = "LTTIPO",
            .description = "LTDESC",
            .currency = {"LTVALU", Currency(Testate, "LTVALU")},
            .since = {"LTDINI", DayThere()},
            .from = "LRDINI",
            .to = "LRDFIN",
            .scales = {{.quantity = "LRQTAX", .price = "LRPREZ", .discounts = {"LRSCO1", "LRSCO2", "LRSCO3"}}},
        }},
        .leavesOut = WithoutHead,
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Cometa",
        Module,
        {.kind = "ODBC", .prepare = sourceSettings::DataSource("COMETA"), .names = Naming::OurReading},
        Buttons("YYNNNNNY"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, PartiesOf(Clienti)),
            ProcedureOf(Button::Cli, PartiesOf(Fornitori)),
            ArticoliDaData(),
            ProcedureOf(Button::Disegni, Listini()),
        },
    };
    return origin;
}

} // namespace modImport_Cometa
