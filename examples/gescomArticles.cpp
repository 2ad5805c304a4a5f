// Gescom: articles, price lists and bills of materials with work phases.

#include "examples/gescom.h"

#include "examples/articles.h"
#include "examples/bills.h"

#include <QDate>

namespace examples::gescom {

namespace {

constexpr quint64 ArticleStream = 71;
constexpr quint64 PriceStream = 72;
constexpr quint64 PhaseStream = 73;
constexpr int Lists = 4;
constexpr int ArticlesPerPrice = 3; ///< one article in so many stands in a price list

const QVector<Column> ArticoliColumns{
    {"CDARTICO", 'C', 20},   {"DSARTICO", 'C', 50},    {"D2ARTICO", 'C', 50},    {"UMARTICO", 'C', 3},
    {"U2ARTICO", 'C', 3},    {"FCARTICO", 'N', 12, 5}, {"IVARTICO", 'C', 3},     {"TPARTICO", 'C', 1},
    {"FMARTICO", 'C', 4},    {"CSARTICO", 'N', 14, 4}, {"CUARTICO", 'N', 14, 4}, {"PVARTICO", 'N', 14, 4},
    {"S1ARTICO", 'N', 6, 2}, {"PSARTICO", 'N', 12, 4}, {"SMARTICO", 'N', 12, 2}, {"LRARTICO", 'N', 12, 2},
    {"GGARTICO", 'N', 4},    {"FOARTICO", 'C', 8},     {"CFARTICO", 'C', 20},    {"UBARTICO", 'C', 10},
    {"ANARTICO", 'C', 1},    {"NTARTICO", 'M'}};

QString TypeOf(qint64 article) {
    const Bills::Kind kind = Bills::KindOf(article);
    return kind == Bills::Kind::Product    ? QStringLiteral("P")
           : kind == Bills::Kind::Assembly ? QStringLiteral("S")
                                           : QString();
}

void SetArticle(TableWriter& table, Random& random, qint64 row) {
    static const QStringList units{"NR", "PZ", "KG", "MT"};
    static const QStringList families{"MECC", "ELET", "VITE", "ZZ"};
    const double cost = random.Amount(0.05, 900, 4);
    table.Set("CDARTICO", ArticleCode(row)).Set("DSARTICO", ArticleName(random)).Set("D2ARTICO", QString());
    table.Set("UMARTICO", random.Chance(95) ? random.Pick(units) : QString()).Set("U2ARTICO", QString());
    table.Set("FCARTICO", 1.0).Set("IVARTICO", random.Chance(80) ? QStringLiteral("22") : QString());
    table.Set("TPARTICO", TypeOf(row)).Set("FMARTICO", random.Pick(families));
    table.Set("CSARTICO", random.Chance(90) ? cost : 0.0).Set("CUARTICO", cost).Set("PVARTICO", cost * 1.5);
    table.Set("S1ARTICO", random.Chance(30) ? 12.5 : 0.0).Set("PSARTICO", random.Amount(0.001, 80, 4));
    table.Set("SMARTICO", random.Below(100)).Set("LRARTICO", random.Below(500)).Set("GGARTICO", random.Below(60));
}

Totals WriteArticleTable(Store& store, const Options& options) {
    const Codes codes(options.rows);
    const auto table = store.Create(QStringLiteral("ARTICOLI"), ArticoliColumns);
    for (qint64 row = 0; row < options.rows; ++row) {
        Random random(options.seed, ArticleStream, static_cast<quint64>(row));
        SetArticle(*table, random, row);
        const bool hasSupplier = codes.Suppliers() > 0 && random.Chance(50);
        table->Set("FOARTICO", hasSupplier ? codes.Supplier(1 + row % codes.Suppliers()) : QString());
        table->Set("CFARTICO", hasSupplier && random.Chance(40) ? QStringLiteral("FORN-%1").arg(row) : QString());
        table->Set("UBARTICO", random.Chance(40) ? QStringLiteral("A-%1").arg(random.Between(1, 60)) : QString());
        table->Set("ANARTICO", random.Chance(3) ? QStringLiteral("S") : QString());
        table->Set("NTARTICO", random.Chance(10) ? QStringLiteral("Tolleranza più stretta,\r\nverificare") : QString());
        table->Add();
    }
    table->Finish();
    store.AddIndex(table->Name(), {QStringLiteral("CDARTICO")});
    return {{"ARTICOLI: righe", QString::number(table->Count())}};
}

Totals WriteLists(Store& store, const Options& options) {
    const auto table = store.Create(QStringLiteral("LISTINI"), {{"CDLISTIN", 'C', 6},
                                                                {"DSLISTIN", 'C', 40},
                                                                {"TPLISTIN", 'C', 1},
                                                                {"ARLISTIN", 'C', 20},
                                                                {"DILISTIN", 'D'},
                                                                {"DFLISTIN", 'D'},
                                                                {"QTLISTIN", 'N', 12, 3},
                                                                {"PRLISTIN", 'N', 14, 4},
                                                                {"S1LISTIN", 'N', 6, 2},
                                                                {"S2LISTIN", 'N', 6, 2}});
    qint64 articles = 0;
    for (qint64 row = 0; row < options.rows; row += ArticlesPerPrice) {
        Random random(options.seed, PriceStream, static_cast<quint64>(row));
        const qint64 list = row / ArticlesPerPrice % Lists;
        const double price = random.Amount(0.5, 900, 2);
        const qint64 scales = random.Chance(30) ? 3 : 1;
        for (qint64 scale = 0; scale < scales; ++scale) {
            table->Set("CDLISTIN", QStringLiteral("L%1").arg(list + 1));
            table->Set("DSLISTIN", QStringLiteral("Listino n° %1").arg(list + 1));
            table->Set("TPLISTIN", list == Lists - 1 ? QStringLiteral("A") : QStringLiteral("V"));
            table->Set("ARLISTIN", ArticleCode(row)).Set("DILISTIN", QDate(2024, 1, 1));
            table->Set("DFLISTIN", random.Chance(30) ? QVariant(QDate(2024, 12, 31)) : QVariant());
            table->Set("QTLISTIN", scale * 100).Set("PRLISTIN", price - static_cast<double>(scale) / 10);
            table->Set("S1LISTIN", random.Chance(20) ? 5.0 : 0.0).Set("S2LISTIN", 0.0).Add();
        }
        ++articles;
    }
    table->Finish();
    const qint64 lists = std::min<qint64>(Lists, articles);
    return {{"LISTINI: righe", QString::number(table->Count())},
            {"LIS_TES attese", QString::number(lists)},
            {"LIS_ART attese", QString::number(articles)},
            {"LIS_ARS attese", QString::number(table->Count())}};
}

/// The phases of an article's bill; returns how many there are.
qint64 WritePhases(TableWriter& table, const Options& options, qint64 article) {
    Random random(options.seed, PhaseStream, static_cast<quint64>(article));
    const qint64 count = random.Chance(60) ? random.Between(1, 4) : 0;
    for (qint64 phase = 1; phase <= count; ++phase) {
        table.Set("ARARCFAS", ArticleCode(article)).Set("SQARCFAS", phase * 10);
        table.Set("CODFASEL", random.Pick(Phases())).Set("TAARCFAS", random.Amount(0.1, 2, 2));
        table.Set("TUARCFAS", random.Amount(0.01, 3, 3)).Set("NTARCFAS", QString()).Add();
    }
    return count;
}

void WriteLines(TableWriter& table, const QString& parent, const QVector<BillLine>& lines, const QString& phase) {
    int number = 0;
    for (const BillLine& line : lines) {
        const bool isUnknown = line.child == Bills::UnknownArticle;
        table.Set("PADISBAS", parent).Set("FIDISBAS", isUnknown ? UnknownArticleCode : ArticleCode(line.child));
        table.Set("RGDISBAS", ++number * 10).Set("QTDISBAS", line.quantity);
        table.Set("NTDISBAS", number % 7 == 0 ? QStringLiteral("già tagliato a misura") : QString());
        table.Set("FSDISBAS", phase).Add();
    }
}

} // namespace

const QStringList& Phases() {
    static const QStringList phases{"TAGLIO", "PIEGA", "SALDA", "VERNIC", "MONTA", "ZZFASE"};
    return phases;
}

Totals WriteArticles(Store& store, const Options& options, QuadrixScript& script) {
    for (const char* unit : {"NR", "PZ", "KG", "MT"}) {
        script.Translate("ARTICOLI", "UMARTICO", unit, unit);
    }
    script.Translate("ARTICOLI", "IVARTICO", "22", "022");
    for (const char* family : {"MECC", "ELET", "VITE"}) {
        script.Translate("ARTICOLI", "FMARTICO", family, family);
    }
    return WriteArticleTable(store, options) + WriteLists(store, options);
}

Totals WriteBills(Store& store, const Options& options, QuadrixScript& script) {
    for (const QString& phase : Phases()) {
        if (!phase.startsWith(u"ZZ")) {
            script.Translate("arcfas", "CODFASEL", phase, phase);
            script.WorkCentre(phase, QStringLiteral("Centro di lavoro ") + phase);
        }
    }
    const Bills bills(options.seed, options.rows, options.hasCycles);
    BillCount count(bills);
    const auto lines = store.Create(QStringLiteral("DISBAS"), {{"PADISBAS", 'C', 20},
                                                               {"FIDISBAS", 'C', 20},
                                                               {"RGDISBAS", 'N', 5},
                                                               {"QTDISBAS", 'N', 14, 5},
                                                               {"NTDISBAS", 'C', 60},
                                                               {"FSDISBAS", 'C', 6}});
    const auto phases = store.Create(QStringLiteral("arcfas"), {{"ARARCFAS", 'C', 20},
                                                                {"SQARCFAS", 'N', 5},
                                                                {"CODFASEL", 'C', 6},
                                                                {"TAARCFAS", 'N', 10, 3},
                                                                {"TUARCFAS", 'N', 10, 4},
                                                                {"NTARCFAS", 'C', 60}});
    qint64 expectedPhases = 0;
    for (qint64 article = 0; article < options.rows; ++article) {
        if (bills.HasBill(article)) {
            const auto children = bills.Lines(article);
            count.Add(children);
            WriteLines(*lines, ArticleCode(article), children, QString());
            expectedPhases += std::max<qint64>(1, WritePhases(*phases, options, article));
        }
    }
    lines->Finish();
    phases->Finish();
    store.AddIndex(lines->Name(), {QStringLiteral("PADISBAS"), QStringLiteral("RGDISBAS")});
    store.AddIndex(phases->Name(), {QStringLiteral("ARARCFAS"), QStringLiteral("SQARCFAS")});
    store.AddIndex(phases->Name(), {QStringLiteral("ARARCFAS"), QStringLiteral("CODFASEL")});
    const auto text = [](qint64 number) { return QString::number(number); };
    return {
        {"DISBAS: righe", text(lines->Count())},    {"DISBAS: componenti che mancano in ARTICOLI", text(count.unknown)},
        {"DIS_BAS attese", text(count.heads)},      {"DIS_FAS attese", text(expectedPhases)},
        {"DIS_COM attese", text(count.components)}, {"DIS_COM attese con IDDBF", text(count.linked)}};
}

} // namespace examples::gescom
