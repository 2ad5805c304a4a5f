#pragma once

#include "adapters/contract/ImportRun.h"

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> StockNeeds();

/// Empties the stock tables, when the operator asked for it.
void EmptyStock(ImportRun& run, bool reset);

/// A balance of an article.
struct StockLine {
    QString warehouse;
    QString article;
    double quantity = 0;
    QString unit = {};   ///< empty: that of the article
    QVariant price = {}; ///< Null: the article's cost
    QString location = {};
    bool sheet = false;  ///< a sheet: it stands in a movement of sheets
    QString format = {}; ///< CDFMT of the sheet
    QString offcut = {}; ///< code of the offcut that it is; empty for a whole sheet
    double length = 0;   ///< of the sheet, mm
    double width = 0;    ///< of the sheet, mm
};

/// Writes opening balances: one load movement for each warehouse (and one more for its sheets), with a row for each
/// article. It knows the target, never the origin. Every operation raises `SqlError`, `RowGivenUp` or, for a value that
/// does not fit, `ImportError`.
class StockWriter {
public:
    explicit StockWriter(ImportRun& run)
        : m_run(run) {}

    /// Writes the balance of an article in a warehouse, valued at the article's cost. A balance of zero, or an article
    /// that is not there (logged), is skipped.
    RowOutcome Balance(const QString& warehouse, const QString& article, double quantity) {
        return Balance(StockLine{warehouse, article, quantity});
    }
    /// The same, of a balance with all its particulars.
    RowOutcome Balance(const StockLine& line);

private:
    struct Movement {
        qint64 id = 0;
        int rows = 0;
    };
    Movement& MovementOf(const StockLine& line);

    ImportRun& m_run;
    QHash<QPair<QString, bool>, Movement> m_movements; ///< of this run, by warehouse and of sheets or not
};

} // namespace contract
