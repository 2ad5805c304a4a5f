#pragma once

#include "core/Session.h"

#include <functional>

namespace contract {

/// The source row under way: its values by column name (case does not matter). A column that is not there raises
/// `SqlError` naming it and the query.
class SourceRow {
public:
    explicit SourceRow(const Recordset& rows)
        : m_rows(rows) {}

    /// The value as read; a null variant is Null.
    QVariant Value(QAnyStringView column) const { return m_rows.Value(column); }
    /// The value as text without surrounding blanks; empty for Null.
    QString Text(QAnyStringView column) const;
    /// Whether the text is empty.
    bool IsBlank(QAnyStringView column) const { return Text(column).isEmpty(); }
    bool HasColumn(QAnyStringView column) const { return m_rows.HasColumn(column); }
    /// Whether the source lacks some of the columns that are asked of it.
    bool HasMissing() const { return m_rows.HasMissing(); }
    /// Whether it lacks this one, which is Null for that reason.
    bool IsMissing(QAnyStringView column) const { return m_rows.IsMissing(column); }

private:
    const Recordset& m_rows;
};

/// The columns that files number their rows by; a source has one of them or none.
const QStringList& RowNumberColumns();

/// "tabella 'anagrafe', riga 214, codice 'C00012'", as far as the row tells: how messages name a source row.
/// @param keyColumn its code column; several are joined, separated by ", "
QString NameOf(const SourceRow& row, const QString& table, const QString& keyColumn);

/// The values of columns as one text, by which rows that belong together are told from others; empty without columns.
QString GroupText(const SourceRow& row, const QStringList& columns);

/// The date of a source column, with its time of day where it has one; Null when it is blank. Raises `ImportError`
/// naming the column when it is none.
QVariant DateOf(const SourceRow& row, const QString& column);

/// The day of digits "dMMyyyy", whose day has no leading zero: "5032024" is 5 March 2024. None for any other text.
std::optional<QDate> DayOfDigits(const QString& digits);

/// What a value of a source row is compared as in the source's own statements; a number is a Double, as is Null.
DataType TypeOf(const QVariant& value);
/// A value of a source row as a literal of the source's own statements.
QString LiteralOf(const ovConnection& source, const QVariant& value);

/// A column of days where conditions of the source's own statements compare it with `LiteralOf` a day. A SQLite file
/// keeps days as texts of any form: there it is the day as that literal has it, and Null for what is written neither
/// "2024-02-01 10:30" nor "20240201".
QString DayColumn(const ovConnection& source, const QString& column);

/// The condition on such a column that its day is not after (`"<="`) or not before (`">="`) another, or that it tells
/// none: Null, and a blank text in a SQLite file.
QString NoDayOr(const ovConnection& source, const QString& column, const QString& compared, const QDate& day);

/// Reads the source rows that belong to the one under way, such as the rows of a document, and hands each to `work`.
/// An `ImportError` gains the name of its row. @param table,keyColumn for that name
void ForEachChild(Session& session, const QString& query, const QString& table, const QString& keyColumn,
                  const std::function<void(const SourceRow&)>& work);

} // namespace contract
