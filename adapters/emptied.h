#pragma once

#include "adapters/contract/run/Origin.h"

namespace contract {

/// Rows that a reset deletes from a table.
struct RowsToDelete {
    QString table;       ///< physical name
    QString where = {};  ///< a condition on them; empty: all rows of the table
    bool atMost = false; ///< the procedure may leave some of them
};

/// What a procedure deletes, in its order, when the operator wants a reset before it; empty for one that never does.
std::vector<RowsToDelete> DeletedByReset(Session& session, const Procedure& procedure);

} // namespace contract
