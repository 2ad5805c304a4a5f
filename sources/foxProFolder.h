#pragma once

#include "sql/engine.h"

namespace sources {

/// Opens a folder of dBase/FoxPro tables: each .dbf file (its name in any case) becomes a table of a private database,
/// without its deleted rows, with the record number as first column (`RecordNumberColumn`).
/// @param settings its `tables`, `lookupColumns` and `codePage` are used; a table that has no file is simply not there.
/// Raises `ImportError` naming folder, or file, row and column.
std::unique_ptr<Engine> OpenFoxProFolder(const QString& folder, const ConnectionSettings& settings);

} // namespace sources
