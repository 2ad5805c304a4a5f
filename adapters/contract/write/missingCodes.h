#pragma once

#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/SourceRow.h"

namespace contract {

/// Whether a run gives rows that are there the codes that have been translated since, and leaves the rest of them as it
/// is (`RowSelection::FillsCodes`).
bool FillsCodes(const ImportRun& run);
/// Leaves out a row that such a run does not find in the target: it has gone since.
RowOutcome SkipGone(ImportRun& run);
/// A row that is there keeps the codes that it has: those that it waits for it waits for still.
void LeaveCodes(ImportRun& run);

/// A row of a table with a code, such as an article, which has no more to get from such a run: one that is there gets
/// the codes that it lacks, one that is not is left out.
RowOutcome FillCodesOf(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts);

/// What the source has for columns of a row, by column: one without a translation may hold it.
using SourceCodes = QHash<QString, QStringList>;
/// Whether a column that a mapping writes holds what the source has for it. @param there what it holds
bool HoldsSourceCode(const Mapping& mapping, const SourceRow& row, const QString& column, const QString& there);

/// The codes that a row of the target lacks which is there: a column that is blank, or still holds what stands in for a
/// code without a translation, which is the source's own code, the ordinary VAT rate or the euro.
/// Every operation raises `SqlError` or, for a value that does not fit, `ImportError`.
class MissingCodes {
public:
    /// @param run the run under way @param table bare name of a table with a code
    /// @param facts of the row: its code, and the roles of a counterparty. A supplier who is a customer too gets from
    /// the supplier's row the columns of a supplier alone.
    MissingCodes(ImportRun& run, QString table, Facts facts);

    /// Sets those that a mapping translates.
    void Apply(const Mapping& mapping, const SourceRow& row, TargetRow& target) const;
    /// Sets those that another row has been given: codes of tables of Quadrix, and what the mappings translate.
    void Take(const TargetRow& given, const std::vector<const Mapping*>& mappings, TargetRow& target,
              const SourceCodes& sourceCodes = {}) const;
    bool IsThere() const { return !m_there.isEmpty(); }
    /// Updates the row with what has been set; one without anything is left out.
    RowOutcome Write(TargetRow& target) const;

private:
    bool Lacks(const QString& column, const QStringList& sourceCodes) const;
    bool IsOfRow(Side side) const;

    ImportRun& m_run;
    QString m_table;
    Facts m_facts;
    QHash<QString, QString> m_there; ///< texts of the row, by column
    bool m_addsSupplier = false;
};

} // namespace contract
