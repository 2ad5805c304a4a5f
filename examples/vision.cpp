// Vision SQL: a database with articles, and price lists for all or of one customer or supplier; the counterparties
// themselves are not its matter and stand in Quadrix before.

#include "examples/plainTables.h"

namespace examples {

namespace vision {

namespace {

using namespace described;

constexpr qint64 Parties = 10; ///< so many customers and so many suppliers
const Count Articles = [](const Options& options) { return options.rows; };
const ArticleNames ItemNames{.description = "DESCR",
                             .description2 = "DESCR2",
                             .longText = "DESCR_EST",
                             .unit = "UM",
                             .unit2 = "UM2",
                             .factor = "FATT_CONV",
                             .purchaseUnit = "UM_ACQ",
                             .vatCode = "COD_IVA",
                             .family = "COD_FAM",
                             .lastCost = "COSTO_ULT",
                             .standardCost = "COSTO_STD",
                             .price = "PREZZO_BASE",
                             .discount = "SCONTO",
                             .netWeight = "PESO_NETTO",
                             .grossWeight = "PESO_LORDO",
                             .lowestStock = "SCORTA_MIN",
                             .highestStock = "SCORTA_MAX",
                             .reorderPoint = "PUNTO_RIORD",
                             .lowestOrder = "QTA_MIN",
                             .lot = "LOTTO_RIORD",
                             .leadDays = "GG_APPROV",
                             .supplier = "COD_FOR",
                             .supplierCode = "COD_ART_FOR",
                             .barCode = "BARCODE",
                             .location = "UBICAZIONE",
                             .length = "LUNGHEZZA",
                             .width = "LARGHEZZA",
                             .thickness = "SPESSORE",
                             .isCancelled = "FLG_ANNULL",
                             .note = "NOTE",
                             .created = "DATA_INS"};

Rule ArticleCode() { return Code("VS-", 5); }
Rule CustomerCode() { return Code("C", 5); }
Rule SupplierCode() { return Code("F", 5); }

Table ArticleTable() {
    return {"ARTICOLI",
            "articoli",
            Articles,
            QVector<Field>{{{"COD_ART", 'C', 20}, ArticleCode()},
                           {{"TIPO_ART", 'C', 4}, OneOf({"PF", "SL", "MP"})},
                           {{"DATA_MOD", 'T'}, Chance(30, Day(360))}} +
                ArticleColumns(ItemNames, AnyOf(Exactly(Parties), SupplierCode())),
            {{{"COD_ART", "PESO"}, {"PESO_NETTO", "due"}}, {{"COD_ART", "FORNITORE"}, {"COD_FOR", "F99999"}}},
            {{"COD_ART"}, {"DATA_INS"}}};
}

/// The list of purchases is of one supplier, the special one of one customer.
QVector<Table> ListTables() {
    Table lists = ListTable(
        "LISTINI_T",
        {.code = "COD_LIS", .description = "DESCR", .kind = "TIPO_LIS", .currency = "COD_VAL", .from = "DATA_INI"});
    lists.fields.append({{"COD_CLI", 'C', 8}, Each({{}, {}, "C00001"})});
    lists.fields.append({{"COD_FOR", 'C', 8}, Each({{}, "F00001", {}})});
    lists.odd = {{{"COD_LIS", "L9"}, {"DESCR", "Di un cliente che manca"}, {"COD_CLI", "C99999"}, {"COD_FOR", {}}}};
    return {lists,
            {"LISTINI_R",
             "listini",
             Prices(Articles),
             PriceColumns({.list = "COD_LIS",
                           .article = "COD_ART",
                           .from = "DATA_INI",
                           .to = "DATA_FIN",
                           .quantity = "QTA_DA",
                           .price = "PREZZO",
                           .discount1 = "SCONTO1",
                           .discount2 = "SCONTO2",
                           .discount3 = "SCONTO3"},
                          Articles, ArticleCode()),
             {{{"COD_LIS", "L9"}}, {{"COD_LIS", SalesList}, {"COD_ART", "MANCA"}}},
             {{"COD_LIS", "COD_ART"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    PrepareArticles(script, "ARTICOLI", ItemNames);
    PrepareCustomers(script, Parties, CustomerCode(), options);
    PrepareSuppliers(script, Parties, SupplierCode(), options);
    return script;
}

} // namespace

} // namespace vision

Totals MakeVision(const Options& options) {
    using namespace vision;
    return Write("vision.db", QVector<Table>{ArticleTable()} + ListTables(), options, PreparedFor(options));
}

} // namespace examples
