#pragma once

#include "adapters/contract/run/Origin.h"

namespace modMain {

/// Procedures of an origin's buttons that work on the Quadrix database alone and belong to no module: the merge of
/// counterparties behind "Fusione Controparti". Empty for most origins.
const std::vector<contract::Procedure>& ProgramProcedures(const contract::Origin& origin);

} // namespace modMain
