#include "adapters/contract/write/BaseTable.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

RowOutcome Write(TargetRow& target, const QString& conditionOfKnown) {
    if (!conditionOfKnown.isEmpty()) {
        target.Update(QStringLiteral("WHERE ") + conditionOfKnown);
        return RowOutcome::Updated;
    }
    target.Insert();
    return RowOutcome::Inserted;
}

/// "COLUMN = literal", or "COLUMN IS NULL".
QString HasValue(const Session& session, const schema::Column& column, const QVariant& value) {
    if (value.isNull()) {
        return column.name + QStringLiteral(" IS NULL");
    }
    return column.name + QStringLiteral(" = ") +
           mod_ovTools::FormatSqlValue(value, column.type, session.Quadrix.ProviderType);
}

} // namespace

RowOutcome WriteByCode(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts) {
    const QString codeColumn = schema::FindTable(mapping.targetTable)->CodeColumn();
    const bool known = IsThere(run.GetSession(), mapping.targetTable, codeColumn, facts.code);
    TargetRow target(run, mapping.targetTable);
    mapping.Apply(target, run.GetSession(), row, facts);
    return Write(target, known ? Equals(run.GetSession(), codeColumn, facts.code) : QString());
}

RowOutcome WriteByKeys(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts,
                       const QStringList& keys) {
    Session& session = run.GetSession();
    const schema::Table& table = *schema::FindTable(mapping.targetTable);
    TargetRow target(run, table.name);
    mapping.Apply(target, session, row, facts);
    QStringList conditions;
    for (const QString& key : keys) {
        conditions.append(HasValue(session, *table.FindColumn(key), target.Value(key)));
    }
    const qint64 known = IdWhere(session, table.name, conditions.join(QStringLiteral(" AND ")));
    return Write(target, known != 0 ? Equals("RECORD_ID", known) : QString());
}

} // namespace contract
