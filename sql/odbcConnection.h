#pragma once

#include "sql/engine.h"
#include "sql/errors.h"

#include <QSqlDatabase>
#include <QSqlError>

#include <atomic>

/// One ODBC connection of Qt Sql, under a name of its own that goes with it.
class OdbcConnection {
public:
    /// Connects. @param text connection string in the words of ODBC. Raises `SqlError` naming what was asked for.
    explicit OdbcConnection(const QString& text);
    ~OdbcConnection();
    OdbcConnection(const OdbcConnection&) = delete;
    OdbcConnection& operator=(const OdbcConnection&) = delete;

    QSqlDatabase& Database() { return m_database; }
    /// Connects again after the connection has fallen. Raises `SqlError`.
    void Reopen();
    /// Set by an interruption, read and taken back by the rows under way.
    std::atomic_bool Interrupted = false;

private:
    void Open();

    QString m_text;
    QString m_name;
    QSqlDatabase m_database;
};

/// Whether an error says that the connection has fallen.
bool IsLost(const QSqlError& error);

/// An error of Qt Sql with the driver's own words and code; a password that the words repeat is covered.
SqlError OdbcError(const QSqlError& error, const QString& statement);
