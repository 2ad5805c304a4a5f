#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Writes a row of a table whose key is one code column: inserted when the code is new, updated when it is there.
/// The mapping sets the code column too. Raises `SqlError`, `RowGivenUp` or, for a value that does not fit,
/// `ImportError`.
RowOutcome WriteByCode(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts);

/// The same for a table whose rows several columns tell apart, which the mapping sets: the letters of intent of a
/// customer, the checks of an article.
RowOutcome WriteByKeys(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts,
                       const QStringList& keys);

} // namespace contract
