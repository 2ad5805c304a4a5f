#pragma once

#include "sql/engines/odbc/odbcCatalog.h"

namespace odbc {

/// How a database is asked what the columns of a table take: by name, type, characters, digits, decimals, and 1 for one
/// that no row goes without; empty for a database that cannot be asked.
QString BoundsQuery(Dbms dbms, const QString& table);
/// What the rows of that query say.
QVector<ColumnBounds> BoundsFrom(Cursor& rows);

} // namespace odbc
