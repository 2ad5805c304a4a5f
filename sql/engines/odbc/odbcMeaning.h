#pragma once

#include "sql/errors.h"

namespace odbc {

/// Tells what a refusal of SQL Server, Oracle, MySQL or MariaDB means; leaves what is not known as it is.
void Explain(SqlError& error);

} // namespace odbc
