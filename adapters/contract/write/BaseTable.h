#pragma once

#include "adapters/contract/run/ImportRun.h"

#include <QSet>

namespace contract {

/// Writes a row of a table whose key is one code column: inserted when the code is new, updated when it is there.
/// The mapping sets the code column too. Raises `SqlError`, `RowGivenUp` or, for a value that does not fit,
/// `ImportError`.
RowOutcome WriteByCode(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts);

/// The same for all rows of a run: a second row of one code that writes something else over what the first has written
/// is told, as only somebody can know which of the two is right.
class WriterByCode {
public:
    explicit WriterByCode(ImportRun& run)
        : m_run(run) {}

    /// @param further what the row tells of the code beside the mapping, in a hash
    RowOutcome Write(const Mapping& mapping, const SourceRow& row, const Facts& facts, size_t further = 0);

private:
    void TellOther(const QString& table, const QString& code, size_t values);

    ImportRun& m_run;
    QHash<QString, size_t> m_values; ///< what the last row has written, in hashes, by the code in capitals
};

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
    /// Behind the last row of a whole run: tells what earlier imports have written into the table (bare name) and the
    /// run has not. @param but values of keys, in capitals, whose rows the source has and the run leaves out
    void TellLeft(const QString& table, const QSet<QString>& but) const;

private:
    qint64 Known(const QString& table, const QString& condition);
    qint64 LastId(const QString& table) const;

    ImportRun& m_run;
    QStringList m_keys;
    QHash<size_t, int> m_written;         ///< rows of this run, by hashes of their keys
    std::optional<qint64> m_lastBefore{}; ///< RECORD_ID of the last row that was there before
    QSet<qint64> m_rewritten;             ///< RECORD_IDs
};

} // namespace contract
