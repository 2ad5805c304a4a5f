#pragma once

#include "sql/engine.h"

namespace sources {

/// Opens one text file as each of the tables, whatever it is called: each kind of file of an origin is a table of its
/// own, whose columns are read when it is asked for. It is read as those of a folder are.
std::unique_ptr<Engine> OpenTextFileAs(const QStringList& tables, const QString& path,
                                       const ConnectionSettings& settings);

/// Opens a folder of text files: each .csv or .txt file is a table of a private database, under its name without the
/// extension; of the settings' `tables`, those that name an extension are offered under that name. A table is read
/// when it is first asked for. Every value is a text, an empty one Null; the number of the line is the first column
/// (`RowNumberColumn`).
/// The layout of a file is told by "schema.ini" in its folder (`ReadTextSchema`). Its code page is the one that the
/// file tells (a mark of UTF-8 or UTF-16), else what "schema.ini" says, else the settings' `codePage`, else UTF-8 where
/// the whole file is, else cp1252. What was found by looking is noted: separator, code page, marks between thousands.
/// Separators at the end of a line with nothing between them are no fields. A line with other fields than there are
/// columns and a text that is none in the code page are noted; asking for their values raises `ImportError` with file,
/// line and column. Columns without a name are called by their place, those of the same name by both.
/// Raises `ImportError` naming the folder; reading a table raises it naming the file: one without a header, a quote
/// that is not closed.
std::unique_ptr<Engine> OpenTextFolder(const QString& folder, const ConnectionSettings& settings);

} // namespace sources
