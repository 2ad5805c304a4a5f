#pragma once

#include "adapters/contract/run/Origin.h"
#include "app/merge.h"

namespace modMain {

/// Procedures of an origin's buttons that work on the Quadrix database alone and belong to no module: the merge of
/// counterparties behind "Fusione Controparti". Empty for most origins.
const std::vector<contract::Procedure>& ProgramProcedures(const contract::Origin& origin);

/// `FusioneControparti`, kept in the history as a run of its own, of the destination; companies that there are not are
/// no run. @return what was done, also after an error
MergeResult MergeAndKeep(Session& session, const QString& from, const QString& to, bool updateReferences,
                         const MergeConsent& consent = {});

} // namespace modMain
