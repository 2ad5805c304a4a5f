#pragma once

#include "sql/engine.h"

/// A query's rows, walked forward: `while (!rs.Eof()) { ... rs.MoveNext(); }`.
/// A fresh recordset stands on its first row. It streams: no more than one row is held.
class Recordset {
public:
    /// One column of the row under way.
    class Field {
    public:
        Field(const Cursor& cursor, int column)
            : m_cursor(cursor),
              m_column(column) {}
        /// A null variant is the database's Null.
        QVariant Value() const { return m_cursor.Value(m_column); }

    private:
        const Cursor& m_cursor;
        int m_column;
    };

    Recordset() = default;
    /// Takes over a cursor and steps to its first row. @param query the text, for error messages
    Recordset(std::unique_ptr<Cursor> cursor, QString query);
    Recordset(std::unique_ptr<Cursor> cursor, SqlText query);

    /// True after the last row, and on a closed recordset.
    bool Eof() const { return m_eof; }
    /// Steps to the next row. Raises `SqlError`.
    void MoveNext();
    /// True while open.
    bool State() const { return m_cursor != nullptr; }
    void Close();

    /// The column of that name (case does not matter) of the row under way. Raises `SqlError` naming the column and
    /// the query when there is no such column or no row.
    Field Fields(QAnyStringView name) const {
        const int column = IndexOf(name);
        return {*m_cursor, column};
    }
    Field Fields(int index) const;
    /// The value of a column (from 0) that is known to be there, while there is a row.
    QVariant ValueAt(int index) const { return m_cursor->Value(index); }
    /// Same as `Fields(name).Value()`.
    QVariant Value(QAnyStringView name) const { return Fields(name).Value(); }

    /// Names of the columns in the order of the result; empty on a closed recordset.
    QStringList Columns() const;
    bool HasColumn(QAnyStringView name) const;
    /// Whether there are columns that the database does not have: they are Null in every row.
    bool HasMissing() const { return m_cursor != nullptr && m_cursor->HasMissing(); }
    /// Whether the column of that name is one of them; false where the result does not have it.
    bool IsMissing(QAnyStringView name) const;
    QString Query() const { return m_query.isEmpty() ? m_parts.Text() : m_query; }

private:
    int IndexOf(QAnyStringView name) const;

    std::unique_ptr<Cursor> m_cursor;
    QString m_query; ///< empty for one whose values stand apart
    SqlText m_parts;
    bool m_eof = true;
};
