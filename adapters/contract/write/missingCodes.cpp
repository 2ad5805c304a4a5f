#include "adapters/contract/write/missingCodes.h"

#include "adapters/contract/map/codesOfRule.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/RowSelection.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

/// What stands in a column of codes of that table where the source's has no translation; empty: nothing.
QString StandIn(const QString& table) {
    return table == u"TAB_IVA"   ? QString(schema::defaults::VatCode)
           : table == u"TAB_VAL" ? QString(schema::defaults::Currency)
                                 : QString();
}

QStringList CodesIn(const SourceRow& row, const MapLine& line) {
    QStringList codes;
    for (const QString& column : line.sources) {
        codes.append(row.Text(column));
    }
    return codes;
}

} // namespace

bool FillsCodes(const ImportRun& run) {
    const Session& session = run.GetSession();
    return session.Selection != nullptr && session.Selection->FillsCodes();
}

RowOutcome SkipGone(ImportRun& run) { return run.Skip(QStringLiteral("in Quadrix non c'è più")); }

void LeaveCodes(ImportRun& run) {
    if (RunObserver* observer = run.GetSession().Observer; observer != nullptr) {
        observer->CodesAreLeft();
    }
}

RowOutcome FillCodesOf(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts) {
    const MissingCodes missing(run, mapping.targetTable, facts);
    if (!missing.IsThere()) {
        return SkipGone(run);
    }
    TargetRow target(run, mapping.targetTable);
    missing.Apply(mapping, row, target);
    return missing.Write(target);
}

bool HoldsSourceCode(const Mapping& mapping, const SourceRow& row, const QString& column, const QString& there) {
    return std::any_of(mapping.lines.begin(), mapping.lines.end(), [&](const MapLine& line) {
        return line.target == column && CodesIn(row, line).contains(there, Qt::CaseInsensitive);
    });
}

MissingCodes::MissingCodes(ImportRun& run, QString table, Facts facts)
    : m_run(run),
      m_table(std::move(table)),
      m_facts(std::move(facts)) {
    const schema::Table& schema = *schema::FindTable(m_table);
    const Recordset there =
        run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM %1 WHERE ").arg(run.FullName(m_table)) +
                                           Equals(run.GetSession(), schema.CodeColumn(), m_facts.code));
    if (there.Eof()) {
        return;
    }
    const SourceRow row(there);
    for (const schema::Column& column : schema.columns) {
        m_there.insert(column.name, row.Text(column.name));
    }
    m_addsSupplier = m_facts.roles.supplier && !m_facts.roles.customer && !m_there.value("COCGE").isEmpty();
}

bool MissingCodes::Lacks(const QString& column, const QStringList& sourceCodes) const {
    const auto there = m_there.constFind(column);
    if (there == m_there.cend() || there->isEmpty()) {
        return there != m_there.cend();
    }
    const schema::Column& known = *schema::FindTable(m_table)->FindColumn(column);
    return sourceCodes.contains(*there, Qt::CaseInsensitive) ||
           (!known.refersTo.isEmpty() && *there == StandIn(known.refersTo));
}

/// Whether the row under way tells a column of that side.
bool MissingCodes::IsOfRow(Side side) const {
    return side == Side::Both       ? !m_addsSupplier
           : side == Side::Customer ? m_facts.roles.customer
                                    : m_facts.roles.supplier;
}

void MissingCodes::Apply(const Mapping& mapping, const SourceRow& row, TargetRow& target) const {
    Mapping missing{mapping.targetTable, mapping.sourceTable, {}, true};
    std::copy_if(
        mapping.lines.begin(), mapping.lines.end(), std::back_inserter(missing.lines), [&](const MapLine& line) {
            return !CodesOf(line.rule).empty() && IsOfRow(line.rule.side) && Lacks(line.target, CodesIn(row, line));
        });
    missing.Apply(target, m_run.GetSession(), row, m_facts);
}

void MissingCodes::Take(const TargetRow& given, const std::vector<const Mapping*>& mappings, TargetRow& target,
                        const SourceCodes& sourceCodes) const {
    const auto take = [&](const QString& column) {
        const QVariant value = given.Value(column);
        if (!mod_ovTools::ToText(value).trimmed().isEmpty() && Lacks(column, sourceCodes.value(column))) {
            target.Set(column, value);
        }
    };
    for (const schema::Column& column : schema::FindTable(m_table)->columns) {
        if (!column.refersTo.isEmpty() && !m_addsSupplier) {
            take(column.name);
        }
    }
    for (const Mapping* mapping : mappings) {
        for (const MapLine& line : mapping->lines) {
            if (mapping->targetTable == m_table && !CodesOf(line.rule).empty() && IsOfRow(line.rule.side)) {
                take(line.target);
            }
        }
    }
}

RowOutcome MissingCodes::Write(TargetRow& target) const {
    const schema::Table& table = *schema::FindTable(m_table);
    const bool isSet = std::any_of(table.columns.begin(), table.columns.end(), [&](const schema::Column& column) {
        const QVariant value = target.Value(column.name);
        return value.isValid() && !value.isNull();
    });
    if (!isSet) {
        return m_run.Skip(QStringLiteral("riga a cui non mancano codici"));
    }
    target.Update(QStringLiteral("WHERE ") + Equals(m_run.GetSession(), table.CodeColumn(), m_facts.code));
    return RowOutcome::Updated;
}

} // namespace contract
