#include "sql/odbcCursor.h"

#include "sql/numberText.h"
#include "sql/odbcConnection.h"

#include <QSqlField>
#include <QSqlRecord>

namespace {
// Types of columns as ODBC numbers them.
constexpr int SqlNumeric = 2;
constexpr int SqlDecimal = 3;
constexpr int SqlBit = -7;

OdbcCursor::Kind KindOf(int type) {
    if (type == SqlNumeric || type == SqlDecimal) {
        return OdbcCursor::Kind::Decimal;
    }
    return type == SqlBit ? OdbcCursor::Kind::Bit : OdbcCursor::Kind::Plain;
}

} // namespace

OdbcCursor::OdbcCursor(std::shared_ptr<OdbcConnection> connection, QSqlQuery query, QString statement)
    : m_connection(std::move(connection)),
      m_query(std::move(query)),
      m_statement(std::move(statement)) {
    const QSqlRecord record = m_query.record();
    for (int column = 0; column < record.count(); ++column) {
        const QSqlField field = record.field(column);
        m_columns.append(field.name());
        m_kinds.append(KindOf(field.typeID()));
    }
}

OdbcCursor::~OdbcCursor() { m_query.clear(); }

bool OdbcCursor::Next() {
    m_row.clear();
    if (m_connection->Interrupted.exchange(false)) {
        throw SqlError(m_statement, QStringLiteral("interrotto"));
    }
    if (m_query.isSelect() && m_query.next()) {
        return true;
    }
    if (m_query.lastError().isValid()) {
        throw OdbcError(m_query.lastError(), m_statement);
    }
    return false;
}

QVariant OdbcCursor::Value(int column) const {
    if (column < 0 || column >= m_columns.size()) {
        return {};
    }
    while (m_row.size() <= column) {
        m_row.append(Read(static_cast<int>(m_row.size())));
    }
    return m_row.at(column);
}

QVariant OdbcCursor::Read(int column) const {
    const bool isDecimal = m_kinds.at(column) == Kind::Decimal;
    m_query.setNumericalPrecisionPolicy(isDecimal ? QSql::HighPrecision : QSql::LowPrecisionDouble);
    const QVariant value = m_query.value(column);
    if (value.isNull()) {
        return {};
    }
    if (m_kinds.at(column) == Kind::Bit) {
        return value.toBool();
    }
    switch (value.typeId()) {
    case QMetaType::QString:
        return isDecimal ? NumberOfText(value.toString()) : value;
    case QMetaType::Int:
    case QMetaType::UInt:
        return value.toLongLong();
    case QMetaType::QDateTime: {
        // As written: an hour that clocks skip is a time like any other.
        const QDateTime moment = value.toDateTime();
        return QDateTime(moment.date(), moment.time(), Qt::UTC);
    }
    default:
        return value;
    }
}
