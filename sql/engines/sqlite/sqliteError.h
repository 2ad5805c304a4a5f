#pragma once

#include "sql/errors.h"

struct sqlite3;

/// What SQLite refused last, in its own words and with what the operator can do about it.
SqlError SqliteErrorOf(sqlite3* database, const QString& statement);
