#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

#include <QSet>

#include <map>
#include <set>

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> StockNeeds();

/// What a reset of the stock empties.
Emptying StockEmptying();

/// A balance of an article.
struct StockLine {
    QString warehouse;
    QString article;
    double quantity = 0;
    QString unit = {};   ///< empty: that of the article
    QVariant price = {}; ///< Null: the article's cost
    QString location = {};
    QString left = {};   ///< warehouse that it stood in while nobody knew its own; empty: none
    bool sheet = false;  ///< a sheet: it stands in a movement of sheets
    QString format = {}; ///< CDFMT of the sheet
    QString offcut = {}; ///< code of the offcut that it is; empty for a whole sheet
    double length = 0;   ///< of the sheet, mm
    double width = 0;    ///< of the sheet, mm
};

/// Writes opening balances: one load movement for each module, warehouse (and one more for its sheets) and year, with a
/// row for each balance. What an earlier import of the module wrote in the year is found and rewritten: SYS_IMP keeps
/// whose a movement is, and one that is nobody's yet is taken. It knows the target, never the origin. Every operation
/// raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class StockWriter {
public:
    explicit StockWriter(ImportRun& run)
        : m_run(run) {}

    /// Writes the balance of an article in a warehouse, valued at the article's cost. An article that is not there
    /// (logged) is skipped, and a balance of zero where no earlier import wrote another one.
    RowOutcome Balance(const QString& warehouse, const QString& article, double quantity) {
        return Balance(StockLine{warehouse, article, quantity});
    }
    /// The same, of a balance with all its particulars. One that has left a warehouse takes its row with it: the one of
    /// its quantity; where there are only others, `ImportError` is raised, as they may be of other balances.
    RowOutcome Balance(const StockLine& line);

    /// Has balances like this one, sheets or offcuts or what is none, count as written by the run also where the source
    /// has not one of them.
    void WritesLike(const StockLine& line) { m_written.insert({line.sheet, !line.offcut.isEmpty()}); }
    /// The same of sheets, offcuts and what is none of them.
    void WritesAll();
    /// Tells how many rows earlier imports have left in the movements of this run, and in those of the module and year
    /// whose warehouse the run has not met, that it has not written: their quantities still count.
    void TellRowsLeft();

private:
    struct Movement {
        qint64 id = 0;
        QString code = {};           ///< "2024/1", for SYS_IMP
        QString name = {};           ///< in the operator's words
        qint64 last = 0;             ///< number of its last row
        qint64 lastBefore = 0;       ///< the same, before this run
        QSet<qint64> rewritten = {}; ///< of its rows that were there
        bool wasThere = false;
        bool isKept = false; ///< SYS_IMP says that it is of this module
    };
    /// A row that an earlier import has written.
    struct Known {
        qint64 id = 0; ///< RECORD_ID; 0: none
        double quantity = 0;
        bool isElsewhere = false; ///< in the warehouse that the balance has left
    };
    /// The movement that a line belongs to, of this run or an earlier one; with id 0 when there is none.
    Movement& FindMovement(const StockLine& line);
    Movement ReadMovement(const StockLine& line) const;
    Movement KnownMovement(qint64 id, qint64 number) const;
    qint64 LastRow(const Movement& movement) const;
    QString KeeperOf(const QString& code) const;
    void InsertMovement(Movement& movement, const StockLine& line);
    void Keep(Movement& movement);
    Known FindKnown(const StockLine& line);
    std::vector<Known> FindRows(const Movement& movement, const StockLine& line) const;
    void TellRowsLeft(const Movement& movement, const QString& warehouse, bool sheets) const;
    void TellWarehousesLeft() const;

    ImportRun& m_run;
    using Key = QPair<QString, bool>;
    std::map<Key, Movement> m_movements;       ///< by warehouse and of sheets or not
    std::set<std::pair<bool, bool>> m_written; ///< whether sheets and whether offcuts
};

} // namespace contract
