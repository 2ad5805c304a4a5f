#include "examples/plainTables.h"

namespace examples::described {

namespace {

const QVariantList Units{"PZ", "KG", "MT"};
const QVariantList Families{"MEC", "LAM", "VIT"};

constexpr qint64 PricesOfArticle = 3; ///< sales, sales of larger quantities, purchase
constexpr qint64 SpecialEvery = 10;   ///< of the articles one in so many has a special price

Rule ByPrice(const Count& articles, const QVector<Rule>& ofArticle, const Rule& special) {
    return Kinds({{Times(PricesOfArticle, articles), Turn(1, ofArticle)}, {Exactly(1), special}});
}

} // namespace

Rule Cost() { return Named("cost of an article", Number(0.5, 90, 2)); }

Rule SalesPrice() { return Scaled(1.5, 2, Cost()); }

QVector<Field> ArticleColumns(const ArticleNames& names, const Rule& supplier) {
    const auto onlyWith = [](const char* what, int percent, const Rule& rule) {
        return Named(what, Chance(percent, rule));
    };
    const Rule weight = Named("weight of an article", Number(0.05, 40, 3));
    return Present({{{names.description, 'C', 60}, ArticleText()},
                    {{names.description2, 'C', 60}, Chance(20, OneOf({"zincato", "verniciato RAL 7035", "grezzo"}))},
                    {{names.longText, 'M'}, Chance(15, Fixed("Con certificato 3.1, imballato a dieci"))},
                    {{names.unit, 'C', 3}, OneOf({"PZ", "PZ", "PZ", "KG", "MT"})},
                    {{names.unit2, 'C', 3}, onlyWith("second unit", 20, Fixed("KG"))},
                    {{names.factor, 'N', 10, 4}, onlyWith("second unit", 20, Number(0.5, 12, 3))},
                    {{names.purchaseUnit, 'C', 3}, Chance(10, Fixed("KG"))},
                    {{names.vatCode, 'C', 4}, OneOf({"22", "22", "22", "10"})},
                    {{names.family, 'C', 6}, OneOf(Families)},
                    {{names.lastCost, 'N', 12, 4}, Chance(70, Cost(), Fixed(0))},
                    {{names.standardCost, 'N', 12, 4}, Cost()},
                    {{names.price, 'N', 12, 4}, SalesPrice()},
                    {{names.discount, 'N', 6, 2}, OneOf({0, 0, 5, 10})},
                    {{names.netWeight, 'N', 12, 3}, weight},
                    {{names.grossWeight, 'N', 12, 3}, Scaled(1.05, 3, weight)},
                    {{names.lowestStock, 'N', 12, 3}, Chance(40, Whole(1, 20))},
                    {{names.highestStock, 'N', 12, 3}, Chance(40, Whole(50, 200))},
                    {{names.reorderPoint, 'N', 12, 3}, Chance(40, Whole(5, 30))},
                    {{names.lowestOrder, 'N', 12, 3}, Chance(40, Whole(1, 10))},
                    {{names.lot, 'N', 12, 3}, Chance(40, Whole(10, 50))},
                    {{names.leadDays, 'I'}, Chance(40, Whole(1, 30))},
                    {{names.supplier, 'C', 8}, onlyWith("own supplier", 60, supplier)},
                    {{names.supplierCode, 'C', 25}, onlyWith("own supplier", 60, Code("FOR-", 5))},
                    {{names.barCode, 'C', 20}, Chance(40, BarCode())},
                    {{names.location, 'C', 15}, Chance(40, AnyOf(Exactly(200), Code("A-", 3)))},
                    {{names.length, 'N', 12, 3}, Chance(30, Whole(100, 3000))},
                    {{names.width, 'N', 12, 3}, Chance(30, Whole(50, 1500))},
                    {{names.thickness, 'N', 12, 3}, Chance(30, Whole(1, 20))},
                    {{names.isCancelled, 'C', 1}, Chance(3, Fixed(Yes), Fixed(No))},
                    {{names.note, 'M'}, Chance(10, OneOf({"Verniciare a parte", "Non impilare"}))},
                    {{names.created, 'T'}, Day(300)}});
}

void PrepareArticles(QuadrixScript& script, const QString& table, const ArticleNames& names) {
    for (const QByteArray& column : {names.unit, names.unit2, names.purchaseUnit}) {
        script.Keep(table, column, Units);
    }
    script.VatCode("22", "IVA 22%", 22);
    script.VatCode("10", "IVA 10%", 10);
    script.Keep(table, names.family, Families);
}

Table ListTable(const QString& name, const ListNames& names, const QString& sales, const QString& purchase) {
    const QVariantList codes{SalesList, PurchaseList, SpecialList};
    return {name,
            "listini",
            Exactly(codes.size()),
            Present({{{names.code, 'C', 5}, Each(codes)},
                     {{names.description, 'C', 40}, Each({"Listino base", "Listino acquisti", "Prezzi riservati"})},
                     {{names.kind, 'C', 5}, Each({sales, purchase, sales})},
                     {{names.currency, 'C', 3}, Fixed("EUR")},
                     {{names.from, 'T'}, Day(1)}}),
            {},
            {{QString::fromLatin1(names.code)}}};
}

Count Prices(const Count& articles) {
    return [articles](const Options& options) {
        return PricesOfArticle * articles(options) + articles(options) / SpecialEvery;
    };
}

Rule ByList(const Count& articles, const Rule& sales, const Rule& purchase, const Rule& special) {
    return ByPrice(articles, {sales, sales, purchase}, special);
}

QVector<Field> PriceColumns(const PriceNames& names, const Count& articles, const Rule& article) {
    const auto ofArticle = [](const Rule& rule) { return OfParent(PricesOfArticle, rule); };
    const auto ofSpecial = [](const Rule& rule) { return With([](qint64 row) { return row * SpecialEvery; }, rule); };
    const Rule anArticle = ofArticle(article);
    const Rule prices =
        ByPrice(articles, {ofArticle(SalesPrice()), ofArticle(Scaled(1.4, 2, Cost())), ofArticle(Cost())},
                ofSpecial(Scaled(1.3, 2, Cost())));
    return Present({{{names.list, 'C', 4}, ByList(articles, Fixed(SalesList), Fixed(PurchaseList), Fixed(SpecialList))},
                    {{names.article, 'C', 60}, ByList(articles, anArticle, anArticle, ofSpecial(article))},
                    {{names.from, 'T'}, Fixed(QDate(2024, 1, 1))},
                    {{names.to, 'T'}, ByList(articles, {}, {}, Fixed(QDate(2026, 12, 31)))},
                    {{names.quantity, 'N', 12, 3}, ByPrice(articles, {Fixed(0), Fixed(50), Fixed(0)}, Fixed(0))},
                    {{names.price, 'N', 12, 4}, prices},
                    {{names.discount1, 'N', 6, 2}, ByList(articles, Chance(20, OneOf({5, 10})), {}, {})},
                    {{names.discount2, 'N', 6, 2}, {}},
                    {{names.discount3, 'N', 6, 2}, {}}});
}

} // namespace examples::described
