#pragma once

#include "examples/random.h"

#include <QPair>
#include <QSet>
#include <QString>
#include <QVector>

namespace examples {

/// A component of a bill of materials.
struct BillLine {
    qint64 child = 0; ///< number of the article; `UnknownArticle` for one that is not there
    double quantity = 1;
};

/// Product structures over the articles of an example, which are numbered from 0: products, which nothing contains,
/// assemblies of three levels and parts. A product may contain assemblies whose code stands before or behind its own.
/// No bill contains itself, unless cycles are asked for.
class Bills {
public:
    enum class Kind { Product, Assembly, Part };
    static constexpr qint64 UnknownArticle = -1;

    Bills(quint64 seed, qint64 articles, bool hasCycles)
        : m_seed(seed),
          m_articles(articles),
          m_hasCycles(hasCycles) {}

    static Kind KindOf(qint64 article);
    /// Products have a bill, and all assemblies but those that are bought.
    bool HasBill(qint64 article) const;
    /// The components of an article's bill; some stand twice, some are no articles.
    QVector<BillLine> Lines(qint64 article) const;

private:
    BillLine MakeLine(Random& random, qint64 article) const;
    qint64 PickAssembly(Random& random, int level) const;
    qint64 PickPart(Random& random) const;
    qint64 PickInBlock(Random& random, int place) const;

    quint64 m_seed;
    qint64 m_articles;
    bool m_hasCycles;
};

/// Counts what an import of bills must give.
class BillCount {
public:
    explicit BillCount(const Bills& bills)
        : m_bills(bills) {}

    /// Counts the bill of an article that is there.
    void Add(const QVector<BillLine>& lines);
    qint64 heads = 0;
    qint64 components = 0; ///< different articles of each bill, unknown ones left out
    qint64 linked = 0;     ///< components that have a bill themselves
    qint64 unknown = 0;    ///< lines whose article is not there

private:
    const Bills& m_bills;
};

} // namespace examples
