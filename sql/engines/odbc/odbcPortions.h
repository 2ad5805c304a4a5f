#pragma once

#include "sql/engines/odbc/odbcStatement.h"

/// The rows of a long query from a MariaDB server whose ODBC driver holds every result whole: the server puts them
/// aside in a temporary table, as they are at that moment, and they are read from there in portions. The table asks for
/// nothing but the right to have temporary ones, and a transaction that is taken back leaves it as it is.
class OdbcPortions final : public Cursor {
public:
    /// Lets the server put the rows of a query aside. @param text the query in the server's own words
    /// @param statement what the caller knows it by. Raises `SqlError` when the server does not.
    OdbcPortions(std::shared_ptr<OdbcConnection> connection, const QString& text, QString statement);
    ~OdbcPortions() override;
    OdbcPortions(const OdbcPortions&) = delete;
    OdbcPortions& operator=(const OdbcPortions&) = delete;

    bool Next() override;
    const QStringList& Columns() const override { return m_columns; }
    QVariant Value(int column) const override;

private:
    class Writing;

    void ReadPortion();

    std::shared_ptr<OdbcConnection> m_connection;
    QString m_statement;
    QString m_table;
    OdbcStatement m_portion;
    QStringList m_columns;
    qint64 m_last = 0;
    bool m_hasRow = false;
};
