#pragma once

#include "sql/engines/odbc/odbcStatement.h"

#include <map>

/// The locks of a database that locks nothing but rows, for as long as a transaction lasts. A connection of its own
/// holds each: its transaction keeps a row of table QDX_LOCKS, and ends with the program, whichever way that ends.
class RowLocks {
public:
    /// @param makeTable statement that makes QDX_LOCKS; it may fail where the table is there
    explicit RowLocks(QString makeTable)
        : m_makeTable(std::move(makeTable)) {}
    ~RowLocks();
    RowLocks(const RowLocks&) = delete;
    RowLocks& operator=(const RowLocks&) = delete;

    /// Takes a lock over a connection that nobody else uses; false when another one has it. Raises `SqlError` when it
    /// cannot be asked for. @param rowName the name in the table, as a literal
    bool Take(std::shared_ptr<OdbcConnection> connection, const QString& name, const QString& rowName,
              const QString& holder);
    /// Lets it go. The table goes with its last row.
    void Release(const QString& name) noexcept;
    /// Raises `SqlError` when the connection of a lock has fallen: somebody else may have it by now.
    void Check();

private:
    struct Held {
        std::shared_ptr<OdbcConnection> connection;
        QString rowName;
    };
    std::map<QString, Held> m_held;
    QString m_makeTable;
};
