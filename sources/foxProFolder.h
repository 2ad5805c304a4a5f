#pragma once

#include "sql/engine.h"

namespace sources {

/// Opens a folder of dBase/FoxPro tables: each .dbf file (its name in any case) is a table of a private database,
/// without its deleted rows, with the record number as first column (`RecordNumberColumn`). A table is read when it is
/// first asked for.
/// @param settings its `tables`, `lookupColumns` and `codePage` are used.
/// A value that cannot be read (a memo that is missing or damaged, bytes that are no text in the code page) is noted;
/// asking for it raises `ImportError` naming file, row and column. Rows that the header does not announce are read and
/// noted. Raises `ImportError` naming the folder; reading a table raises it naming the file.
std::unique_ptr<Engine> OpenFoxProFolder(const QString& folder, const ConnectionSettings& settings);

} // namespace sources
