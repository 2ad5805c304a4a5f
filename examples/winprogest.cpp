// WinProgest: a folder of dBase tables in the DOS code page, or the same tables in a database. Customers and suppliers
// are those of the Arca 2000 example of as many rows.

#include "examples/winprogest.h"

#include "examples/articles.h"
#include "examples/bills.h"
#include "examples/SqliteWriter.h"

#include <QDate>

namespace examples {

namespace winprogest {

namespace {

constexpr quint64 ArticleStream = 31;
constexpr quint64 CodeStream = 32;
constexpr quint64 PromotionStream = 33;
constexpr int RowsPerPromotion = 200;

const QVector<Column> ArticoliColumns{
    {"CODART", 'C', 20},    {"DESCR", 'C', 50},     {"DESCR2", 'C', 50},    {"UM", 'C', 3},         {"UM2", 'C', 3},
    {"FATCON", 'N', 12, 5}, {"IVA", 'C', 3},        {"TIPO", 'C', 1},       {"GRUPPO", 'C', 4},     {"SOTGRU", 'C', 4},
    {"COSTO", 'N', 14, 4},  {"ULTCOS", 'N', 14, 4}, {"PRZVEN", 'N', 14, 4}, {"SCO1", 'N', 6, 2},    {"SCO2", 'N', 6, 2},
    {"SCO3", 'N', 6, 2},    {"PESO", 'N', 12, 4},   {"SCOMIN", 'N', 12, 2}, {"LOTRIO", 'N', 12, 2}, {"GGRIO", 'N', 4},
    {"CODFOR", 'C', 8},     {"DISEGNO", 'C', 40},   {"ANNULL", 'C', 1},     {"NOTE", 'M'}};

QString TypeOf(qint64 article) {
    switch (Bills::KindOf(article)) {
    case Bills::Kind::Product:
        return QStringLiteral("P");
    case Bills::Kind::Assembly:
        return QStringLiteral("S");
    default:
        return article % 2 == 0 ? QStringLiteral("C") : QString();
    }
}

void SetArticle(TableWriter& table, const arca2000::Codes& codes, Random& random, qint64 row) {
    static const QStringList units{"NR", "PZ", "KG", "MT"};
    static const QStringList groups{"MECC", "ELET", "VITE", "ZZ"};
    const double cost = random.Amount(0.05, 900, 4);
    table.Set("CODART", ArticleCode(row)).Set("DESCR", ArticleName(random));
    table.Set("DESCR2", random.Chance(20) ? QStringLiteral("qualità certificata, à richiesta") : QString());
    table.Set("UM", random.Chance(95) ? random.Pick(units) : QString()).Set("UM2", QString()).Set("FATCON", 1.0);
    table.Set("IVA", random.Chance(80) ? QStringLiteral("22") : QString()).Set("TIPO", TypeOf(row));
    table.Set("GRUPPO", random.Pick(groups)).Set("SOTGRU", QString());
    table.Set("COSTO", random.Chance(90) ? cost : 0.0).Set("ULTCOS", cost).Set("PRZVEN", cost * 1.5);
    table.Set("SCO1", random.Chance(30) ? 10.0 : 0.0).Set("SCO2", 0.0).Set("SCO3", 0.0);
    table.Set("PESO", random.Amount(0.001, 80, 4)).Set("SCOMIN", random.Below(100)).Set("LOTRIO", random.Below(500));
    table.Set("GGRIO", random.Below(60));
    const bool hasSupplier = codes.Suppliers() > 0 && random.Chance(50);
    table.Set("CODFOR", hasSupplier ? codes.Supplier(1 + row % codes.Suppliers()) : QString());
    table.Set("DISEGNO", random.Chance(10) ? ArticleCode(row) + QStringLiteral(".pdf") : QString());
    table.Set("ANNULL", random.Chance(3) ? QStringLiteral("S") : QString());
    table.Set("NOTE",
              random.Chance(10) ? QStringLiteral("Attenzione:\r\nverificare la tolleranza, è critica") : QString());
}

Totals WriteArticleTable(Store& store, const Options& options) {
    const arca2000::Codes codes(options.rows);
    const auto table = store.Create(QStringLiteral("ARTICOLI"), ArticoliColumns);
    for (qint64 row = 0; row < options.rows; ++row) {
        Random random(options.seed, ArticleStream, static_cast<quint64>(row));
        SetArticle(*table, codes, random, row);
        table->Add();
        if (row % 150 == 149) {
            SetArticle(*table, codes, random, row);
            table->AddDeleted();
        }
    }
    table->Finish();
    store.AddIndex(QStringLiteral("ARTICOLI"), {QStringLiteral("CODART")});
    return {{"ARTICOLI: righe", QString::number(table->Count())}};
}

Totals WriteOtherCodes(Store& store, const Options& options) {
    const arca2000::Codes codes(options.rows);
    const auto table = store.Create(
        QStringLiteral("CODIFICHE"),
        {{"CODART", 'C', 20}, {"CODALT", 'C', 30}, {"DESCR", 'C', 50}, {"CODCLF", 'C', 8}, {"TIPCLF", 'C', 1}});
    for (qint64 row = 0; row < options.rows; row += 4) {
        Random random(options.seed, CodeStream, static_cast<quint64>(row));
        const bool isOfCustomer = random.Chance(50);
        table->Set("CODART", ArticleCode(row)).Set("CODALT", QStringLiteral("ALT-%1").arg(row));
        table->Set("DESCR", ArticleName(random));
        table->Set("CODCLF", isOfCustomer ? codes.Customer(1 + row % codes.Customers()) : QString());
        table->Set("TIPCLF", isOfCustomer ? QStringLiteral("C") : QString()).Add();
    }
    table->Finish();
    return {{"CODIFICHE: righe", QString::number(table->Count())}};
}

Totals WritePromotions(Store& store, const Options& options) {
    const arca2000::Codes codes(options.rows);
    const auto heads = store.Create(QStringLiteral("PROMO"), {{"CODPRO", 'C', 10},
                                                              {"DESCR", 'C', 40},
                                                              {"TIPO", 'C', 1},
                                                              {"DATINI", 'D'},
                                                              {"DATFIN", 'D'},
                                                              {"CODCLI", 'C', 8}});
    const auto rows = store.Create(
        QStringLiteral("PROMOR"),
        {{"CODPRO", 'C', 10}, {"CODART", 'C', 20}, {"SCO1", 'N', 6, 2}, {"SCO2", 'N', 6, 2}, {"SCO3", 'N', 6, 2}});
    for (qint64 row = 0; row < options.rows; row += RowsPerPromotion) {
        Random random(options.seed, PromotionStream, static_cast<quint64>(row));
        const QString code = QStringLiteral("PROMO%1").arg(row / RowsPerPromotion + 1);
        // Every second one has run out long ago, the others last for decades: what is valid does not depend on the day.
        const int end = row / RowsPerPromotion % 2 == 0 ? 2099 : 2020;
        heads->Set("CODPRO", code).Set("DESCR", QStringLiteral("Promozione n° %1").arg(row + 1));
        heads->Set("TIPO", QStringLiteral("S")).Set("DATINI", QDate(2019, 3, 1)).Set("DATFIN", QDate(end, 12, 31));
        heads->Set("CODCLI", random.Chance(30) ? codes.Customer(1 + row % codes.Customers()) : QString()).Add();
        for (qint64 article = row; article < std::min(options.rows, row + RowsPerPromotion / 10); ++article) {
            rows->Set("CODPRO", code).Set("CODART", ArticleCode(article)).Set("SCO1", random.Between(5, 30)).Add();
        }
    }
    heads->Finish();
    rows->Finish();
    store.AddIndex(QStringLiteral("PROMOR"), {QStringLiteral("CODPRO")});
    return {{"PROMO: righe", QString::number(heads->Count())}, {"PROMOR: righe", QString::number(rows->Count())}};
}

} // namespace

Totals WriteArticles(Store& store, const Options& options, QuadrixScript& script) {
    for (const char* unit : {"NR", "PZ", "KG", "MT"}) {
        script.Translate("ARTICOLI", "UM", unit, unit);
    }
    for (const char* group : {"MECC", "ELET", "VITE"}) {
        script.Translate("ARTICOLI", "GRUPPO", group, group);
    }
    script.Translate("ARTICOLI", "IVA", "22", "022");
    return WriteArticleTable(store, options) + WriteOtherCodes(store, options) + WritePromotions(store, options);
}

namespace {

Totals WriteAll(Store& store, const Options& options) {
    QuadrixScript script(options.company);
    Totals totals;
    if (IsAsked(options, "articoli")) {
        totals += WriteArticles(store, options, script);
    }
    if (IsAsked(options, "distinte")) {
        totals += WriteBills(store, options, script);
    }
    if (IsAsked(options, "documenti")) {
        totals += WriteDocuments(store, options, script);
    }
    store.Finish();
    script.Write(options.folder);
    return totals;
}

} // namespace

} // namespace winprogest

Totals MakeWinProgest(const Options& options) {
    DbfFolder store(options.folder, {false, 0x02});
    return winprogest::WriteAll(store, options);
}

Totals MakeWinProgestServer(const Options& options) {
    SqliteFile store(options.folder + QStringLiteral("/winprogest.db"));
    return winprogest::WriteAll(store, options);
}

} // namespace examples
