// Vision SQL: a SQL Server database, VISION unless the setting Databasename names another: the articles that are new or
// changed since a day that is asked for, and price lists behind the button of the counterparties, which are not
// imported from here. All tables and columns are this system's own reading; an installation that calls them otherwise
// is fitted by its layout file (Tracciati). Prices hold from QTA_DA on. Known gaps: counterparties, bills, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/askedSince.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Vision {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Vision");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString ListHeads = QStringLiteral("LISTINI_T");
const QString ListRows = QStringLiteral("LISTINI_R");

// --- Rules --------------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode(ArticoliTable, "COD_ART"); }

/// Whose own list it is: a customer's of sales, a supplier's of purchases.
Rule OwnerOfList() {
    return {"il cliente della prima colonna, di un listino d'acquisto (TIPO_LIS) il fornitore della seconda; riga "
            "abbandonata se manca",
            [customer = CustomerOf().apply, supplier = SupplierOf().apply](const RuleInput& input) {
                const bool isPurchase =
                    input.row.Text("TIPO_LIS").compare(schema::defaults::PurchaseList, Qt::CaseInsensitive) == 0;
                const QStringList column{isPurchase ? input.columns.last() : input.columns.first()};
                return (isPurchase ? supplier : customer)({input.session, input.row, column, input.facts});
            }};
}

// --- Declarations -------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliVision"},
        .source = {.table = ArticoliTable, .key = "COD_ART", .order = "COD_ART"},
        .code = {"COD_ART", Article()},
        .description = "DESCR",
        .lines =
            {
                {"CDEXT", "COD_ART", Text()},
                {"ARDE2", "DESCR2", First(100)},
                {"ARDEC", "DESCR_EST", First(255)},
                {"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(ArticoliTable, "UM", "")},
                {"ARCOE", "FATT_CONV", NotZero()},
                {"ARUMP", "UM_ACQ", Unit(ArticoliTable, "UM", "")},
                {"ARIVA", "COD_IVA", VatCode(ArticoliTable, "COD_IVA")},
                {"ARCLA", "TIPO_ART", Choice({{"PF", "PF"}, {"SL", "SL"}}, "CM")},
                {"ARFAM", "COD_FAM", TranslatedOrKnown(ArticoliTable, "COD_FAM", "FAM_PRO")},
                {"ARCOS", "COSTO_ULT, COSTO_STD", FirstNotZero()},
                {"ARPRZ", "PREZZO_BASE", RoundedTo(6)},
                {"ARSCO", "SCONTO", RoundedTo(2)},
                {"ARPSN", "PESO_NETTO", RoundedTo(3)},
                {"ARPSL", "PESO_LORDO", RoundedTo(3)},
                {"ARSMN", "SCORTA_MIN", RoundedTo(6)},
                {"ARSMX", "SCORTA_MAX", RoundedTo(6)},
                {"ARPUR", "PUNTO_RIORD", RoundedTo(6)},
                {"ARQMR", "QTA_MIN", RoundedTo(6)},
                {"ARLOR", "LOTTO_RIORD", RoundedTo(6)},
                {"ARGGA", "GG_APPROV", RoundedTo(0)},
                {"ARDMX", "LUNGHEZZA", RoundedTo(6)},
                {"ARDMY", "LARGHEZZA", RoundedTo(6)},
                {"ARDMZ", "SPESSORE", RoundedTo(6)},
                {"ARANN", "FLG_ANNULL", Flag()},
                {"ARNOT", "NOTE", Text()},
                {"DTINS", "DATA_INS", DayThere()},
                {"DTMDF", "DATA_MOD", DayThere()},
            },
        .suppliers = {{.supplier = {"COD_FOR", KnownSupplier()},
                       .ownCode = "COD_ART_FOR",
                       .price = {"COSTO_ULT, COSTO_STD", FirstNotZero()},
                       .leadDays = "GG_APPROV",
                       .lot = "LOTTO_RIORD",
                       .minimum = "QTA_MIN"}},
        .aliases = {{.code = "BARCODE"}},
        .location = "UBICAZIONE",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

/// Articles that are new or changed since the day that the operator enters.
Procedure ArticoliDaData() {
    const Articles articles = Articoli();
    return ProcedureOf(Button::Art, FrameOf(articles),
                       {AskedSince(PartOf(articles), "Data inizio importazione:", {"DATA_INS", "DATA_MOD"})});
}

PriceLists Listini() {
    const std::vector<Tie> ofList{{"COD_LIS"}};
    return {
        .frame = {.module = Module, .procedure = "ImportListiniVision", .confirmation = "Importare i listini?"},
        .source = {.table = ListRows,
                   .key = "COD_LIS",
                   .order = "COD_LIS, COD_ART, DATA_INI, QTA_DA",
                   .naming = "COD_LIS, COD_ART, QTA_DA",
                   .joins = {{.table = ListHeads,
                              .on = ofList,
                              .columns = {"DESCR", "TIPO_LIS", "COD_VAL", "COD_CLI", "COD_FOR"}}}},
        .article = {"COD_ART", Article()},
        .prices = {{
            .list = "COD_LIS",
            .owner = {"COD_CLI, COD_FOR", OwnerOfList()},
            .direction = "TIPO_LIS",
            .description = "DESCR",
            .currency = {"COD_VAL", Currency("LISTINI", "COD_VAL")},
            .since = {"COD_LIS", OfFirst(ListRows, {.table = ListHeads, .on = ofList}, "DATA_INI", Day())},
            .from = "DATA_INI",
            .to = "DATA_FIN",
            .scales = {{.quantityFrom = "QTA_DA", .price = "PREZZO", .discounts = {"SCONTO1", "SCONTO2", "SCONTO3"}}},
        }},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Vision SQL",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("VISION"), .names = Naming::OurReading},
        Buttons("YYN-----"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Listini()),
            ArticoliDaData(),
        },
    };
    return origin;
}

} // namespace modImport_Vision
