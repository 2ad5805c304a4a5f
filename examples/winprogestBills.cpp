// WinProgest: heads of bills in NFTDIS, components in NFCODIS.

#include "examples/articles.h"
#include "examples/bills.h"
#include "examples/winprogest.h"

namespace examples::winprogest {

namespace {

constexpr quint64 LineStream = 41;
constexpr int UnknownParentEvery = 50; ///< one bill in so many is followed by one whose article is not there

/// Writes the bills of the articles.
class BillTables {
public:
    BillTables(Store& store, const Options& options)
        : m_seed(options.seed),
          m_codes(options.rows),
          m_bills(options.seed, options.rows, options.hasCycles),
          m_count(m_bills),
          m_heads(store.Create(QStringLiteral("NFTDIS"), {{"PADRE", 'C', 20}, {"DESCR", 'C', 50}})),
          m_lines(store.Create(
              QStringLiteral("NFCODIS"),
              {{"PADRE", 'C', 20}, {"FIGLIO", 'C', 20}, {"QTA", 'N', 14, 5}, {"CODFOR", 'C', 8}, {"NINS", 'N', 6}})) {}

    Totals Write(qint64 articles) {
        for (qint64 article = 0; article < articles; ++article) {
            if (m_bills.HasBill(article)) {
                const auto lines = m_bills.Lines(article);
                m_count.Add(lines);
                WriteBill(article, ArticleCode(article), lines);
                if (m_count.heads % UnknownParentEvery == 0) {
                    WriteBill(article, UnknownArticleCode + QString::number(article), lines);
                }
            }
        }
        m_heads->Finish();
        m_lines->Finish();
        return Counted();
    }

private:
    void WriteBill(qint64 article, const QString& parent, const QVector<BillLine>& lines) {
        Random random(m_seed, LineStream, static_cast<quint64>(article));
        m_heads->Set("PADRE", parent).Set("DESCR", QStringLiteral("Distinta di ") + parent).Add();
        int number = 0;
        for (const BillLine& line : lines) {
            const bool isUnknown = line.child == Bills::UnknownArticle;
            m_lines->Set("PADRE", parent).Set("FIGLIO", isUnknown ? UnknownArticleCode : ArticleCode(line.child));
            m_lines->Set("QTA", line.quantity).Set("CODFOR", Supplier(random, article)).Set("NINS", ++number * 10);
            m_lines->Add();
        }
    }

    /// Some suppliers are known only by the code that they had before two were made one.
    QString Supplier(Random& random, qint64 article) const {
        if (m_codes.Suppliers() == 0 || !random.Chance(25)) {
            return {};
        }
        return random.Chance(10) ? QStringLiteral("FVECCHIO") : m_codes.Supplier(1 + article % m_codes.Suppliers());
    }

    Totals Counted() const {
        const auto text = [](qint64 number) { return QString::number(number); };
        return {{"NFTDIS: righe", text(m_heads->Count())},
                {"NFCODIS: righe", text(m_lines->Count())},
                {"NFCODIS: componenti che mancano in ARTICOLI (di distinte importate)", text(m_count.unknown)},
                {"DIS_BAS attese", text(m_count.heads)},
                {"DIS_FAS attese", text(m_count.heads)},
                {"DIS_COM attese", text(m_count.components)},
                {"DIS_COM attese con IDDBF", text(m_count.linked)}};
    }

    quint64 m_seed;
    arca2000::Codes m_codes;
    Bills m_bills;
    BillCount m_count;
    std::unique_ptr<TableWriter> m_heads;
    std::unique_ptr<TableWriter> m_lines;
};

} // namespace

Totals WriteBills(Store& store, const Options& options, QuadrixScript& script) {
    script.Translate("UNIFICATI", "F-CODICECF", "FVECCHIO", "000001");
    const Totals totals = BillTables(store, options).Write(options.rows);
    store.AddIndex(QStringLiteral("NFTDIS"), {QStringLiteral("PADRE")});
    store.AddIndex(QStringLiteral("NFCODIS"), {QStringLiteral("PADRE"), QStringLiteral("NINS")});
    return totals;
}

} // namespace examples::winprogest
