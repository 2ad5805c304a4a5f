#pragma once

#include "sql/engines/odbc/odbcCatalog.h"

namespace odbc {

/// A right on the rows of a table.
struct RightQuery {
    QString right; ///< "INSERT"
    QString query; ///< gives 0 when the user of the connection lacks it
};
/// How a database is asked for the rights on a table; empty for one that cannot be asked.
QVector<RightQuery> RightQueries(Dbms dbms, const QString& table, bool writes);

} // namespace odbc
