#pragma once

#include "adapters/contract/run/SourceRow.h"
#include "sql/ovConnection.h"

/// Cells of a sheet whose first row names its columns (`sources::SheetTable`).
namespace sheetCells {

/// The value of a cell of the row under way as the data type wants it: a text, empty for a cell without anything; a
/// number, 0 for it; a yes or a no as the number 1 or 0 (`IsYes`); a date as text "yyyyMMdd", with a time of day
/// "yyyyMMdd hh:mm:ss", empty for it.
/// @param column its name Raises `ImportError` naming the column for what is no date, no number, no yes and no no.
QVariant GetXlsValue(const contract::SourceRow& row, const QString& column, DataType type);

/// Whether a cell of the row under way says yes, as people write it: 1, -1, true, vero, sì, si, s, y, x in any case; 0,
/// false, falso, no, n and a cell without anything say no. Raises `ImportError` naming column and value for any other.
bool IsYes(const contract::SourceRow& row, const QString& column);

/// The column, from 1, that the first row of a sheet gives a field's name, in any case and without surrounding blanks,
/// among the first 200; 0 when there is none.
int GetColumn(ovConnection& source, const QString& table, const QString& field);

} // namespace sheetCells
