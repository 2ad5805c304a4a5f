#pragma once

#include "adapters/contract/run/Needs.h"

namespace contract {

/// Looks at what the columns of a table of the company take, beside what the schema says, and adds to the lacks what
/// follows: a column that no new row goes without and nobody writes, numbers that are not kept as they are, and the
/// lengths of texts. Raises `SqlError` when the database cannot be asked.
void LookAtBounds(ovConnection& target, const NeededTables::Table& table, Lacks& lacks);

/// The line that tells of columns that keep less of a number; empty when there are none.
QString NarrowLine(const Lacks& lacks);

/// The line that tells of columns without which the database takes no new row; empty when there are none. Rows that are
/// there already are updated all the same.
QString DemandedLine(const Lacks& lacks);

} // namespace contract
