#pragma once

#include "core/Session.h"

#include <vector>

namespace contract {

class ImportRun;

/// Rows that a reset deletes from a table of Quadrix.
struct Emptied {
    /// How a table loses its rows: at once, with its identities; or one by one, so that its triggers see them go. The
    /// two deletions differ in their wording alone.
    enum class Way { Truncate, Delete, DeleteFrom };

    QString table; ///< bare name
    Way way = Way::Truncate;
    QString where = {};  ///< a condition on them; "{NAME}" in it is the physical name of a table. Empty: all rows
    QString child = {};  ///< column that ties the table to `parent`: the rows go that are left without one
    QString parent = {}; ///< bare name of a table that is emptied before
    /// Of rows that all companies share and that hang on a record by the code in their column `child`: the bare name of
    /// the table of the records. Those go that hang on a record of this company and of no other.
    QString records = {};
    QString code = {};   ///< column of `records`
    bool atMost = false; ///< the procedure may leave some of them
};
/// What a reset deletes, in its order.
using Emptying = std::vector<Emptied>;

Emptying operator+(Emptying first, const Emptying& second);

/// Whole tables, truncated.
Emptying Truncated(const QStringList& tables);
/// Whole tables, row by row.
Emptying Deleted(const QStringList& tables);
/// The rows of a table that an import wrote.
/// @param further one more condition on them, without AND
Emptying DeletedImports(const QString& table, const QString& further = {});
/// The rows of tables that are left without a parent, whose RECORD_ID their column `child` holds.
Emptying DeletedOrphans(const QStringList& tables, const QString& child, const QString& parent);

/// The same, of a procedure that may leave some of those rows.
Emptying AtMost(Emptying emptying);

/// Empties, when the operator asked for it. Raises `SqlError`.
void Empty(ImportRun& run, bool reset, const Emptying& emptying);

/// Rows that a reset deletes from a table, as they stand before it.
struct RowsToDelete {
    QString table;       ///< physical name
    QString where = {};  ///< a condition on them; empty: all rows of the table
    bool atMost = false; ///< the procedure may leave some of them
};
/// What emptying will delete, in its order.
std::vector<RowsToDelete> RowsOf(Session& session, const Emptying& emptying);

} // namespace contract
