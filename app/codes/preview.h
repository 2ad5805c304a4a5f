#pragma once

#include "app/codes/apply.h"

namespace codes {

/// What becomes of a cell of Quadrix, or of a whole row.
struct CellChange {
    QString table;       ///< bare name
    QString row;         ///< what tells it: "000015 Rossi Mario"
    QString column = {}; ///< empty: the row is new, or goes
    QString before = {}; ///< as an Italian reads it; empty for Null
    QString after = {};  ///< the same
};

/// What importing rows again with the codes that they lack would change.
struct Preview {
    FlowOutcome outcome = FlowOutcome::Done; ///< of the first trial that did not come to its end
    std::vector<CellChange> cells = {};

    bool IsWhole() const { return outcome == FlowOutcome::Done; }
    /// "41 celle di CON_TRO, 52 celle di ART_ICO"; what there is to say of none.
    QString Text() const;
};

/// Tries the rows of each run, as `Repeat` imports them, and compares every cell that is written with what it was; all
/// is taken back, and the history keeps none of it. The results of the procedures are appended to those of the session.
/// Raises `SqlError`, and what `Repeat` does.
Preview PreviewOf(Session& session, const std::vector<RowsToRepeat>& all);

/// The words for a cell: "CON_TRO 000015 Rossi Mario, Pagamento (COMOP): (vuoto) -> B90".
QString CellText(const CellChange& cell);

} // namespace codes
