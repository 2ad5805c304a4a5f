#pragma once

#include "adapters/contract/run/Needs.h"

namespace contract {

/// Compares the tables that a procedure reads with what they were at the last import of the module, and remembers them
/// as they are, in "Tracciati/<module>.colonne" beside the settings. Returns a line for each table that has gained or
/// lost columns since, and one when they cannot be remembered. Raises `SqlError` when the source cannot be asked.
QStringList ChangesOfSource(Session& session, const QString& module, const Needs& needs);

} // namespace contract
