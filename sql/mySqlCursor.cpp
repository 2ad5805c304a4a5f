#include "sql/mySqlCursor.h"

#include "sql/numberText.h"

#include <QDateTime>

#include <mysql.h>

namespace {

constexpr int RowsWorthReading = 1000;
constexpr unsigned BinaryCharset = 63;

QVariant Whole(const QString& text, const MYSQL_FIELD& field) {
    return (field.flags & UNSIGNED_FLAG) != 0 && text.size() > 18 ? QVariant(text.toULongLong())
                                                                  : QVariant(text.toLongLong());
}

/// A bit column comes as its bytes, the highest first; one bit is a yes or a no.
QVariant Bits(const QByteArray& bytes, const MYSQL_FIELD& field) {
    qulonglong number = 0;
    for (const char byte : bytes) {
        number = (number << 8U) | static_cast<unsigned char>(byte);
    }
    return field.length == 1 ? QVariant(number != 0) : QVariant(number);
}

/// The value, or the text itself when it is none ("0000-00-00").
template<class Temporal>
QVariant OrText(const Temporal& value, const QString& text) {
    return value.isValid() ? QVariant(value) : QVariant(text);
}

/// "2024-03-05 10:20:30" as written: an hour that clocks skip is a time like any other.
QDateTime ReadMoment(const QString& text) {
    const QDate day = QDate::fromString(text.left(10), Qt::ISODate);
    const QTime time = QTime::fromString(text.mid(11), Qt::ISODateWithMs);
    return day.isValid() && time.isValid() ? QDateTime(day, time, Qt::UTC) : QDateTime();
}

QVariant ReadValue(const QByteArray& bytes, const MYSQL_FIELD& field) {
    const QString text = QString::fromUtf8(bytes);
    switch (field.type) {
    case MYSQL_TYPE_TINY:
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_INT24:
    case MYSQL_TYPE_LONG:
    case MYSQL_TYPE_LONGLONG:
    case MYSQL_TYPE_YEAR:
        return Whole(text, field);
    case MYSQL_TYPE_FLOAT:
    case MYSQL_TYPE_DOUBLE:
        return text.toDouble();
    case MYSQL_TYPE_DECIMAL:
    case MYSQL_TYPE_NEWDECIMAL:
        return NumberOfText(text);
    case MYSQL_TYPE_DATE:
        return OrText(QDate::fromString(text, Qt::ISODate), text);
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
        return OrText(ReadMoment(text), text);
    case MYSQL_TYPE_TIME:
        return OrText(QTime::fromString(text, Qt::ISODateWithMs), text);
    case MYSQL_TYPE_BIT:
        return Bits(bytes, field);
    default:
        return field.charsetnr == BinaryCharset ? QVariant(QByteArray(bytes.constData(), bytes.size()))
                                                : QVariant(text);
    }
}

} // namespace

MySqlCursor::MySqlCursor(std::shared_ptr<MySqlConnection> connection, st_mysql_res* result, QString statement)
    : m_connection(std::move(connection)),
      m_result(result),
      m_statement(std::move(statement)) {
    const unsigned count = m_result == nullptr ? 0 : mysql_num_fields(m_result);
    for (unsigned column = 0; column < count; ++column) {
        m_columns.append(QString::fromUtf8(mysql_fetch_field_direct(m_result, column)->name));
    }
}

MySqlCursor::~MySqlCursor() {
    if (m_result != nullptr) {
        SkipRest();
        Release();
    }
}

/// The line is free only when the last row has been read: a long rest is stopped at the server.
void MySqlCursor::SkipRest() noexcept {
    for (int row = 0; row < RowsWorthReading; ++row) {
        if (mysql_fetch_row(m_result) == nullptr) {
            return;
        }
    }
    m_connection->Kill();
}

void MySqlCursor::Release() noexcept {
    mysql_free_result(m_result);
    m_result = nullptr;
    m_row = nullptr;
    m_connection->DropFurtherResults();
}

bool MySqlCursor::Next() {
    if (m_result == nullptr) {
        return false;
    }
    m_row = mysql_fetch_row(m_result);
    if (m_row != nullptr) {
        m_lengths = mysql_fetch_lengths(m_result);
        return true;
    }
    const bool failed = m_connection->ErrorCode() != 0;
    const SqlError error = m_connection->MakeError(m_statement);
    Release();
    if (failed) {
        throw error;
    }
    return false;
}

QVariant MySqlCursor::Value(int column) const {
    if (m_row == nullptr || column < 0 || column >= m_columns.size() || m_row[column] == nullptr) {
        return {};
    }
    const QByteArray bytes = QByteArray::fromRawData(m_row[column], static_cast<qsizetype>(m_lengths[column]));
    return ReadValue(bytes, *mysql_fetch_field_direct(m_result, static_cast<unsigned>(column)));
}
