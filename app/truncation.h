#pragma once

#include "adapters/contract/run/Emptying.h"
#include "app/reset.h"

namespace modImport {

/// The tables that a truncation empties (bare names), from the most dependent to the master tables.
const QStringList& TruncatedTables();

/// What a truncation empties, with the article texts of the shared language table, as it stands before it.
std::vector<contract::RowsToDelete> RowsOfTruncation(const Session& session);

/// Empties every company table that the imports fill, and the article texts of the shared language table. The first
/// statement that fails ends it: the tables before stay empty, those after keep their rows. An error is reported
/// under "modImport", "TruncateDatabase".
EmptyingResult TruncateDatabase(Session& session);

} // namespace modImport
