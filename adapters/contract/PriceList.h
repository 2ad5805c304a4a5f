#pragma once

#include "adapters/contract/ImportRun.h"

namespace contract {

/// What the writer below writes: of price lists, and of work price lists.
std::vector<TableNeed> PriceListNeeds();
std::vector<TableNeed> WorkListNeeds();

/// Empties the price-list tables, when the operator asked for it.
void EmptyPriceLists(ImportRun& run, bool reset);

/// Days between which a price holds; Null for open.
struct Validity {
    QVariant from;
    QVariant to;
};

/// A quantity threshold with its price and discounts. A Null quantity is any quantity.
struct Scale {
    QVariant quantity;
    QVariant price;
    std::array<QVariant, 3> discounts = {};
};

/// Writes price lists. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class PriceListWriter {
public:
    explicit PriceListWriter(ImportRun& run)
        : m_run(run) {}

    /// Makes sure that the list has its head. @param direction "V" sales or "A" purchases
    /// @return RECORD_ID of the head
    qint64 Head(const QString& list, const QString& direction, const QString& description) const;
    /// Makes sure that an article is in a list from a day on. @return RECORD_ID of its row
    qint64 Article(const QString& list, const QString& article, const Validity& validity) const;
    /// Writes a scale of an article's row; one of the same quantity is rewritten, and another price that it had is
    /// logged.
    RowOutcome AddScale(qint64 articleRow, const Scale& scale) const;
    /// Writes the price of a work on an article at a supplier, with one scale. A blank work or supplier is left out.
    void Work(const QString& work, const QString& article, const QString& supplier, const Validity& validity,
              const Scale& scale, const QVariant& created) const;

private:
    void LogReplacedPrice(const QVariant& before, const Scale& scale) const;

    ImportRun& m_run;
};

} // namespace contract
