#pragma once

#include "sql/engine.h"

/// Stands between a connection and its database where statements are written in other names than the database has. It
/// knows the engine only while it is asked something.
class NameLayout {
public:
    /// Runs a query that is in the names of the database.
    using Run = std::function<std::unique_ptr<Cursor>(const QString& query)>;

    virtual ~NameLayout() = default;
    /// Has a query run in the names of the database, and gives its rows the names that it was written in.
    /// Raises `ImportError` naming what cannot be said in the names of the database.
    virtual std::unique_ptr<Cursor> Query(const QString& query, Engine& engine, const Run& run) = 0;
    /// Whether `Query` runs a query as it is written, so that it need not be asked to.
    virtual bool LeavesAsItIs(const SqlText& query, Engine& engine) = 0;
    /// The columns of a table, by the names that statements are written in; empty when the database does not have it.
    virtual QVector<ColumnInfo> Columns(const QString& table, Engine& engine) = 0;
    /// The tables and views, by the names that statements are written in.
    virtual QStringList Tables(Engine& engine) = 0;
};
