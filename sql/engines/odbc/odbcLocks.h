#pragma once

#include "sql/engines/odbc/odbcCatalog.h"
#include "sql/engines/serverLocks.h"

namespace odbc {

/// The locks of a database, in its own words; without words for a database that has none.
LockWords LocksOf(Dbms dbms);

} // namespace odbc
