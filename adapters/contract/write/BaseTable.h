#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Writes a row of a table whose key is one code column: inserted when the code is new, updated when it is there.
/// The mapping sets the code column too. Raises `SqlError`, `RowGivenUp` or, for a value that does not fit,
/// `ImportError`.
RowOutcome WriteByCode(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts);

/// The same for a table whose rows several columns tell apart, which the mapping sets: the letters of intent of a
/// customer, the checks of an article. Rows of one run that nothing tells apart stay as many: the second is written
/// over the second that an earlier import has left.
class WriterByKeys {
public:
    /// @param run the run under way @param keys target columns
    WriterByKeys(ImportRun& run, QStringList keys)
        : m_run(run),
          m_keys(std::move(keys)) {}

    RowOutcome Write(const Mapping& mapping, const SourceRow& row, const Facts& facts);

private:
    qint64 Known(const QString& table, const QString& condition);

    ImportRun& m_run;
    QStringList m_keys;
    QHash<size_t, int> m_written; ///< rows of this run, by hashes of their keys
};

} // namespace contract
