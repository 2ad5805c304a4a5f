#pragma once

#include "sql/engine.h"
#include "sql/sqliteStatements.h"

#include <QVector>

/// The rows of a prepared SQLite statement. Values get the kind of their declared column type: dates become QDate or
/// QDateTime, bits bool; a text that is no date stays a text, so that nothing is guessed.
class SqliteCursor final : public Cursor {
public:
    /// @param statement null for a text without a statement: no rows
    SqliteCursor(sqlite3* database, SqliteStatement statement, QString text);

    bool Next() override;
    const QStringList& Columns() const override;
    QVariant Value(int column) const override;

private:
    enum class Kind { Plain, Date, DateTime, Bit };
    static Kind KindOf(const char* declaredType);
    /// Reads names and kinds of the columns, which most look-ups never need: they find no row.
    void Describe() const;

    sqlite3* m_database;
    SqliteStatement m_statement;
    QString m_text;
    bool m_done = false;
    mutable QStringList m_columns;
    mutable QVector<Kind> m_kinds;
};
