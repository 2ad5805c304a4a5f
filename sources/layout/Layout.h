#pragma once

#include "sources/layout/LayoutTable.h"
#include "sql/NameLayout.h"

namespace sources {

struct QueryPlan;

/// The layout of a source: how the names that queries are written in, the logical ones, are called there, which columns
/// are not there, and which rows of a table alone are read. Names are compared without case.
class Layout final : public NameLayout {
public:
    Layout();
    ~Layout() override;
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    /// Makes columns known as those of a table: a column without a table in a query over several belongs to the one
    /// that is known to have it.
    void Know(const QString& table, const QStringList& columns);
    /// @param name as the source calls the table, may be with an owner and brackets: "dbo.[Clienti e fornitori]"
    void CallTable(const QString& table, const QString& name);
    /// @param name as the source calls the column; empty: it is not there, and is Null wherever it is read
    void CallColumn(const QString& table, const QString& column, const QString& name);
    /// Only the rows of a table are read that fulfil a condition, which is in the names of the source.
    void Filter(const QString& table, const QString& condition);
    /// A column is read by each query over the table that lists plain columns, also where its list does not have it.
    void ReadAlso(const QString& table, const QString& column);

    /// The table of that logical name; null when nothing is known of it.
    const LayoutTable* Find(const QString& table) const;
    /// "table.column" in the names of the source for each pair of logical ones, and so for tables alone.
    QStringList InSource(const QStringList& names) const;

    std::unique_ptr<Cursor> Query(const QString& query, Engine& engine, const Run& run) override;
    bool LeavesAsItIs(const SqlText& query, Engine& engine) override;
    QVector<ColumnInfo> Columns(const QString& table, Engine& engine) override;
    QStringList Tables(Engine& engine) override;

private:
    LayoutTable& Known(const QString& table);

    QHash<QString, LayoutTable> m_tables;                     ///< by logical name in upper case
    QHash<QString, std::shared_ptr<const QueryPlan>> m_plans; ///< by the text without its literals
    QHash<QByteArray, bool> m_isLeft;                         ///< whether queries are run as they are, by their shape
};

} // namespace sources
