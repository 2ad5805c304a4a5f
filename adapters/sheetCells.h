#pragma once

#include "adapters/contract/run/SourceRow.h"
#include "sql/ovConnection.h"

/// Cells of a sheet whose first row names its columns (`sources::SheetTable`).
namespace sheetCells {

/// The value of a cell of the row under way as the data type wants it: a text, empty for a cell without anything; a
/// number, 0 for it; a date as text "yyyyMMdd", with a time of day "yyyyMMdd hh:mm:ss", empty for it.
/// @param column its name Raises `ImportError` naming the column for what is no date or no number.
QVariant GetXlsValue(const contract::SourceRow& row, const QString& column, DataType type);

/// The column, from 1, that the first row of a sheet gives a field's name, in any case and without surrounding blanks,
/// among the first 200; 0 when there is none.
int GetColumn(ovConnection& source, const QString& table, const QString& field);

} // namespace sheetCells
