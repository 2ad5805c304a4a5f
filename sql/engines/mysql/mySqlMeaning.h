#pragma once

#include "sql/errors.h"

/// Tells what a refusal of a MySQL or MariaDB server means, whichever way it is reached; false when it is not known.
bool ExplainMySql(SqlError& error);
