#pragma once

#include "sources/DbfMemo.h"

namespace sources {

/// A value of a table's record.
struct DbfValue {
    enum class Kind { Null, Text, Integer, Real };
    Kind kind = Kind::Null;
    QByteArrayView text; ///< UTF-8, valid until the next value is read
    qint64 integer = 0;
    double real = 0;
};

/// Reads the values of a table's columns.
///
/// Texts lose their trailing blanks and nothing else. Dates come as text "yyyyMMdd", times as "yyyyMMdd hh:mm:ss" (to
/// the second), as in the embedded database, logical values as 1 and 0. What is no value of the column's type (a date
/// of 45 December, "10+5" or
/// "****" in a number) comes as the text that stands in the file. Numbers are as exact as in FoxPro: whole ones to 18
/// digits, others to 15 digits.
class DbfValues {
public:
    explicit DbfValues(DbfFile& table)
        : m_table(table),
          m_memo(table) {}

    /// The value of a column in the record under way. Raises `ImportError` naming file, row and column for a memo that
    /// cannot be read and for bytes that are no text in the table's code page.
    DbfValue Read(const DbfField& field);

    /// Whether columns of this type are read. Pictures, objects and binary data (G, P, W, Q) are not: such a column
    /// is left out of the table, so that asking for it is an error.
    static bool IsReadable(const DbfField& field);
    /// The column type that such values are kept under, e.g. "CHAR(40)", "NUMERIC(12,2)", "DATE TEXT",
    /// "BIT".
    static QString DeclaredType(const DbfField& field);

private:
    DbfValue Text(QByteArrayView bytes);
    DbfValue Number(QByteArrayView bytes);
    DbfValue Logical(QByteArrayView bytes);
    DbfValue Date(QByteArrayView bytes);
    DbfValue DateTime(QByteArrayView bytes);
    DbfValue Double(QByteArrayView bytes);
    DbfValue ReadRaw(const DbfField& field);
    DbfValue Scratch(QByteArray text);

    DbfFile& m_table;
    DbfMemo m_memo;
    QByteArray m_text;
};

} // namespace sources
