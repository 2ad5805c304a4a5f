// A made-up origin to start a new module from: copy the file, replace the names, give the list of origins its line.
// A database server with ANAGRAFICA (customers, suppliers, carriers), ARTICOLI, PREZZI, ORDINI and RIGHE.
// How sure the layout is: made up. Known gaps: bills, stock.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Template {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Template");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Anagrafica = QStringLiteral("ANAGRAFICA");
const QString ArticoliTable = QStringLiteral("ARTICOLI");

/// CDART of an article's code.
Rule Article() { return ArticleCode(ArticoliTable, "CODICE"); }

// --- Hooks --------------------------------------------------------------------------------------------------------

/// Sheets are known by their thickness.
void SetSheet(ImportRun& /*run*/, const SourceRow& row, TargetRow& target) {
    if (NumberOf(row, "SPESSORE") > 0) {
        target.Set("ARLAM", true);
        target.Set("ARCLA", "LM");
    }
}

// --- Declarations -------------------------------------------------------------------------------------------------

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportControparti"},
        .source = {.table = Anagrafica, .key = "CODICE", .order = "TIPO, CODICE"},
        .roles = ByLetter("TIPO", {.customer = {"C"}, .supplier = {"F"}, .both = {"E"}, .carrier = {"V"}}),
        .name = "NOME",
        .vatNumber = "PIVA",
        .lines = {{"CORAS", "NOME", First(35)},
                  {"CORA2", "NOME", Part(36, 100)},
                  {"COIND", "VIA", NotBlank(Street())},
                  {"CONRC", "VIA", StreetNumber()},
                  {"COCIT", "CITTA", Text()},
                  {"COIVA", "PIVA", NotBlank(Text())},
                  ByRole("COMOP", "COMOA", "PAGAMENTO", Translated(Anagrafica, "PAGAMENTO")),
                  DiscountsByRole("SCONTO")},
        .numbers = {.office = "TELEFONO", .mail = "EMAIL"},
        .branches = {{
            .rows = {.table = "SEDI", .on = {{"CODICE"}}, .order = "NUMERO"},
            .lines = {{"CDSED", "NUMERO", Digits(3)}, {"SEIND", "VIA", Text()}, {"SECIT", "CITTA", Text()}},
        }},
        .contacts = {{.lines = {{"RFNOM", "REFERENTE", Text()}}, .numbers = {.mobile = "CELLULARE"}}},
    };
}

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoli"},
        .source = {.table = ArticoliTable, .key = "CODICE", .order = "CODICE"},
        .code = {"CODICE", Article()},
        .description = "DESCRIZIONE",
        .lines = {{"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                  {"ARIVA", "IVA", VatCode(ArticoliTable, "IVA")},
                  {"ARCOS", "COSTO", RoundedTo(6)},
                  {"DTINS", "CREATO", NotBlank(DateText("yyyyMMdd"))}},
        .suppliers = {{.supplier = {"FORNITORE", KnownSupplier()}, .ownCode = "CODICE_FORNITORE", .price = "COSTO"}},
        .aliases = {{.code = "BARRE"}},
        .location = "UBICAZIONE",
        .more = SetSheet,
        .further = {{}, {{ArticoliTable, {"SPESSORE"}}}, {{"ART_ICO", {"ARLAM", "ARCLA"}}}},
    };
}

/// Two lists in numbered columns: one whose price is blank or zero does not have the article.
PriceLists Listini() {
    return {
        .frame = {.module = Module, .procedure = "ImportListini"},
        .source = {.table = "PREZZI", .key = "ARTICOLO", .order = "ARTICOLO, DAL"},
        .article = {"ARTICOLO", Article()},
        .prices = Numbered(1, 2,
                           [](const QString& number) {
                               return PriceFields{.list = Fixed(QString("L" + number)),
                                                  .direction = Fixed("V"),
                                                  .description = Fixed(QString("Listino " + number)),
                                                  .from = "DAL",
                                                  .scales = {{.price = {"PREZZO" + number, NotZero()}}}};
                           }),
    };
}

Documents Ordini() {
    return {
        .frame = {.module = Module, .procedure = "ImportOrdini"},
        .source = {.table = "ORDINI", .key = "NUMERO", .order = "ANNO, NUMERO, RIGA", .group = {"ANNO", "NUMERO"}},
        .rows = {.table = "RIGHE", .on = {{"ANNO"}, {"NUMERO"}}, .order = "RIGA"},
        .kinds = {{.cause = "ORDCL", .type = "ORD", .family = Sales}},
        .head = {.number = "NUMERO",
                 .day = "DATA",
                 .year = "ANNO",
                 .counterparty = {"CLIENTE", CustomerOf()},
                 .lines = {{"DTRIC", "RIFERIMENTO", Text()}}},
        .row = {.number = "RIGA",
                .article = {"ARTICOLO", Article()},
                .quantity = "QUANTITA",
                .delivered = "EVASA",
                .price = "PREZZO",
                .discounts = DiscountFields("SCONTO"),
                .vatCode = {"IVA", VatCode(ArticoliTable, "IVA")},
                .lines = {{"DRCOR", "CONSEGNA", Day()}}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Template",
        Module,
        {"SQL Server", sourceSettings::Server("TEMPLATE")},
        Buttons("YYYYNNNN", {{Button::Dis, "Importa Listini"}}),
        Shown::No,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Listini()),
            ProcedureOf(Button::Doc, Ordini()),
        },
    };
    return origin;
}

} // namespace modImport_Template
