#include "sql/engines/odbc/odbcValue.h"

#include "sql/numberText.h"

#include <QDateTime>

#include <algorithm>

namespace odbc {

namespace {

/// Reads a value of a fixed size; `toVariant` is called unless it is Null.
template<class Raw, class ToVariant>
SQLRETURN ReadFixed(SQLHSTMT statement, SQLUSMALLINT place, SQLSMALLINT type, QVariant& value,
                    const ToVariant& toVariant) {
    Raw raw{};
    SQLLEN length = 0;
    const SQLRETURN result = SQLGetData(statement, place, type, &raw, sizeof(raw), &length);
    if (SQL_SUCCEEDED(result) && length != SQL_NULL_DATA) {
        value = toVariant(raw);
    }
    return result;
}

/// Reads a value of any length into a string or an array of bytes, which stays null for the database's Null.
/// @param terminator units that the driver writes behind the value
template<class Sequence>
SQLRETURN ReadLong(SQLHSTMT statement, SQLUSMALLINT place, SQLSMALLINT type, qsizetype terminator, Sequence& value) {
    constexpr qsizetype Unit = sizeof(typename Sequence::value_type);
    constexpr qsizetype FirstRoom = 256;
    constexpr qsizetype MostAtOnce = 16 << 20;
    qsizetype used = 0;
    for (qsizetype room = FirstRoom;;) {
        value.resize(used + room + terminator);
        SQLLEN length = 0;
        const SQLRETURN result = SQLGetData(statement, place, type, value.data() + used,
                                            static_cast<SQLLEN>((room + terminator) * Unit), &length);
        if (!SQL_SUCCEEDED(result) || length == SQL_NULL_DATA) {
            const bool isEnd = result == SQL_NO_DATA && used > 0;
            isEnd ? value.resize(used) : static_cast<void>(value = Sequence());
            return isEnd ? SQLRETURN(SQL_SUCCESS) : result;
        }
        const qsizetype told = length < 0 ? room + 1 : length / Unit;
        const bool isWhole = result == SQL_SUCCESS || told <= room;
        used += std::min(told, room);
        if (isWhole) {
            value.resize(used);
            return SQL_SUCCESS;
        }
        room = std::min(MostAtOnce, length < 0 ? room * 2 : told - room);
    }
}

SQLRETURN ReadText(SQLHSTMT statement, SQLUSMALLINT place, QVariant& value) {
    QString text;
    const SQLRETURN result = ReadLong(statement, place, SQL_C_WCHAR, 1, text);
    value = text.isNull() ? QVariant() : QVariant(text);
    return result;
}

SQLRETURN ReadNarrowText(SQLHSTMT statement, SQLUSMALLINT place, QVariant& value) {
    QByteArray bytes;
    const SQLRETURN result = ReadLong(statement, place, SQL_C_CHAR, 1, bytes);
    value = bytes.isNull() ? QVariant() : QVariant(QString::fromUtf8(bytes));
    return result;
}

SQLRETURN ReadBytes(SQLHSTMT statement, SQLUSMALLINT place, QVariant& value) {
    QByteArray bytes;
    const SQLRETURN result = ReadLong(statement, place, SQL_C_BINARY, 0, bytes);
    value = bytes.isNull() ? QVariant() : QVariant(bytes);
    return result;
}

/// Two digits or more.
QString Digits(int number, int places = 2) { return QStringLiteral("%1").arg(number, places, 10, QChar(u'0')); }

QString DayText(int year, int month, int day) {
    constexpr int PlacesOfYear = 4;
    return Digits(year, PlacesOfYear) + u'-' + Digits(month) + u'-' + Digits(day);
}

QString TimeText(int hour, int minute, int second) {
    return Digits(hour) + u':' + Digits(minute) + u':' + Digits(second);
}

/// The value, or its text when it is none ("0000-00-00"): whoever reads it names the row.
template<class Temporal>
QVariant OrText(const Temporal& value, const QString& text) {
    return value.isValid() ? QVariant(value) : QVariant(text);
}

} // namespace

QVariant DayOf(const SQL_DATE_STRUCT& raw) {
    return OrText(QDate(raw.year, raw.month, raw.day), DayText(raw.year, raw.month, raw.day));
}

QVariant TimeOf(const SQL_TIME_STRUCT& raw) {
    return OrText(QTime(raw.hour, raw.minute, raw.second), TimeText(raw.hour, raw.minute, raw.second));
}

/// As written: an hour that clocks skip is a time like any other.
QVariant MomentOf(const SQL_TIMESTAMP_STRUCT& raw) {
    constexpr int NanosecondsOfMillisecond = 1'000'000;
    const QDateTime moment(
        QDate(raw.year, raw.month, raw.day),
        QTime(raw.hour, raw.minute, raw.second, static_cast<int>(raw.fraction / NanosecondsOfMillisecond)), Qt::UTC);
    return OrText(moment, DayText(raw.year, raw.month, raw.day) + u' ' + TimeText(raw.hour, raw.minute, raw.second));
}

ValueKind KindOf(int type, bool isUnsigned, TextForm form) {
    switch (type) {
    case SQL_BIT:
        return ValueKind::Bit;
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
        return isUnsigned ? ValueKind::UnsignedInteger : ValueKind::Integer;
    case SQL_BIGINT:
        return isUnsigned ? ValueKind::UnsignedBig : ValueKind::Big;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
        return ValueKind::Real;
    case SQL_NUMERIC:
    case SQL_DECIMAL:
        return ValueKind::Decimal;
    case SQL_DATE: // as drivers of ODBC 2 number it, and so below
    case SQL_TYPE_DATE:
        return ValueKind::Date;
    case SQL_TIME:
    case SQL_TYPE_TIME:
        return ValueKind::Time;
    case SQL_TIMESTAMP:
    case SQL_TYPE_TIMESTAMP:
        return ValueKind::Moment;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
        return ValueKind::Bytes;
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_LONGVARCHAR:
        return form == TextForm::Wide ? ValueKind::Text : ValueKind::NarrowText;
    default:
        return form == TextForm::Utf8 ? ValueKind::NarrowText : ValueKind::Text;
    }
}

Column Describe(SQLHSTMT statement, SQLUSMALLINT place, TextForm form) {
    constexpr SQLSMALLINT Longest = 256;
    SQLWCHAR name[Longest] = {};
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLDescribeColW(statement, place, name, Longest, &length, &type, nullptr, nullptr, nullptr);
    SQLLEN isUnsigned = SQL_FALSE;
    if (type == SQL_TINYINT || type == SQL_SMALLINT || type == SQL_INTEGER || type == SQL_BIGINT) {
        SQLColAttributeW(statement, place, SQL_DESC_UNSIGNED, nullptr, 0, nullptr, &isUnsigned);
    }
    const auto units = std::clamp<SQLSMALLINT>(length, 0, Longest - 1);
    return {Text(name, units), KindOf(type, isUnsigned == SQL_TRUE, form)};
}

SQLRETURN ReadValue(SQLHSTMT statement, SQLUSMALLINT place, ValueKind kind, QVariant& value) {
    const auto as = [](const auto& raw) { return QVariant(raw); };
    const auto asLongLong = [](const auto& raw) { return QVariant(static_cast<qlonglong>(raw)); };
    switch (kind) {
    case ValueKind::Bytes:
        return ReadBytes(statement, place, value);
    case ValueKind::Bit:
        return ReadFixed<SQLCHAR>(statement, place, SQL_C_BIT, value, [](SQLCHAR bit) { return QVariant(bit != 0); });
    case ValueKind::Integer:
        return ReadFixed<SQLINTEGER>(statement, place, SQL_C_SLONG, value, asLongLong);
    case ValueKind::UnsignedInteger:
        return ReadFixed<SQLUINTEGER>(statement, place, SQL_C_ULONG, value, asLongLong);
    case ValueKind::Big:
        return ReadFixed<qlonglong>(statement, place, SQL_C_SBIGINT, value, as);
    case ValueKind::UnsignedBig:
        return ReadFixed<qulonglong>(statement, place, SQL_C_UBIGINT, value, as);
    case ValueKind::Real:
        return ReadFixed<double>(statement, place, SQL_C_DOUBLE, value, as);
    case ValueKind::Date:
        return ReadFixed<SQL_DATE_STRUCT>(statement, place, SQL_C_TYPE_DATE, value, DayOf);
    case ValueKind::Time:
        return ReadFixed<SQL_TIME_STRUCT>(statement, place, SQL_C_TYPE_TIME, value, TimeOf);
    case ValueKind::Moment:
        return ReadFixed<SQL_TIMESTAMP_STRUCT>(statement, place, SQL_C_TYPE_TIMESTAMP, value, MomentOf);
    case ValueKind::Text:
        return ReadText(statement, place, value);
    case ValueKind::NarrowText:
    case ValueKind::Decimal:
        break;
    }
    const SQLRETURN result = ReadNarrowText(statement, place, value);
    if (kind == ValueKind::Decimal && !value.isNull()) {
        value = NumberOfText(value.toString());
    }
    return result;
}

} // namespace odbc
