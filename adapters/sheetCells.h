#pragma once

#include "sql/ovConnection.h"

/// Cells of a sheet that has been opened as a table with letters as columns (`sources::SheetTable`, no header row).
namespace sheetCells {

/// A value of a cell as the data type wants it: a text, empty for a cell without anything; a number, 0 for it; a date
/// as text "yyyyMMdd", with a time of day "yyyyMMdd hh:mm:ss", empty for it. Raises `ImportError` for what is no date
/// or no number.
QVariant ValueAs(const QVariant& value, DataType type);

/// The value of one cell as the data type wants it: see `ValueAs`.
/// @param table the sheet's table @param row,column from 1
/// Raises `ImportError` naming row and column for what is no date or no number.
QVariant GetXlsValue(ovConnection& source, const QString& table, qint64 row, int column, DataType type);

/// The column, from 1, whose cell in the first row is a field's name, in any case and without surrounding blanks, among
/// the first 200; 0 when there is none.
int GetColumn(ovConnection& source, const QString& table, const QString& field);

} // namespace sheetCells
