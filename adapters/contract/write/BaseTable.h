#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Writes a row of a table whose key is one code column: inserted when the code is new, updated when it is there.
/// The mapping sets the code column too. Raises `SqlError`, `RowGivenUp` or, for a value that does not fit,
/// `ImportError`.
RowOutcome WriteByCode(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts);

} // namespace contract
