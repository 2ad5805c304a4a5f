#pragma once

#include "sql/engines/mysql/mySqlConnection.h"
#include "sql/text/statementShape.h"

#include <memory>
#include <vector>

struct st_mysql_bind;
struct st_mysql_stmt;

/// A statement that a MySQL or MariaDB server has prepared, run with ever new values.
class MySqlStatement {
public:
    /// @param connection kept alive until the statement goes
    explicit MySqlStatement(std::shared_ptr<MySqlConnection> connection);
    ~MySqlStatement();
    MySqlStatement(const MySqlStatement&) = delete;
    MySqlStatement& operator=(const MySqlStatement&) = delete;

    /// Prepares a text with "?" for its values; false when the server does not take it with that many, or when the
    /// text itself would give other values. Raises `SqlError` with `statement`, what the caller knows it by, when the
    /// connection has fallen.
    bool Prepare(const QByteArray& text, qsizetype values, const QString& statement);
    /// Runs it; false when it would give other columns by now than when it was prepared. Raises `SqlError` with
    /// `statement`, what the caller knows it by.
    bool Run(const QVector<StatementShape::Value>& values, const StatementShape& statement);
    /// Rows changed by the last run.
    qint64 RowsChanged() const;
    /// Identity value given by the last run; 0 when it gave none.
    qint64 InsertId() const;

    /// Steps to the next row of the last run; false after the last one. Raises `SqlError`.
    bool Fetch();
    /// Columns of the result, in their order.
    const QStringList& Columns() const { return m_columns; }
    ColumnPositions& Positions() { return m_positions; }
    /// Value of a column (from 0) of the row under way.
    QVariant Value(int column) const;
    /// Ends the rows, so that it can run again; a long rest is stopped at the server.
    void Close() noexcept;

private:
    bool Describe();
    bool GivesSameColumns() const;
    static void Bind(st_mysql_bind& place, const StatementShape::Value& value);
    SqlError MakeError(const QString& statement);

    std::shared_ptr<MySqlConnection> m_connection;
    st_mysql_stmt* m_handle;
    StatementShape m_statement; ///< under way, as it was written
    QStringList m_columns;
    QByteArrayList m_names; ///< those of the columns as the server writes them
    ColumnPositions m_positions;
    bool m_hasRow = false;
    bool m_isAtEnd = true;
};
