#include "adapters/contract/write/missingCodes.h"

#include "adapters/contract/map/codesOfRule.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/RowSelection.h"

namespace contract {

void FillMissingCodes(ImportRun& run, const Mapping& whole, const SourceRow& row, const Facts& facts,
                      TargetRow& target) {
    Session& session = run.GetSession();
    if (session.Selection == nullptr || !session.Selection->FillsCodes()) {
        return;
    }
    Mapping missing{whole.targetTable, whole.sourceTable, {}, true};
    const QString key = schema::FindTable(whole.targetTable)->CodeColumn();
    const Recordset there =
        session.Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM %1 WHERE ").arg(run.FullName(whole.targetTable)) +
                                  Equals(session, key, facts.code));
    if (there.Eof()) {
        return;
    }
    const SourceRow before(there);
    std::copy_if(whole.lines.begin(), whole.lines.end(), std::back_inserter(missing.lines),
                 [&](const MapLine& line) { return !CodesOf(line.rule).empty() && before.IsBlank(line.target); });
    missing.Apply(target, session, row, facts);
}

} // namespace contract
