// Vision SQL: a database with articles, and price lists for all or of one customer or supplier; the counterparties
// themselves are not its matter and stand in Quadrix before.

#include "examples/plainTables.h"

#include <numeric>

namespace examples {

namespace vision {

namespace {

using namespace described;

constexpr qint64 Parties = 10; ///< so many customers and so many suppliers
constexpr qint64 Scales = 2;   ///< prices of an article in a list: of one piece and of ten
const Count Articles = [](const Options& options) { return options.rows; };
const QDateTime Start(QDate(2024, 1, 1), QTime(0, 0), Qt::UTC);
const QDateTime End(QDate(2024, 12, 31), QTime(0, 0), Qt::UTC);

/// A price list and of how many articles it has a price: the first ones.
struct List {
    QString code;
    Count articles;
};
/// Two of sales, one of a customer, one of a supplier.
const QVector<List> Lists{{"V1", Articles}, {"V2", EachOf(2)}, {"CL1", EachOf(10)}, {"A1", EachOf(5)}};

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
                           {{"DATA_MOD", 'T'}, Chance(30, Day(360))},
                           {{"LUNGHEZZA", 'N', 12, 3}, Chance(30, Whole(100, 3000))},
                           {{"LARGHEZZA", 'N', 12, 3}, Chance(30, Whole(50, 1500))},
                           {{"SPESSORE", 'N', 12, 3}, Chance(30, Whole(1, 20))}} +
                ArticleColumns(ItemNames, AnyOf(Exactly(Parties), SupplierCode())),
            {{{"COD_ART", "PESO"}, {"PESO_NETTO", "due"}}, {{"COD_ART", "FORNITORE"}, {"COD_FOR", "F99999"}}},
            {{"COD_ART"}, {"DATA_INS"}}};
}

QVector<Table> ListTables() {
    QVector<Kind> lists;
    QVector<Kind> articles;
    for (const auto& [code, count] : Lists) {
        lists.append({Times(Scales, count), Fixed(code)});
        articles.append({Times(Scales, count), OfParent(Scales, ArticleCode())});
    }
    const auto rows = [lists](const Options& options) {
        return std::accumulate(lists.begin(), lists.end(), qint64(0),
                               [&](qint64 sum, const Kind& kind) { return sum + kind.rows(options); });
    };
    const Rule price = OfParent(Scales, Number(1, 190, 2));
    return {{"LISTINI_T",
             "listini",
             Exactly(Lists.size()),
             {{{"COD_LIS", 'C', 4}, Each(Lists, &List::code)},
              {{"DESCR", 'C', 40}, Each({"Listino base", "Rivenditori", "Prezzi concordati", "Listino acquisti"})},
              {{"TIPO_LIS", 'C', 1}, Each({"V", "V", "V", "A"})},
              {{"COD_VAL", 'C', 3}, Each({"EUR", {}, "EUR", "EUR"})},
              {{"DATA_INI", 'T'}, Fixed(Start)},
              {{"COD_CLI", 'C', 8}, Each({{}, {}, "C00001", {}})},
              {{"COD_FOR", 'C', 8}, Each({{}, {}, {}, "F00001"})}},
             {{{"COD_LIS", "L9"}, {"DESCR", "Di un cliente che manca"}, {"COD_CLI", "C99999"}, {"COD_FOR", {}}}},
             {{"COD_LIS"}}},
            {"LISTINI_R",
             "listini",
             rows,
             {{{"COD_LIS", 'C', 4}, Kinds(lists)},
              {{"COD_ART", 'C', 20}, Kinds(articles)},
              {{"DATA_INI", 'T'}, Fixed(Start)},
              {{"DATA_FIN", 'T'}, OfParent(Scales, Chance(20, Fixed(End)))},
              {{"QTA_DA", 'N', 12, 3}, Turn(1, {{}, Fixed(10)})},
              {{"PREZZO", 'N', 12, 4}, Turn(1, {price, Scaled(0.95, 4, price)})},
              {{"SCONTO1", 'N', 6, 2}, Chance(20, OneOf({5, 10}))},
              {{"SCONTO2", 'N', 6, 2}, Chance(5, Fixed(2))},
              {{"SCONTO3", 'N', 6, 2}, {}}},
             {{{"COD_LIS", "L9"}}, {{"COD_LIS", "V1"}, {"COD_ART", "MANCA"}}},
             {{"COD_LIS", "COD_ART"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    PrepareArticles(script, "ARTICOLI", ItemNames);
    for (qint64 row = 0; row < Parties; ++row) {
        const Place place{options, row, 0};
        script.Customer(Code("1", 5)(place).toString(), CustomerCode()(place).toString(),
                        CompanyName(35)(place).toString());
        script.Supplier(Code("2", 5)(place).toString(), SupplierCode()(place).toString(),
                        CompanyName(35)(place.At(Parties + row)).toString());
    }
    return script;
}

} // namespace

} // namespace vision

Totals MakeVision(const Options& options) {
    using namespace vision;
    return Write("vision.db", QVector<Table>{ArticleTable()} + ListTables(), options, PreparedFor(options));
}

} // namespace examples
