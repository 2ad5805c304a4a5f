#include "adapters/contract/write/BaseTable.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/ImportingModules.h"
#include "adapters/contract/write/missingCodes.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

#include <algorithm>

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

/// Whether a row has the code as it is or, where databases may take them for two, in capitals.
bool HasCode(Session& session, const QString& table, const QString& column, const QString& code) {
    constexpr char16_t firstFurther = 0x80;
    const QString capitals = mod_ovTools::UpperChars(code);
    const bool isCapital = std::equal(code.begin(), code.end(), capitals.begin(),
                                      [](QChar is, QChar capital) { return is == capital || is < firstFurther; });
    return HasOwnCode(session.Quadrix, table, column, code) ||
           (!isCapital && HasOwnCode(session.Quadrix, table, column, capitals));
}

/// @param look sees what is written of the row, before it is
RowOutcome WriteCoded(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts,
                      const std::function<void(const TargetRow&)>& look) {
    const QString codeColumn = schema::FindTable(mapping.targetTable)->CodeColumn();
    const bool known = HasCode(run.GetSession(), mapping.targetTable, codeColumn, facts.code);
    if (FillsCodes(run)) {
        return known ? FillCodesOf(run, mapping, row, facts) : SkipGone(run);
    }
    TargetRow target(run, mapping.targetTable);
    mapping.Apply(target, run.GetSession(), row, facts);
    look(target);
    return Write(target, known ? Equals(run.GetSession(), codeColumn, facts.code) : QString());
}

} // namespace

RowOutcome WriteByCode(ImportRun& run, const Mapping& mapping, const SourceRow& row, const Facts& facts) {
    return WriteCoded(run, mapping, row, facts, [](const TargetRow&) {});
}

RowOutcome WriterByCode::Write(const Mapping& mapping, const SourceRow& row, const Facts& facts, size_t further) {
    return WriteCoded(m_run, mapping, row, facts, [&](const TargetRow& target) {
        size_t values = qHash(further);
        for (const MapLine& line : mapping.lines) {
            values = qHashMulti(values, line.target, mod_ovTools::ToText(target.Value(line.target)));
        }
        TellOther(mapping.targetTable, facts.code, values);
    });
}

void WriterByCode::TellOther(const QString& table, const QString& code, size_t values) {
    const QString key = mod_ovTools::UpperChars(code);
    const auto before = m_values.constFind(key);
    if (before != m_values.cend() && *before != values) {
        m_run.Log(QStringLiteral("CODICE DOPPIO: %1: una riga di prima ha scritto altro di '%2' in %3: vale questa")
                      .arg(m_run.RowKey(), code, table));
    }
    m_run.RestoresEntry(m_values, key);
    m_values.insert(key, values);
}

RowOutcome WriterByKeys::Write(const Mapping& mapping, const SourceRow& row, const Facts& facts) {
    Session& session = m_run.GetSession();
    const schema::Table& table = *schema::FindTable(mapping.targetTable);
    if (!m_lastBefore) {
        m_lastBefore = LastId(table.name);
    }
    TargetRow target(m_run, table.name);
    mapping.Apply(target, session, row, facts);
    QStringList conditions;
    for (const QString& key : m_keys) {
        conditions.append(HasValue(session, *table.FindColumn(key), target.Value(key)));
    }
    const qint64 known = Known(table.name, conditions.join(QStringLiteral(" AND ")));
    m_run.Remember(m_rewritten, known);
    return contract::Write(target, known != 0 ? Equals("RECORD_ID", known) : QString());
}

qint64 WriterByKeys::LastId(const QString& table) const {
    return m_run.GetSession().Quadrix.ExecuteCommand(QStringLiteral("SELECT MAX(RECORD_ID) FROM ") +
                                                     m_run.FullName(table));
}

void WriterByKeys::TellLeft(const QString& table, const QSet<QString>& but) const {
    QStringList left;
    Session& session = m_run.GetSession();
    Recordset rows = session.Quadrix.ExecuteWC(QStringLiteral("SELECT RECORD_ID, %1 FROM %2 WHERE RECORD_ID <= %3 AND ")
                                                   .arg(m_keys.join(QStringLiteral(", ")), m_run.FullName(table),
                                                        QString::number(m_lastBefore ? *m_lastBefore : LastId(table))) +
                                               OfImports(session) + QStringLiteral(" ORDER BY RECORD_ID"));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        QStringList keys;
        bool isLeftOut = m_rewritten.contains(row.Value("RECORD_ID").toLongLong());
        for (const QString& key : m_keys) {
            isLeftOut = isLeftOut || but.contains(mod_ovTools::UpperChars(row.Text(key)));
            keys.append(QStringLiteral("%1 '%2'").arg(key, row.Text(key)));
        }
        if (!isLeftOut) {
            left.append(table + QStringLiteral(", ") + keys.join(QStringLiteral(", ")));
        }
    }
    rows.Close();
    ImportingModules(m_run, table).TellLeft(QStringLiteral("RIGHE"), table, left);
}

/// RECORD_ID of the row that the one under way is; 0 for a new one.
qint64 WriterByKeys::Known(const QString& table, const QString& condition) {
    Session& session = m_run.GetSession();
    const size_t hash = qHash(condition);
    const int before = m_written[hash]++;
    m_run.WhenTakenBack([this, hash] { --m_written[hash]; });
    if (before == 0 && !m_run.GoesOn()) {
        return IdWhere(session, table, condition + QStringLiteral(" ORDER BY RECORD_ID"));
    }
    Recordset rows =
        session.Quadrix.ExecuteWC(QStringLiteral("SELECT RECORD_ID FROM %1 WHERE ").arg(m_run.FullName(table)) +
                                  condition + QStringLiteral(" ORDER BY RECORD_ID"));
    for (int behind = before; !rows.Eof(); rows.MoveNext()) {
        const qint64 id = rows.Fields(0).Value().toLongLong();
        if (!m_run.HasWrittenBefore(table, id) && behind-- == 0) {
            return id;
        }
    }
    return 0;
}

} // namespace contract
