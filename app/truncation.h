#pragma once

#include "app/reset.h"

namespace modImport {

/// The tables that a truncation empties (bare names), from the most dependent to the master tables.
const QStringList& TruncatedTables();

/// Empties every company table that the imports fill, and the article texts of the shared language table. The first
/// statement that fails ends it: the tables before stay empty, those after keep their rows. An error is reported
/// under "modImport", "TruncateDatabase".
EmptyingResult TruncateDatabase(Session& session);

} // namespace modImport
