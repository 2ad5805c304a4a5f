#pragma once

#include "sql/engines/odbc/odbcStatement.h"

/// The rows of a query over ODBC, read forward.
class OdbcCursor final : public Cursor {
public:
    /// Takes a statement that has run, and lets it go when the rows are no longer read.
    /// @param text makes its text, which an error alone needs
    OdbcCursor(std::shared_ptr<OdbcConnection> connection, std::shared_ptr<OdbcStatement> statement,
               std::function<QString()> text)
        : m_connection(std::move(connection)),
          m_statement(std::move(statement)),
          m_text(std::move(text)) {}
    ~OdbcCursor() override { m_statement->Close(); }
    OdbcCursor(const OdbcCursor&) = delete;
    OdbcCursor& operator=(const OdbcCursor&) = delete;

    bool Next() override {
        if (m_connection->TakeInterruption()) {
            throw SqlError(m_text(), QStringLiteral("interrotto"));
        }
        return m_statement->Fetch();
    }
    const QStringList& Columns() const override { return m_statement->Columns(); }
    int IndexOf(QAnyStringView name) const override { return m_statement->Positions().Of(name, Columns()); }
    QVariant Value(int column) const override { return m_statement->Value(column); }

private:
    std::shared_ptr<OdbcConnection> m_connection;
    std::shared_ptr<OdbcStatement> m_statement;
    std::function<QString()> m_text;
};
