#include "app/codes/Worklist.h"

#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/SourceRow.h"
#include "app/codes/waiting.h"
#include "app/startUp.h"
#include "core/nearNames.h"
#include "core/Schema.h"

#include <algorithm>

namespace codes {

namespace {

QString PositionKey(const QString& table, const QString& field, const QString& oldCode) {
    return KeyOf(table, field) + QChar(0) + oldCode;
}

QString DescriptionKey(const QString& table, const QString& code) { return table + QChar(0) + code.toUpper(); }

QString TargetKey(const BaseTable& base) { return base.table + u'.' + base.column; }

const contract::MapLine* LineTo(const contract::Mapping& mapping, const QString& column) {
    const auto line = std::find_if(mapping.lines.begin(), mapping.lines.end(),
                                   [&column](const contract::MapLine& each) { return each.target == column; });
    return line == mapping.lines.end() || line->sources.size() != 1 ? nullptr : &*line;
}

/// Reads code and description of the source rows that a base table is imported from.
void ReadDescriptions(ovConnection& source, const contract::Mapping& mapping, QHash<QString, QString>& found) {
    const schema::Table* table = schema::FindTable(mapping.targetTable);
    if (table == nullptr || table->CodeColumn().isEmpty()) {
        return;
    }
    const QString codeColumn = table->CodeColumn();
    const contract::MapLine* code = LineTo(mapping, codeColumn);
    const contract::MapLine* description = LineTo(mapping, DescriptionColumn({table->name, codeColumn}));
    if (code == nullptr || description == nullptr) {
        return;
    }
    Recordset rows = source.ExecuteWC(QStringLiteral("SELECT * FROM ") + mapping.sourceTable);
    for (const contract::SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const QString text = row.Text(description->sources.front());
        if (!text.isEmpty()) {
            found.insert(DescriptionKey(table->name, row.Text(code->sources.front())), text);
        }
    }
}

} // namespace

Worklist::Worklist(Session& session, const contract::Origin* origin)
    : m_session(session),
      m_origin(origin) {
    for (const modMain::Company& company : modMain::GetCompanies(session)) {
        m_companies.append(company.code + u'_');
    }
    Refresh();
}

/// Imports keep what they know of the rows of a table of a company under the name of that table.
bool Worklist::IsOwnList(const QString& table) const {
    return std::any_of(m_companies.begin(), m_companies.end(), [&table](const QString& prefix) {
        const schema::Table* known =
            table.startsWith(prefix, Qt::CaseInsensitive) ? schema::FindTable(table.mid(prefix.size())) : nullptr;
        return known != nullptr && !known->shared;
    });
}

void Worklist::Refresh() {
    m_targets.clear();
    ReadCodes();
}

void Worklist::ReadCodes() {
    m_codes.clear();
    m_positions.clear();
    const WaitingRows waiting(m_session);
    Recordset rows = m_session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT TBNAM, TBFLD, TBOLD, TBNEW FROM SYS_IMP ORDER BY TBNAM, TBFLD, TBOLD"));
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto text = [&rows](int column) { return rows.Fields(column).Value().toString(); }; // with its blanks
        Code code{.table = text(0), .field = text(1), .oldCode = text(2), .newCode = text(3).trimmed()};
        if (IsOwnList(code.table)) {
            continue;
        }
        const CodeList& list = m_lists.Of(code.table, code.field);
        const QString key = PositionKey(code.table, code.field, code.oldCode);
        if ((m_origin != nullptr && !list.origins.contains(m_origin->name)) || m_positions.contains(key)) {
            continue;
        }
        for (const BaseTable& base : list.bases) {
            const QString known = m_descriptions.value(DescriptionKey(base.table, code.oldCode.trimmed()));
            code.description = code.description.isEmpty() ? known : code.description;
        }
        code.waiting = waiting.Of(code);
        m_positions.insert(key, m_codes.size());
        m_codes.push_back(code);
    }
}

const Code* Worklist::Find(const QString& table, const QString& field, const QString& oldCode) const {
    const auto position = m_positions.constFind(PositionKey(table, field, oldCode));
    return position == m_positions.constEnd() ? nullptr : &m_codes[*position];
}

void Worklist::RequireList(const QString& table, const QString& field) const {
    const auto isOf = [key = KeyOf(table, field)](const Code& code) { return KeyOf(code.table, code.field) == key; };
    if (IsOwnList(table)) {
        throw ImportError(QStringLiteral("'%1.%2' non è da tradurre: è un elenco che le importazioni tengono per sé")
                              .arg(table, field));
    }
    if (!m_lists.Knows(table, field) && std::none_of(m_codes.begin(), m_codes.end(), isOf)) {
        const QString name = table + u'.' + field;
        throw ImportError(
            QStringLiteral("nessuna origine chiede i codici di '%1'%2").arg(name, DidYouMean(name, m_lists.Names())));
    }
}

void Worklist::RequireLists(const QString& table, const QString& field) const {
    if (!table.isEmpty() && !field.isEmpty()) {
        RequireList(table, field);
    }
    QStringList names;
    for (const CodeList& list : m_lists.All()) {
        if (m_origin != nullptr && !list.origins.contains(m_origin->name)) {
            continue;
        }
        if (KeyOf(table.isEmpty() ? list.table : table, field.isEmpty() ? list.field : field) ==
            KeyOf(list.table, list.field)) {
            return;
        }
        names.append(table.isEmpty() ? list.field : field.isEmpty() ? list.table : list.Name());
    }
    names.removeDuplicates();
    const QString name = table.isEmpty() ? field : field.isEmpty() ? table : QString(table + u'.' + field);
    const QString who = m_origin == nullptr ? QStringLiteral("nessuna origine chiede")
                                            : QStringLiteral("l'origine '%1' non chiede").arg(m_origin->name);
    throw ImportError(QStringLiteral("%1 i codici di '%2'%3").arg(who, name, DidYouMean(name, names)));
}

const TargetCodes& Worklist::Targets(const BaseTable& base) {
    const QString key = TargetKey(base);
    const auto known = m_targets.find(key);
    return known != m_targets.end() ? known->second
                                    : m_targets.emplace(key, TargetCodes(m_session, base)).first->second;
}

const TargetCodes* Worklist::ChoicesOf(const CodeList& list) {
    return list.bases.empty() ? nullptr : &Targets(list.bases.front());
}

qsizetype Worklist::TakeDescriptions(const contract::Origin& origin) {
    for (const contract::Procedure& procedure : origin.procedures) {
        if (contract::SourceOf(origin, procedure) != &origin) {
            continue;
        }
        for (const contract::Mapping* mapping : procedure.needs.mappings) {
            try {
                ReadDescriptions(m_session.SourceConnection(), *mapping, m_descriptions);
            } catch (const Error&) { // a table that this installation lacks describes nothing
                continue;
            }
        }
    }
    ReadCodes();
    return std::count_if(m_codes.begin(), m_codes.end(), [](const Code& code) { return !code.description.isEmpty(); });
}

QString NameOf(const Code& code) { return QStringLiteral("%1.%2: '%3'").arg(code.table, code.field, code.oldCode); }

QString FeedsText(const CodeList& list) {
    return list.feeds.isEmpty() ? QStringLiteral("non si sa dove va") : list.feeds.join(QStringLiteral(", "));
}

QString KindText(const CodeList& list) {
    if (list.bases.empty()) {
        return QStringLiteral("testo libero, al massimo %1 caratteri").arg(list.size);
    }
    QStringList tables;
    for (const BaseTable& base : list.bases) {
        tables.append(base.table);
    }
    return QStringLiteral("codice di ") + tables.join(QStringLiteral(" e di "));
}

} // namespace codes
