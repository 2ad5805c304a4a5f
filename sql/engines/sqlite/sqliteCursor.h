#pragma once

#include "sql/engine.h"
#include "sql/engines/sqlite/sqliteStatements.h"

/// The rows of a prepared SQLite statement. Values get the kind of their declared column type: dates become QDate or
/// QDateTime, bits bool; a text that is no date stays a text, so that nothing is guessed.
class SqliteCursor final : public Cursor {
public:
    /// @param statement null for a text without a statement: no rows
    SqliteCursor(sqlite3* database, SqliteStatement statement);

    bool Next() override;
    const QStringList& Columns() const override;
    int IndexOf(QAnyStringView name) const override;
    QVariant Value(int column) const override;

private:
    sqlite3* m_database;
    SqliteStatement m_statement;
    bool m_hasRow = false; ///< one has been read: the columns are known
    bool m_done = false;
};
