#pragma once

#include "sql/odbcApi.h"

#include <QVariant>

namespace odbc {

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

/// The kind of a type as ODBC numbers them; one that is not known is read as text. @param isWide whether the driver
/// gives any text in wide characters
ValueKind KindOf(int type, bool isUnsigned, bool isWide);
/// The column at a place (from 1) of the result of a statement.
Column Describe(SQLHSTMT statement, SQLUSMALLINT place, bool isWide);
/// Reads the value at a place (from 1) of the row under way; a null variant is the database's Null. Returns what the
/// driver returned; the value counts only when that is a success.
SQLRETURN ReadValue(SQLHSTMT statement, SQLUSMALLINT place, ValueKind kind, QVariant& value);

} // namespace odbc
