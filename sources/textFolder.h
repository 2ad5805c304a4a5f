#pragma once

#include "sql/engine.h"

namespace sources {

/// Opens a folder of text files: each .csv or .txt file is a table of a private database, under its name without the
/// extension; of the settings' `tables`, those that name an extension are offered under that name. A table is read
/// when it is first asked for. Every value is a text, an empty one Null; the number of the line is the first column
/// (`RecordNumberColumn`).
/// The layout of a file is told by "schema.ini" in its folder (`ReadTextSchema`). Its code page is UTF-8 with a mark
/// of it, else what "schema.ini" says, else the settings' `codePage`.
/// Raises `ImportError` naming the folder; reading a table raises it naming file, line and column: a line with more or
/// fewer fields than there are columns, a column without a name or with that of another, bytes that are no text in the
/// code page.
std::unique_ptr<Engine> OpenTextFolder(const QString& folder, const ConnectionSettings& settings);

} // namespace sources
