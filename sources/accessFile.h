#pragma once

#include "sql/engine.h"

namespace sources {

/// Opens an Access database (.mdb of Access 97 and later, .accdb): each of its own tables is a table of a private
/// database, with the number of the row as first column (`RecordNumberColumn`). A table is read when it is first asked
/// for. A table that is only linked from another file is offered too, and raises `ImportError` when it is asked for.
/// @param path its name in any case
/// @param settings its `tables` and `lookupColumns` are used, and its `codePage` for Access 97, whose texts are not
/// Unicode, when the file tells none.
/// Raises `ImportError` naming the file when it is missing, locked, damaged or encrypted; reading a table raises it
/// naming file, table, row and column.
std::unique_ptr<Engine> OpenAccessFile(const QString& path, const ConnectionSettings& settings);

} // namespace sources
