#pragma once

#include "sql/engine.h"

namespace sources {

/// Opens a folder of dBase/FoxPro tables: each .dbf file (its name in any case) is a table of a private database,
/// without its deleted rows, with the record number as first column (`RecordNumberColumn`). A table is read when it is
/// first asked for.
/// @param settings its `tables`, `lookupColumns` and `codePage` are used.
/// Raises `ImportError` naming the folder; reading a table raises it naming file, row and column.
std::unique_ptr<Engine> OpenFoxProFolder(const QString& folder, const ConnectionSettings& settings);

} // namespace sources
