// DOMINIO: a database over ODBC, data source DOMINIO unless the setting DSN names another. Customers and suppliers with
// their destinations, the chart of accounts, base tables. Of the layout the table of counterparties (clifor) is known;
// every other name is this system's own in its style, all releases alike, and is fitted to an installation by the
// layout file "Tracciati/DOMINIO.ini". Left out: the kind of a VAT code (tabiva.tipo), which Quadrix has no column for,
// and the accounts of single customers and suppliers (pdc.tipo K and F), which are counterparties. Known gaps:
// articles, documents.

#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Dominio {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Dominio");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Clifor = QStringLiteral("clifor");
const QString Destinazioni = QStringLiteral("clidest");
const QString Conti = QStringLiteral("pdc");
const QString Iva = QStringLiteral("tabiva");
const QString TipiPagamento = QStringLiteral("tabtippag");
const QString Pagamenti = QStringLiteral("tabpag");
const QString Misure = QStringLiteral("tabum");
const QString BancheAzienda = QStringLiteral("banche");

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Sedi() {
    return {
        .rows = {.table = Destinazioni, .on = {{"tipocf"}, {"codcf"}}, .order = "coddest"},
        .lines =
            {
                {"CDCON", "codcf", Code()},
                {"CDSED", "coddest", Digits(3)},
                {"SERAS", "ragsoc", First(100)},
                {"SEIND", "indirizzo", Text()},
                {"SECAP", "cap", WhenNotBlank("localita", Text())},
                {"SECIT", "localita", WhenNotBlank("localita", Text())},
                {"SEPRO", "provincia", Text()},
                {"SEDEF", "predef", Flag()},
            },
        .numbers = {.office = "telefono", .fax = "fax"},
    };
}

const PartyColumns Columns{
    .name = "ragsoc1",
    .name2 = "ragsoc2",
    .isPerson = "persfis",
    .surname = "cognome",
    .firstName = "nome",
    .street = "indirizzo",
    .postCode = "cap",
    .town = "localita",
    .province = "provincia",
    .country = "nazione",
    .vatNumber = "partiva",
    .taxCode = "codfisc",
    .ownBank = "bancaaz",
    .abi = "abi",
    .cab = "cab_ban",
    .cin = "cin",
    .account = "contocor",
    .iban = "iban",
    .bic = "bic",
    .discount1 = "sconto1",
    .discount2 = "sconto2",
    .agent = "codage",
    .list = "codlis",
    .currency = "codval",
    .language = "codlin",
    .zone = "codzona",
    .category = "codcat",
    .exemption = "codiva",
    .port = "codporto",
    .carrier = "codvett",
    .credit = "fido",
    .ledger = "mastro",
    .isBlocked = "blocco",
    .isCancelled = "annullato",
    .note = "note",
    .created = "datains",
};

/// The base tables keep the codes of the source: a payment term is known by its own.
Counterparties Controparti() {
    const SourceTable source{.table = Clifor,
                             .key = "codcf",
                             .order = "tipocf, codcf",
                             .where = "tipocf IN ('C','F')",
                             .naming = "tipocf, codcf"};
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiDOMINIO"},
        .source = source,
        .roles = ByLetter("tipocf", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "ragsoc1, ragsoc2",
        .vatNumber = "partiva",
        .taxCode = "codfisc",
        .lines = {LineGroup(PartyLines(Clifor, Columns).Over({})),
                  ByRole("COMOP", "COMOA", "codpag", TranslatedOrKnown(Clifor, "codpag", "TAB_MOP"))},
        .numbers = {.office = "telefono",
                    .office2 = "telefono2",
                    .fax = "fax",
                    .mobile = "cellulare",
                    .mail = "email",
                    .web = "sitoweb"},
        .created = "datains",
        .branches = {Sedi()},
        .contacts = {{.lines = {{"RFNOM", "riferim", Text()}}}},
        .more = SetIban,
        .before = TellingUntyped(source, "tipocf", "ragsoc1"),
    };
}

// --- Chart of accounts --------------------------------------------------------------------------------------------

QString OfCounterparty(const SourceRow& row) {
    const QString kind = row.Text("tipo").toUpper();
    return kind == u"K" || kind == u"F" ? QStringLiteral("conto di un cliente o fornitore (tipo K, F)") : QString();
}

Accounts PianoConti() {
    return {
        .frame = {.module = Module, .procedure = "ImportPianoContiDOMINIO"},
        .accounts = {.source = {.table = Conti, .key = "conto", .order = "conto"},
                     .target = "PIA_CON",
                     .code = "conto",
                     .lines =
                         {
                             {"PCDES", "descr", First(100)},
                             {"PCMAS", "mastro", Text()},
                             {"PCNAT", "tipo", Text()},
                             {"PCTIP", "tipo", Text()},
                             {"PCBIL", "tipo", BalanceSection("CR")},
                             {"PCLEV", "livello", RoundedTo(0)},
                             {"PCRAG", "riclass", Text()},
                             {"PCDET", "movim", Flag()},
                         },
                     .leavesOut = OfCounterparty},
    };
}

// --- Base tables --------------------------------------------------------------------------------------------------

/// A reset deletes what an import wrote, of codes that a source has told.
/// @param external column of the source's code in Quadrix
ImportPart CodePart(BaseTable codes, const QString& external) {
    codes.empties = DeletedImports(codes.target, external + " <> ''");
    return PartOf(codes);
}

PaymentTerms ModalitaPagamento() {
    return {
        .source = {.table = Pagamenti, .key = "codice", .order = "codice"},
        .code = "codice",
        .lines =
            {
                {"MPDES", "descr", First(100)},
                {"MPRAT", "nrate", RoundedTo(0)},
                {"MPSCM", "sconto", RoundedTo(2)},
                {"MPSPI", "spese", RoundedTo(2)},
            },
        .series = InstalmentSeries{.count = "nrate",
                                   .firstDays = "ggprima",
                                   .everyDays = "ggrate",
                                   .type = {"tipo", TranslatedOrKnown(Pagamenti, "tipo", "TAB_MPT")},
                                   .fixedDay = "giornofisso",
                                   .start = {"finemese", FlagAs("FM", "DF")}},
    };
}

Banks Banche() {
    return {
        .source = {.table = BancheAzienda, .key = "codice", .order = "codice"},
        .code = "codice",
        .iban = {"iban", WithoutBlanks()},
        .lines =
            {
                {"BADES", "descr", First(100)},
                {"BAABI", "abi", NotZeroCode(Digits(5))},
                {"BACAB", "cab", NotZeroCode(Digits(5))},
                {"BACIN", "cin", Text()},
                {"BACCO", "conto", Text()},
                {"BABIC", "bic", Text()},
                {"BASIA", "sia", Text()},
                {"BANAZ", "", Constant(schema::defaults::Country)},
                {"BAVAL", "", Constant(schema::defaults::Currency)},
            },
        .empties = DeletedImports("BAN_CHE", "BAEXT <> ''"),
    };
}

/// Payment types come before the terms that name them.
Procedure TabelleBase() {
    const Frame frame{.module = Module,
                      .procedure = "ImportTabelleBaseDOMINIO",
                      .announcement = "Inizio importazione tabelle di base",
                      .completion = "Tabelle di base importate correttamente!"};
    return ProcedureOf(
        Button::Saldi, frame,
        {CodePart(CodeTable("Codici IVA", Iva, "codice", "TAB_IVA",
                            {{"IVDES", "descr", First(100)},
                             {"IVALI", "aliquota", VatRate()},
                             {"IVIND", "percind", RoundedTo(2)}}),
                  "IVEXT"),
         CodePart(CodeTable("Tipi di pagamento", TipiPagamento, "tipo", "TAB_MPT", {{"PTDES", "descr", First(100)}}),
                  "PTEXT"),
         PartOf(ModalitaPagamento()),
         CodePart(CodeTable("Unità di misura", Misure, "codice", "TAB_UMS", {{"UMDES", "descr", First(100)}}), "UMEXT"),
         PartOf(Banche())});
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "DOMINIO",
        Module,
        {.kind = "ODBC", .prepare = sourceSettings::DataSource("DOMINIO"), .names = Naming::OurReading},
        Buttons("YNNNNYY-", {{Button::Saldi, "Importa Tabelle Generali"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Piano, PianoConti()),
            TabelleBase(),
        },
    };
    return origin;
}

} // namespace modImport_Dominio
