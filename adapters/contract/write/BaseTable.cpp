#include "adapters/contract/write/BaseTable.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"

namespace contract {

RowOutcome WriteByCode(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts) {
    const QString codeColumn = schema::FindTable(mapping.targetTable)->CodeColumn();
    const bool known = IsThere(run.GetSession(), mapping.targetTable, codeColumn, facts.code);
    TargetRow target(run, mapping.targetTable);
    mapping.Apply(target, run.GetSession(), row, facts);
    if (known) {
        target.Update(QStringLiteral("WHERE ") + Equals(run.GetSession(), codeColumn, facts.code));
        return RowOutcome::Updated;
    }
    target.Insert();
    return RowOutcome::Inserted;
}

} // namespace contract
