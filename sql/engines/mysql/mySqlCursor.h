#pragma once

#include "sql/engines/mysql/mySqlConnection.h"

/// The rows of a MySQL result, read from the line one at a time.
class MySqlCursor final : public Cursor {
public:
    /// Takes over the result; null for a statement without one: no rows.
    MySqlCursor(std::shared_ptr<MySqlConnection> connection, st_mysql_res* result, QString statement);
    ~MySqlCursor() override;
    MySqlCursor(const MySqlCursor&) = delete;
    MySqlCursor& operator=(const MySqlCursor&) = delete;

    bool Next() override;
    const QStringList& Columns() const override { return m_columns; }
    QVariant Value(int column) const override;

private:
    void Release() noexcept;

    std::shared_ptr<MySqlConnection> m_connection;
    st_mysql_res* m_result;
    QString m_statement;
    QStringList m_columns;
    char** m_row = nullptr;
    const unsigned long* m_lengths = nullptr;
};
