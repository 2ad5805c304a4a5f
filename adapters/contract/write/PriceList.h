#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

#include <QSet>

namespace contract {

/// What the writer below writes: of price lists, and of work price lists.
std::vector<TableNeed> PriceListNeeds();
std::vector<TableNeed> WorkListNeeds();

/// What a reset of the price lists empties.
Emptying PriceListEmptying();

/// Days between which a price holds; Null for open.
struct Validity {
    QVariant from;
    QVariant to;
};

/// A price up to a quantity, with its discounts. A quantity of 0, blank or Null is any quantity: the price holds
/// without a limit.
struct Scale {
    QVariant quantity;
    QVariant price;
    std::array<QVariant, 3> discounts = {};
};

/// The price of a work on an article at a supplier.
struct WorkPrice {
    QString work = {}; ///< blank: not known
    QString article = {};
    QString supplier = {}; ///< CDCON; blank: not there
    Validity validity = {};
    Scale scale = {};
    QVariant created = {}; ///< moment of the line in the source; Null for the moment of the import
};

/// Writes price lists. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class PriceListWriter {
public:
    explicit PriceListWriter(ImportRun& run)
        : m_run(run) {}

    /// Makes sure that the list has its head. @param direction "V" sales or "A" purchases
    /// @param currency empty: the euro @param since day from which it holds; Null: that of the import
    /// @return RECORD_ID of the head
    qint64 Head(const QString& list, const QString& direction, const QString& description, const QString& currency = {},
                const QVariant& since = {}) const;
    /// Makes sure that an article is in a list from a day on. @return RECORD_ID of its row
    qint64 Article(const QString& list, const QString& article, const Validity& validity,
                   const QString& note = {}) const;
    /// Writes a scale of an article's row; one of the same quantity is rewritten, and another price that it had is
    /// logged.
    RowOutcome AddScale(qint64 articleRow, const Scale& scale) const;
    /// Writes a price that holds from its quantity on, up to where the next one begins: the scale that it begins in
    /// ends before it. Those of an article come in the order of their quantities. The lowest one holds for less than
    /// its quantity too, as Quadrix knows no lower limit, which is logged.
    RowOutcome AddScaleFrom(qint64 articleRow, const Scale& scale);
    /// Writes the price of a work on an article at a supplier, with one scale; the one that an earlier import wrote for
    /// the same work, article, supplier, first day and quantity is rewritten. A source that has several alike has each
    /// of them written once by this writer.
    void Work(const WorkPrice& price);

private:
    /// RECORD_IDs of a work price and of its scale; 0 for none.
    struct KnownWork {
        qint64 price = 0;
        qint64 scale = 0;
    };
    KnownWork FindWork(const WorkPrice& price) const;
    void LogReplacedPrice(const QVariant& before, const Scale& scale) const;
    QVariant UpToOfLowest(qint64 articleRow) const;
    QVariant UpToOf(qint64 articleRow, double from) const;
    QVariant First(const QString& query) const;

    ImportRun& m_run;
    QHash<qint64, double> m_lowest; ///< quantity that the lowest scale of an article's row begins with
    QSet<qint64> m_works;           ///< RECORD_IDs of the work prices written so far
};

} // namespace contract
