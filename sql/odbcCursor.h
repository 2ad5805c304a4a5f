#pragma once

#include "sql/engine.h"

#include <QSqlQuery>

class OdbcConnection;

/// The rows of a query that Qt Sql reads forward.
class OdbcCursor final : public Cursor {
public:
    /// How the values of a column are read: the digits of a decimal must not pass through a double.
    enum class Kind { Plain, Decimal, Bit };

    /// @param connection kept alive until the cursor goes
    OdbcCursor(std::shared_ptr<OdbcConnection> connection, QSqlQuery query, QString statement);
    ~OdbcCursor() override;
    OdbcCursor(const OdbcCursor&) = delete;
    OdbcCursor& operator=(const OdbcCursor&) = delete;

    bool Next() override;
    const QStringList& Columns() const override { return m_columns; }
    QVariant Value(int column) const override;

private:
    QVariant Read(int column) const;

    std::shared_ptr<OdbcConnection> m_connection;
    mutable QSqlQuery m_query;
    QString m_statement;
    QStringList m_columns;
    QVector<Kind> m_kinds;
    mutable QVector<QVariant> m_row; ///< values read so far: a driver gives them in their order only
};
