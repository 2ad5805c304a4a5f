#pragma once

#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/run/TargetRow.h"

namespace contract {

/// What lines of a counterparty leave out because the source has nothing, or zero, is cleared: Null, or the zero of a
/// number. A code that has no translation leaves what there is.
void ClearBlanks(TargetRow& target, Session& session, const SourceRow& row, const Mapping& mapping, const Roles& roles);

} // namespace contract
