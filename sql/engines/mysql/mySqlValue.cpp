#include "sql/engines/mysql/mySqlValue.h"

#include "sql/numberText.h"

#include <QDateTime>

#include <mysql.h>

namespace mySqlValue {

namespace {

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

/// A value of a fixed size of the row under way; null for the database's Null.
template<class Raw>
QVariant Fixed(MYSQL_STMT* statement, unsigned column, enum_field_types type, bool isUnsigned = false) {
    Raw raw{};
    my_bool isNull = 0;
    MYSQL_BIND place{};
    place.buffer_type = type;
    place.buffer = &raw;
    place.buffer_length = sizeof(raw);
    place.is_null = &isNull;
    place.is_unsigned = static_cast<my_bool>(isUnsigned);
    mysql_stmt_fetch_column(statement, &place, column, 0);
    return isNull != 0 ? QVariant() : QVariant(raw);
}

/// The bytes of a value of any length of the row under way, as a text would bring them; null for the database's Null.
QByteArray Bytes(MYSQL_STMT* statement, unsigned column) {
    constexpr qsizetype UsualLength = 128;
    QByteArray bytes(UsualLength, Qt::Uninitialized);
    for (;;) {
        unsigned long length = 0;
        my_bool isNull = 0;
        MYSQL_BIND place{};
        place.buffer_type = MYSQL_TYPE_STRING;
        place.buffer = bytes.data();
        place.buffer_length = static_cast<unsigned long>(bytes.size());
        place.length = &length;
        place.is_null = &isNull;
        mysql_stmt_fetch_column(statement, &place, column, 0);
        if (isNull != 0) {
            return {};
        }
        const bool isWhole = length <= place.buffer_length;
        bytes.resize(static_cast<qsizetype>(length));
        if (isWhole) {
            return bytes;
        }
    }
}

} // namespace

QVariant OfText(const QByteArray& bytes, const MYSQL_FIELD& field) {
    const auto text = [&bytes] { return QString::fromUtf8(bytes); };
    switch (field.type) {
    case MYSQL_TYPE_TINY:
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_INT24:
    case MYSQL_TYPE_LONG:
    case MYSQL_TYPE_LONGLONG:
    case MYSQL_TYPE_YEAR:
        return Whole(text(), field);
    case MYSQL_TYPE_FLOAT:
    case MYSQL_TYPE_DOUBLE:
        return bytes.toDouble();
    case MYSQL_TYPE_DECIMAL:
    case MYSQL_TYPE_NEWDECIMAL:
        return NumberOfText(text());
    case MYSQL_TYPE_DATE:
        return OrText(QDate::fromString(text(), Qt::ISODate), text());
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
        return OrText(ReadMoment(text()), text());
    case MYSQL_TYPE_TIME:
        return OrText(QTime::fromString(text(), Qt::ISODateWithMs), text());
    case MYSQL_TYPE_BIT:
        return Bits(bytes, field);
    default:
        return field.charsetnr == BinaryCharset ? QVariant(QByteArray(bytes.constData(), bytes.size()))
                                                : QVariant(text());
    }
}

bool IsSamePrepared(const MYSQL_FIELD& field) { return field.type != MYSQL_TYPE_FLOAT; }

QVariant OfRow(MYSQL_STMT* statement, unsigned column, const MYSQL_FIELD& field) {
    switch (field.type) {
    case MYSQL_TYPE_TINY:
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_INT24:
    case MYSQL_TYPE_LONG:
        return Fixed<qlonglong>(statement, column, MYSQL_TYPE_LONGLONG);
    case MYSQL_TYPE_DOUBLE:
        return Fixed<double>(statement, column, MYSQL_TYPE_DOUBLE);
    default: {
        const QByteArray bytes = Bytes(statement, column);
        return bytes.isNull() ? QVariant() : OfText(bytes, field);
    }
    }
}

} // namespace mySqlValue
