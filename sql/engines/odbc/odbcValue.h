#pragma once

#include "sql/engines/odbc/odbcApi.h"

#include <QVariant>

namespace odbc {

/// How a driver gives texts.
enum class TextForm {
    Wide,   ///< in wide characters, whatever the column's type
    Narrow, ///< in wide ones where the type is wide, else in bytes
    Utf8    ///< in bytes of UTF-8, whatever the type
};

/// How the values of a column are read: the digits of a decimal must not pass through a double.
enum class ValueKind {
    Text,
    NarrowText,
    Bytes,
    Bit,
    Integer,
    UnsignedInteger,
    Big,
    UnsignedBig,
    Real,
    Decimal,
    Date,
    Time,
    Moment
};

/// A column of a result.
struct Column {
    QString name;
    ValueKind kind = ValueKind::Text;
};

/// The kind of a type as ODBC numbers them; one that is not known is read as text. @param form of the driver's texts
ValueKind KindOf(int type, bool isUnsigned, TextForm form);
/// The column at a place (from 1) of the result of a statement.
Column Describe(SQLHSTMT statement, SQLUSMALLINT place, TextForm form);
// Date, time, and both, as the driver gives them; the text of one that is none ("0000-00-00").
QVariant DayOf(const SQL_DATE_STRUCT& raw);
QVariant TimeOf(const SQL_TIME_STRUCT& raw);
QVariant MomentOf(const SQL_TIMESTAMP_STRUCT& raw);
/// Reads the value at a place (from 1) of the row under way; a null variant is the database's Null. Returns what the
/// driver returned; the value counts only when that is a success.
SQLRETURN ReadValue(SQLHSTMT statement, SQLUSMALLINT place, ValueKind kind, QVariant& value);

} // namespace odbc
