// Arca 2000: articles with the prices that suppliers ask and customers pay, and the chart of accounts.

#include "examples/arca2000.h"
#include "examples/articles.h"
#include "examples/random.h"

#include <QDate>
#include <QSet>

namespace examples::arca2000 {

namespace {

constexpr quint64 ArticleStream = 11;
constexpr quint64 PriceStream = 12;

QVector<Column> MagartColumns(int codeLength) {
    return {{"codice", 'C', 20},
            {"descrizion", 'C', 40},
            {"gruppo", 'C', 10},
            {"unmisura", 'C', 2},
            {"unmisura1", 'C', 2},
            {"fatt1", 'N', 12, 5},
            {"uaprezzol", 'N', 14, 4},
            {"costostand", 'N', 14, 4},
            {"listino1", 'N', 14, 4},
            {"listino2", 'N', 14, 4},
            {"listino3", 'N', 14, 4},
            {"listino4", 'N', 14, 4},
            {"listino5", 'N', 14, 4},
            {"listino6", 'N', 14, 4},
            {"listino7", 'N', 14, 4},
            {"sconto1", 'N', 8, 3},
            {"sconto2", 'N', 8, 3},
            {"sconto3", 'N', 8, 3},
            {"uasconto", 'N', 8, 3},
            {"pesounit", 'N', 12, 4},
            {"scortamin", 'N', 12, 2},
            {"lottomin", 'N', 12, 2},
            {"lottorior", 'N', 12, 2},
            {"ggrior", 'N', 4},
            {"uvcliente", 'C', codeLength},
            {"uafornitor", 'C', codeLength},
            {"id_ClasseArt", 'C', 10}};
}

QVector<Column> ListiniColumns(int codeLength) {
    return {{"codicearti", 'C', 20}, {"codclifor", 'C', codeLength}, {"gruppo", 'C', 10},     {"datainizio", 'D'},
            {"datafine", 'D'},       {"prezzo", 'N', 14, 4},         {"sconto", 'N', 6, 2},   {"commento", 'C', 120},
            {"timestamp", 'D'},      {"u_qta", 'N', 12, 3},          {"u_prezzo", 'N', 14, 4}};
}

const QStringList& Groups() {
    static const QStringList groups{"PF01", "PF02", "SL01", "F01", "F02", "MP01"};
    return groups;
}

/// Writes the articles and their price lines.
class Articles {
public:
    Articles(Store& store, const Options& options)
        : m_codes(options.rows),
          m_options(options),
          m_magart(store.Create(QStringLiteral("magart"), MagartColumns(m_codes.Length()))),
          m_listini(store.Create(QStringLiteral("listini"), ListiniColumns(m_codes.Length()))),
          m_hasList(static_cast<std::size_t>(m_codes.Customers())) {}

    Totals Write() {
        for (qint64 row = 0; row < m_options.rows; ++row) {
            WriteArticle(row);
        }
        m_magart->Finish();
        m_listini->Finish();
        return Counted();
    }

private:
    void WriteArticle(qint64 row) {
        Random random(m_options.seed, ArticleStream, static_cast<quint64>(row));
        const QString ending = Ending(row);
        const QString code = ArticleCode(row) + ending;
        const double cost = random.Amount(0.05, 900, 4);
        m_magart->Set("codice", code).Set("descrizion", ArticleName(random).left(40));
        SetGroup(random, row);
        SetUnits(random);
        SetPrices(random, cost);
        SetStock(random);
        SetPartners(random, row);
        m_magart->Add();
        const bool isSkipped = ending == u"-C1" || ending == u"-C15";
        m_skipped += isSkipped ? 1 : 0;
        if (!isSkipped) {
            WritePrices(row, code, cost);
        }
    }

    /// Some codes end as those of variants do, of which the import skips the numbered ones.
    static QString Ending(qint64 row) {
        static const QStringList endings{"-C1", "-C15", "-C", "-CX"};
        return row % 40 == 39 ? endings[row / 40 % endings.size()] : QString();
    }

    void SetGroup(Random& random, qint64 row) {
        // The group may name the customer that an article is made for.
        const bool isForCustomer = row % 25 == 3;
        m_magart->Set("gruppo",
                      isForCustomer ? m_codes.Customer(1 + row % m_codes.Customers()) : random.Pick(Groups()));
        m_magart->Set("id_ClasseArt", random.Chance(90) ? QStringLiteral("STD") : QStringLiteral("ZZ"));
    }

    void SetUnits(Random& random) {
        static const QStringList units{"NR", "nr", "KG", "MT", "PZ", "ZZ"};
        const bool hasSecond = random.Chance(20);
        m_magart->Set("unmisura", random.Pick(units)).Set("unmisura1", hasSecond ? QStringLiteral("KG") : QString());
        m_magart->Set("fatt1", hasSecond ? random.Amount(0.1, 12, 5) : 1.0);
    }

    void SetPrices(Random& random, double cost) {
        m_magart->Set("uaprezzol", random.Chance(85) ? cost : 0.0).Set("costostand", cost);
        for (const char* list : {"listino1", "listino2", "listino3", "listino4", "listino5", "listino6", "listino7"}) {
            m_magart->Set(list, cost * static_cast<double>(random.Between(110, 190)) / 100);
        }
        m_magart->Set("sconto1", random.Chance(30) ? 12.345 : 0.0).Set("sconto2", random.Chance(10) ? 5.0 : 0.0);
        m_magart->Set("sconto3", 0.0).Set("uasconto", random.Chance(20) ? 33.333 : 0.0);
    }

    void SetStock(Random& random) {
        m_magart->Set("pesounit", random.Amount(0.001, 80, 4)).Set("scortamin", random.Below(200));
        m_magart->Set("lottomin", random.Below(50)).Set("lottorior", random.Below(500)).Set("ggrior", random.Below(60));
    }

    void SetPartners(Random& random, qint64 row) {
        m_magart->Set("uvcliente", random.Chance(30) ? m_codes.Customer(1 + row % m_codes.Customers()) : QString());
        const bool hasSupplier = m_codes.Suppliers() > 0 && random.Chance(60);
        // One in fifty names a supplier that is not there.
        const bool isKnown = row % 50 != 17;
        const QString supplier =
            hasSupplier ? (isKnown ? m_codes.Supplier(1 + row % m_codes.Suppliers()) : m_codes.Supplier(0)) : QString();
        m_magart->Set("uafornitor", supplier);
        m_linked += hasSupplier && isKnown && Ending(row) != u"-C1" && Ending(row) != u"-C15" ? 1 : 0;
    }

    void WritePrices(qint64 row, const QString& code, double cost) {
        Random random(m_options.seed, PriceStream, static_cast<quint64>(row));
        QSet<QDate> costDays;
        QSet<QDate> priceDays;
        // A customer's list holds an article once for each first day, with a price for each quantity.
        QSet<std::pair<qint64, QDate>> listed;
        QSet<std::pair<std::pair<qint64, QDate>, qint64>> scales;
        const qint64 lines = random.Below(5);
        for (qint64 line = 0; line < lines; ++line) {
            const bool isCustomer = m_codes.Suppliers() == 0 || random.Chance(50);
            // Few days, so that some lines of an article begin on the same one.
            const QDate day = QDate(2024, 1, 1).addMonths(static_cast<int>(random.Below(6)));
            const qint64 number = (row + random.Below(3)) % (isCustomer ? m_codes.Customers() : m_codes.Suppliers());
            const QString partner = isCustomer ? m_codes.Customer(number + 1) : m_codes.Supplier(number + 1);
            const qint64 quantity = WriteLine(random, code, partner, day, cost);
            (isCustomer ? priceDays : costDays).insert(day);
            m_supplierLines += isCustomer ? 0 : 1;
            if (isCustomer) {
                listed.insert({number, day});
                scales.insert({{number, day}, quantity});
                m_hasList[static_cast<std::size_t>(number)] = true;
            }
        }
        m_costs += costDays.size();
        m_prices += priceDays.size();
        m_listed += listed.size();
        m_scales += scales.size();
    }

    /// Returns the quantity of the line.
    qint64 WriteLine(Random& random, const QString& code, const QString& partner, QDate day, double cost) {
        m_listini->Set("codicearti", code).Set("codclifor", partner).Set("datainizio", day);
        m_listini->Set("datafine", random.Chance(50) ? QVariant(day.addYears(1)) : QVariant());
        m_listini->Set("prezzo", cost).Set("sconto", random.Chance(40) ? QVariant(random.Between(1, 30)) : QVariant());
        m_listini->Set("commento",
                       random.Chance(10) ? QStringLiteral("Prezzo già concordato, IVA esclusa") : QString());
        const qint64 quantity = random.Below(4) * 50;
        m_listini->Set("timestamp", day.addDays(-3)).Set("u_qta", quantity).Set("u_prezzo", cost * 1.4);
        m_listini->Add();
        return quantity;
    }

    Totals Counted() const {
        const auto text = [](qint64 number) { return QString::number(number); };
        return {{"magart: righe", text(m_magart->Count())},
                {"magart: varianti che non si importano", text(m_skipped)},
                {"ART_ICO attese", text(m_magart->Count() - m_skipped)},
                {"ART_FOR attese", text(m_linked)},
                {"listini: righe", text(m_listini->Count())},
                {"LIS_LAV attese", text(m_supplierLines)},
                {"STO_COS attese", text(m_costs)},
                {"STO_PRZ attese", text(m_prices)},
                {"LIS_TES attese", text(std::count(m_hasList.cbegin(), m_hasList.cend(), true))},
                {"LIS_ART attese", text(m_listed)},
                {"LIS_ARS attese", text(m_scales)}};
    }

    Codes m_codes;
    Options m_options;
    std::unique_ptr<TableWriter> m_magart;
    std::unique_ptr<TableWriter> m_listini;
    std::vector<bool> m_hasList; ///< by customer: whether a price line is theirs
    qint64 m_skipped = 0;
    qint64 m_linked = 0;
    qint64 m_supplierLines = 0;
    qint64 m_scales = 0;
    qint64 m_costs = 0;
    qint64 m_prices = 0;
    qint64 m_listed = 0;
};

struct Account {
    const char* code;
    const char* name;
    const char* type; ///< P balance sheet, E economic, O memorandum
    const char* side; ///< D debit, A credit
};

} // namespace

Totals WriteArticles(Store& store, const Options& options, QuadrixScript& script) {
    for (const char* unit : {"NR", "KG", "MT", "PZ"}) {
        script.Translate("magart", "unmisura", unit, unit);
    }
    script.Translate("magart", "gruppo", "PF01", "PF");
    script.Translate("magart", "gruppo", "PF02", "PF");
    return Articles(store, options).Write();
}

Totals WriteAccounts(Store& store) {
    static const Account accounts[] = {
        {"10", "Immobilizzazioni", "P", "D"},
        {"1001", "Immobilizzazioni materiali", "P", "D"},
        {"100100001", "Impianti e macchinari", "P", "D"},
        {"100100002", "Attrezzature", "P", "D"},
        {"20", "Crediti", "P", "D"},
        {"2001", "Clienti", "P", "D"},
        {"200100001", "Clienti Italia", "P", "D"},
        {"30", "Liquidità", "P", "D"},
        {"3001", "Banche", "P", "D"},
        {"300100001", "Banca c/c ordinario", "P", "D"},
        {"40", "Debiti", "P", "A"},
        {"4001", "Fornitori", "P", "A"},
        {"400100001", "Fornitori Italia", "P", "A"},
        {"58", "Ricavi", "E", "A"},
        {"5801", "Ricavi di vendita", "E", "A"},
        {"580100001", "Vendite Italia", "E", "A"},
        {"580100002", "Vendite all'estero", "E", "A"},
        {"66", "Costi", "E", "D"},
        {"6601", "Acquisti", "E", "D"},
        {"660100001", "Acquisti di materie prime", "E", "D"},
        {"660100002", "Lavorazioni di terzi", "E", "D"},
        {"90", "Conti d'ordine", "O", "D"},
        {"9001", "Beni di terzi", "O", "D"},
        {"900100001", "Merce in conto visione", "O", "D"},
    };
    const auto table = store.Create(QStringLiteral("pianocon"), {{"codice", 'C', 9},
                                                                 {"descrizion", 'C', 40},
                                                                 {"mastro", 'C', 9},
                                                                 {"tipo", 'C', 1},
                                                                 {"sezione", 'C', 1},
                                                                 {"livello", 'N', 1},
                                                                 {"raggr", 'C', 9}});
    for (const Account& account : accounts) {
        const QString code = QLatin1String(account.code);
        const int level = code.size() == 2 ? 1 : code.size() == 4 ? 2 : 3;
        // Some parents are left out, for the shorter code tells them as well.
        const QString parent = level == 1 || code.endsWith(u'2') ? QString() : code.left(level == 2 ? 2 : 4);
        table->Set("codice", code).Set("descrizion", QString::fromUtf8(account.name)).Set("mastro", parent);
        table->Set("tipo", QString(QLatin1String(account.type))).Set("sezione", QString(QLatin1String(account.side)));
        table->Set("livello", level).Add();
    }
    table->Finish();
    return {{"pianocon: righe", QString::number(table->Count())}};
}

} // namespace examples::arca2000
