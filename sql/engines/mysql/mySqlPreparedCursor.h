#pragma once

#include "sql/engines/mysql/mySqlStatement.h"

/// The rows of a prepared statement, read from the line one at a time.
class MySqlPreparedCursor final : public Cursor {
public:
    /// Takes a statement that has run, and lets it go when the rows are no longer read.
    explicit MySqlPreparedCursor(std::shared_ptr<MySqlStatement> statement)
        : m_statement(std::move(statement)) {}
    ~MySqlPreparedCursor() override { m_statement->Close(); }
    MySqlPreparedCursor(const MySqlPreparedCursor&) = delete;
    MySqlPreparedCursor& operator=(const MySqlPreparedCursor&) = delete;

    bool Next() override { return m_statement->Fetch(); }
    const QStringList& Columns() const override { return m_statement->Columns(); }
    int IndexOf(QAnyStringView name) const override { return m_statement->Positions().Of(name, Columns()); }
    QVariant Value(int column) const override { return m_statement->Value(column); }

private:
    std::shared_ptr<MySqlStatement> m_statement;
};
