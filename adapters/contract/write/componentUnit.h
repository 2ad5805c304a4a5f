#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// A component's quantity counts in the unit of its article; another one is told, as nobody converts it. A blank one is
/// that of the article. @param name of the component's row in the log @param unit as the source calls it
/// @param known what it is called in Quadrix; empty: the same
void TellOtherUnit(ImportRun& run, const QString& name, const QString& article, const QString& unit,
                   const QString& known);

} // namespace contract
