#pragma once

#include "sources/layout/Layout.h"
#include "sources/layout/queryParts.h"

namespace sources {

/// What takes the place of a literal in the text of a plan.
constexpr QChar LiteralMark(u'\x01');

/// How the queries of one form, which differ in their literals alone, are said in the names of the source.
struct QueryPlan {
    /// One column of the result, or all those of a table.
    struct Columns {
        QString name;                               ///< of the column; empty: as the source calls it
        const LayoutTable* table = nullptr;         ///< null: one column
        std::vector<const LayoutTable*> inner = {}; ///< of a query in parentheses: the tables in it
        bool isAll = false;
        bool isMissing = false; ///< one column that the source does not have
    };

    bool isSame = true; ///< the query means the same in the source
    QString text;       ///< with a mark for each literal
    std::vector<Columns> columns;
    mutable QStringList columnsOfSource; ///< of the last result
    mutable LayoutTable::Names names;    ///< what they are called
    mutable std::vector<bool> isMissing; ///< by column of the result, with those that it has by another name alone
};

/// Raises `ImportError` for a column that may be of several tables, and for one that is not there where the query
/// cannot do without it.
QueryPlan PlanOf(const Layout& layout, const QString& query, const QVector<StatementToken>& tokens, Dialect dialect);

/// The rows of a query under the logical names.
std::unique_ptr<Cursor> NamedCursor(std::unique_ptr<Cursor> cursor, std::shared_ptr<const QueryPlan> plan,
                                    Engine& engine);

} // namespace sources
