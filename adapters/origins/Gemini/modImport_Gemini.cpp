// Gemini: a SQL Server database, GEMINI unless the setting Databasename names another: customers (CLIENTI) and
// suppliers (FORNITORI) in tables alike, articles, price lists. All tables and columns are this system's own reading;
// an installation that calls them otherwise is fitted by its layout file (Tracciati). Destinations are those of
// customers. Prices hold from QTA on. Known gaps: bills, documents, stock.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Gemini {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Gemini");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString ListHeads = QStringLiteral("LISTINI");
const QString ListRows = QStringLiteral("LISTINI_RIGHE");

/// What customers and suppliers have each in a table of their own.
struct Side {
    QString table;
    QString name;
    Roles roles;
};
Side Customers() { return {"CLIENTI", "Clienti", {.customer = true}}; }
Side Suppliers() { return {"FORNITORI", "Fornitori", {.supplier = true}}; }

Rule Article() { return ArticleCode(ArticoliTable, "CODICE"); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Destinazioni() {
    return {.rows = {.table = "CLIENTI_DEST", .on = {{"CODICE"}}, .order = "PROGR", .naming = "CODICE, PROGR"},
            .lines = BranchLines("CLIENTI_DEST", {.number = "PROGR",
                                                  .name = "RAGSOC",
                                                  .street = "INDIRIZZO",
                                                  .postCode = "CAP",
                                                  .town = "LOCALITA",
                                                  .province = "PROVINCIA"}),
            .numbers = {.office = "TELEFONO"}};
}

Lines PartyLines(const QString& table) {
    return {
        {"CORAS", "RAGSOC", First(35)},
        {"CORA2", "RAGSOC, RAGSOC2", SecondName(35)},
        {"COCOG", "COGNOME", Text()},
        {"CONOM", "NOME", Text()},
        {"COIND", "INDIRIZZO", Text()},
        {"COCAP", "CAP", Text()},
        {"COCIT", "LOCALITA", Text()},
        {"COPRO", "PROVINCIA", Text()},
        {"CONAZ", "NAZIONE", Country(table, "NAZIONE")},
        {"COIVA", "PIVA", NotBlank(Text())},
        {"COFIS", "CODFISC", NotBlank(Text())},
        ByRole("COMOP", "COMOA", "PAGAMENTO", Translated(table, "PAGAMENTO")),
        {"COBAN", "BANCA_AZ", OwnBank(table, "BANCA_AZ")},
        {"COABI", "ABI", NotBlank(Digits(5))},
        {"COCAB", "CAB_BANCA", NotBlank(Digits(5))},
        {"COCIN", "CIN", NotBlank(Text())},
        {"COCOC", "CONTO_CORR", NotBlank(Text())},
        {"COIBA", "IBAN", NotBlank(WithoutBlanks())},
        {"COBIC", "SWIFT", NotBlank(Text())},
        ByRole("COSC1", "COSF1", "SCONTO1", NotBlank(RoundedTo(2))),
        ByRole("COSC2", "COSF2", "SCONTO2", NotBlank(RoundedTo(2))),
        {"COAGE", "AGENTE", TranslatedOrKnown(table, "AGENTE", "AGE_NTI")},
        ByRole("COLSC", "COLSF", "LISTINO", Translated(table, "LISTINO")),
        {"COVAL", "VALUTA", Currency(table, "VALUTA")},
        {"COLNG", "LINGUA", TranslatedOr(table, "LINGUA", schema::defaults::Language)},
        {"COZON", "ZONA", Translated(table, "ZONA")},
        ByRole("COCCC", "COCCF", "CATEGORIA", Translated(table, "CATEGORIA")),
        {"COESE", "COD_IVA", ExemptVat(table, "COD_IVA")},
        {"COPOR", "PORTO", Translated(table, "PORTO")},
        {"COVEP", "VETTORE", Translated(table, "VETTORE")},
        {"COFID", "FIDO", NotZero()},
        ByRole("COMAC", "COMAF", "CONTO", NotBlank(Text())),
        {"COBLK", "BLOCCO", Flag()},
        {"COANN", "ANNULLATO", Flag()},
        {"CONOT", "NOTE", Text()},
        {"DTINS", "DATA_INS", DayThere()},
    };
}

Counterparties PartiesOf(const Side& side) {
    return {
        .frame = {.module = Module,
                  .procedure = "Import" + side.name + "Gemini",
                  .announcement = "Inizio importazione " + side.name,
                  .log = side.roles.customer ? LogStart::Anew : LogStart::Behind,
                  .step = side.name,
                  .completion = side.name + " importati correttamente!"},
        .source = {.table = side.table, .key = "CODICE", .order = "CODICE"},
        .roles = Always(side.roles),
        .name = "RAGSOC, RAGSOC2",
        .vatNumber = "PIVA",
        .taxCode = "CODFISC",
        .lines = PartyLines(side.table),
        .numbers = {.office = "TELEF1",
                    .office2 = "TELEF2",
                    .fax = "TELEFAX",
                    .mobile = "CELLULARE",
                    .mail = "EMAIL",
                    .web = "INTERNET"},
        .created = {"DATA_INS", Day()},
        .branches = side.roles.customer ? std::vector<Branches>{Destinazioni()} : std::vector<Branches>(),
        .contacts = {{.lines = {{"RFNOM", "RIFERIMENTO", Text()}}}},
        .empties = side.roles.customer,
        .more = SetIban,
    };
}

// --- Articles and price lists -------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliGemini"},
        .source = {.table = ArticoliTable, .key = "CODICE", .order = "CODICE"},
        .code = {"CODICE", Article()},
        .description = "DESCRIZIONE",
        .lines =
            {
                {"CDEXT", "CODICE", Text()},
                {"ARDE2", "DESCRIZIONE2", First(100)},
                {"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(ArticoliTable, "UM", "")},
                {"ARCOE", "FATTORE", NotZero()},
                {"ARIVA", "COD_IVA", VatCode(ArticoliTable, "COD_IVA")},
                {"ARCLA", "TIPO", Choice({{"F", "PF"}}, "CM")},
                {"ARFAM", "GRUPPO", TranslatedOrKnown(ArticoliTable, "GRUPPO", "FAM_PRO")},
                {"ARCOS", "COSTO_ULT, COSTO_STD", FirstNotZero()},
                {"ARPRZ", "PREZZO1", RoundedTo(6)},
                {"ARSCO", "SCONTO", RoundedTo(2)},
                {"ARPSN", "PESO_NETTO", RoundedTo(3)},
                {"ARPSL", "PESO_LORDO", RoundedTo(3)},
                {"ARSMN", "SCORTA_MIN", RoundedTo(6)},
                {"ARSMX", "SCORTA_MAX", RoundedTo(6)},
                {"ARPUR", "PUNTO_RIORD", RoundedTo(6)},
                {"ARLOR", "LOTTO_RIORD", RoundedTo(6)},
                {"ARGGA", "GG_CONSEGNA", RoundedTo(0)},
                {"ARANN", "ANNULLATO", Flag()},
                {"ARNOT", "NOTE", Text()},
                {"DTINS", "DATA_INS", DayThere()},
            },
        .suppliers = {{.supplier = {"FORNITORE", KnownSupplier()},
                       .ownCode = "COD_FORNITORE",
                       .price = {"COSTO_ULT, COSTO_STD", FirstNotZero()},
                       .leadDays = "GG_CONSEGNA",
                       .lot = "LOTTO_RIORD"}},
        .aliases = {{.code = "BARCODE"}},
        .location = "UBICAZIONE",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

PriceLists Listini() {
    const std::vector<Tie> ofList{{"CODICE", "LISTINO"}};
    return {
        .frame = {.module = Module, .procedure = "ImportListiniGemini"},
        .source =
            {.table = ListRows,
             .key = "LISTINO",
             .order = "LISTINO, ARTICOLO, DATA_INIZIO, QTA",
             .naming = "LISTINO, ARTICOLO, QTA",
             .joins = {{.table = ListHeads, .on = ofList, .columns = {"DESCRIZIONE", "TIPO", "VALUTA", "CLIENTE"}}}},
        .article = {"ARTICOLO", Article()},
        .prices = {{
            .list = "LISTINO",
            .owner = {"CLIENTE", CustomerOf()},
            .direction = "TIPO",
            .description = "DESCRIZIONE",
            .currency = {"VALUTA", Currency(ListHeads, "VALUTA")},
            .since = {"LISTINO", OfFirst(ListRows, {.table = ListHeads, .on = ofList}, "DATA_INIZIO", Day())},
            .from = "DATA_INIZIO",
            .to = "DATA_FINE",
            .scales = {{.quantityFrom = "QTA", .price = "PREZZO", .discounts = {"SCONTO1", "SCONTO2", "SCONTO3"}}},
        }},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Gemini",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("GEMINI"), .names = Naming::OurReading},
        Buttons("YYYN----", {{Button::Dis, "Importa Listini"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, PartiesOf(Customers())),
            ProcedureOf(Button::Cli, PartiesOf(Suppliers())),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Listini()),
        },
    };
    return origin;
}

} // namespace modImport_Gemini
