#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Sets the codes that a row of a table with a code lacks, of those that a mapping translates, where the run is limited
/// to rows whose codes have been translated since (`RowSelection::FillsCodes`); else nothing. What stands in a column
/// stays. Raises as `Mapping::Apply` does. @param facts with the code of the row
void FillMissingCodes(ImportRun& run, const Mapping& whole, const SourceRow& row, const Facts& facts,
                      TargetRow& target);

} // namespace contract
