#pragma once

#include "adapters/contract/ImportRun.h"

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> StockNeeds();

/// Empties the stock tables, when the operator asked for it.
void EmptyStock(ImportRun& run, bool reset);

/// Writes opening balances: one load movement for each warehouse, with a row for each article. It knows the target,
/// never the origin. Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class StockWriter {
public:
    explicit StockWriter(ImportRun& run)
        : m_run(run) {}

    /// Writes the balance of an article in a warehouse, valued at the article's cost. A balance of zero, or an article
    /// that is not there (logged), is skipped.
    RowOutcome Balance(const QString& warehouse, const QString& article, double quantity);

private:
    struct Movement {
        qint64 id = 0;
        int rows = 0;
    };
    Movement& MovementOf(const QString& warehouse);

    ImportRun& m_run;
    QHash<QString, Movement> m_movements; ///< of this run, by warehouse
};

} // namespace contract
