#pragma once

#include "sql/engine.h"
#include "sql/engines/odbc/odbcConnection.h"
#include "sql/engines/odbc/odbcValue.h"
#include "sql/text/statementShape.h"

#include <memory>
#include <optional>
#include <vector>

/// A statement of an ODBC connection: run by its text, or prepared once and run with ever new values.
class OdbcStatement {
public:
    /// @param connection kept alive until the statement goes
    explicit OdbcStatement(std::shared_ptr<OdbcConnection> connection);
    ~OdbcStatement();
    OdbcStatement(const OdbcStatement&) = delete;
    OdbcStatement& operator=(const OdbcStatement&) = delete;

    /// Runs a text. Raises `SqlError` with `statement`, what the caller knows it by.
    void Run(const QString& text, const QString& statement);
    /// Runs a call of the API that gives rows, such as one of the catalog. Raises `SqlError` with `name`.
    template<class Call>
    void Run(const QString& name, const Call& call) requires std::is_invocable_v<Call, SQLHSTMT> {
        m_statement = name;
        Ran(m_connection->Running(Handle(), [&] { return call(Handle()); }));
    }
    /// Prepares a text with "?" for its values; false when the driver does not take it with that many. Raises
    /// `SqlError` with `statement`, what the caller knows it by, when the connection has fallen.
    bool Prepare(const QString& text, qsizetype values, const QString& statement);
    /// Runs the prepared text. Raises `SqlError` with `statement`, what the caller knows it by.
    void Run(const QVector<StatementShape::Value>& values, const StatementShape& statement);

    /// Whether what has run gives rows.
    bool HasRows() const { return m_columnCount > 0; }
    /// Rows changed by what has run; 0 for a query.
    qint64 RowsChanged() const { return HasRows() ? 0 : RowCount(); }
    /// Rows of the result that the driver holds; 0 when it does not tell.
    qint64 RowsHeld() const { return RowCount(); }
    /// Steps to the next row; false after the last one. Raises `SqlError`.
    bool Fetch();
    /// Goes on to the next result of a text of several statements; false behind the last one. Raises `SqlError`.
    bool NextResult();
    /// Columns of the result; described when first asked for.
    const QStringList& Columns() const;
    ColumnPositions& Positions() const { return m_positions; }
    /// Value of a column (from 0) of the row under way. Raises `SqlError`.
    QVariant Value(int column) const;
    /// Ends the rows, so that it can run again.
    void Close() noexcept;

private:
    /// A value that the statement is run with, at a place that the driver knows.
    struct Parameter {
        QByteArray bytes;
        QString text;
        qint64 number = 0;
        SQLLEN length = 0;
        const void* bound = nullptr; ///< where the driver looks
        SQLSMALLINT sqlType = 0;     ///< as what
    };

    /// Whether the connection has been opened anew since, which frees its statements.
    bool IsGone() const { return m_age != m_connection->Age(); }
    /// A handle that the API refuses when the statement is gone.
    SQLHSTMT Handle() const { return IsGone() ? nullptr : m_handle.Get(); }
    SqlError MakeError(const QString& statement) const;
    void Bind(SQLUSMALLINT place, Parameter& parameter, const StatementShape::Value& value);
    void Bind(SQLUSMALLINT place, Parameter& parameter, SQLSMALLINT type, SQLSMALLINT sqlType, void* data);
    void Ran(SQLRETURN result);
    qint64 RowCount() const;
    void Describe() const;
    QVariant Read(int column) const;

    std::shared_ptr<OdbcConnection> m_connection;
    odbc::Handle<SQL_HANDLE_STMT> m_handle;
    int m_age;
    bool m_inAnyOrder;
    QString Statement() const { return m_statement.isEmpty() ? m_parts.Text() : m_statement; }

    QString m_statement;    ///< under way; empty for a prepared one
    StatementShape m_parts; ///< of a prepared one
    std::vector<Parameter> m_parameters;
    SQLSMALLINT m_columnCount = 0;
    mutable QStringList m_columns;
    mutable QVector<odbc::ValueKind> m_kinds;
    mutable ColumnPositions m_positions;
    mutable std::vector<std::optional<QVariant>> m_row; ///< values read so far: a driver gives each but once
};
