#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Writes into every account of PIA_CON the path of the ledgers above it (PCPTH), from the top, with "\" between, as
/// PCMAS tells them. A ledger that is not there ends the path; accounts that stand above themselves are logged and get
/// none. Raises `SqlError`.
void WriteAccountPaths(ImportRun& run);

} // namespace contract
