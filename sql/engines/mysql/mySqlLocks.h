#pragma once

#include "sql/engines/serverLocks.h"

/// The locks of a MySQL or MariaDB server, whichever way it is reached: they belong to the connection, and no
/// transaction ends them.
LockWords MySqlLocks();
