#pragma once

#include "sql/Recordset.h"

namespace contract {

/// The source row under way: its values by column name (case does not matter). A column that is not there raises
/// `SqlError` naming it and the query.
class SourceRow {
public:
    explicit SourceRow(const Recordset& rows)
        : m_rows(rows) {}

    /// The value as read; a null variant is Null.
    QVariant Value(const QString& column) const { return m_rows.Value(column); }
    /// The value as text without surrounding blanks; empty for Null.
    QString Text(const QString& column) const;
    /// Whether the text is empty.
    bool IsBlank(const QString& column) const { return Text(column).isEmpty(); }
    bool HasColumn(const QString& column) const { return m_rows.HasColumn(column); }

private:
    const Recordset& m_rows;
};

} // namespace contract
