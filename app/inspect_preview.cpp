#include "app/inspect_preview.h"

#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/SourceLayout.h"
#include "core/Trial.h"
#include "sources/privateDatabase.h"
#include "sql/mod_ovTools.h"

#include <QSet>

#include <algorithm>
#include <array>

namespace inspection {

namespace {

using contract::MapLine;
using contract::SourceRow;
using Line = Preview::Line;

constexpr int MostRows = 10;

/// Whatever rules write or remember during the lifetime of the object is taken back.
class TakenBack {
public:
    explicit TakenBack(Session& session)
        : m_session(session),
          m_quiet(session.Person),
          m_acting(session.Errors, ErrorAction::Abort),
          m_trial(session) {
        m_session.Memory.Open();
    }
    ~TakenBack() {
        m_session.Memory.TakeBack();
        m_session.Memory.Keep();
        m_session.HeldLines.clear();
        m_session.Notes = {};
    }
    TakenBack(const TakenBack&) = delete;
    TakenBack& operator=(const TakenBack&) = delete;

private:
    Session& m_session;
    Operator::Quiet m_quiet;
    ovErrors::Acting m_acting;
    Trial m_trial;
};

Line LineOf(const contract::Mapping& mapping, const MapLine& line, bool isAdded) {
    return {
        mapping.targetTable + u'.' + line.target, line.sources.join(QStringLiteral(", ")), line.rule.text, isAdded, {}};
}

/// The value that a rule gives a row of which that much is known.
Line::Value ValueFor(contract::ImportRun& run, const QString& table, const MapLine& line, const SourceRow& row,
                     const contract::Facts& facts) {
    try {
        const auto value = line.ValueOf(run.GetSession(), row, facts);
        if (!value) {
            return {};
        }
        contract::TargetRow target(run, table);
        target.Set(line.target, *value);
        return {mod_ovTools::ToText(target.Value(line.target)), {}};
    } catch (const Error& error) {
        return {{}, error.Message()};
    }
}

/// Only a run knows the code and the roles of a row: a value that hangs on them is told for each.
Line::Value ValueOf(contract::ImportRun& run, const QString& table, const MapLine& line, const SourceRow& row) {
    struct Role {
        QString name;
        contract::Roles roles;
    };
    static const std::array<Role, 3> roles{
        {{"cliente", {.customer = true}}, {"fornitore", {.supplier = true}}, {"vettore", {.carrier = true}}}};
    const auto valueFor = [&](const contract::Facts& facts) { return ValueFor(run, table, line, row, facts); };
    if (valueFor({.code = "1"}).text != valueFor({.code = "2"}).text) {
        return {QStringLiteral("(lo assegna l'importazione)"), {}};
    }
    const Line::Value first = valueFor({.code = {}, .roles = roles.front().roles});
    QStringList parts;
    bool isSame = true;
    for (const Role& role : roles) {
        const Line::Value value = valueFor({.code = {}, .roles = role.roles});
        isSame = isSame && value.text == first.text && value.trouble == first.trouble;
        const QString told = value.trouble.isEmpty() ? value.text : value.trouble;
        parts += told.isEmpty() ? QStringList() : QStringList(role.name + QStringLiteral(": ") + told);
    }
    return isSame ? first : Line::Value{parts.join(QStringLiteral("; ")), {}};
}

void Fill(Preview& preview, Session& session, const contract::Origin& origin, const PreviewOf& of) {
    const contract::Mapping& mapping = *of.mapping;
    const contract::Needs& needs = of.procedure->needs;
    contract::LeaveOut(session, needs, contract::LacksOf(session, needs));
    std::vector<MapLine> lines = mapping.lines;
    const auto& added = contract::AddedLines(session, mapping);
    for (const MapLine& line : mapping.lines) {
        preview.lines.push_back(LineOf(mapping, line, false));
    }
    for (const MapLine& line : added) {
        preview.lines.push_back(LineOf(mapping, line, true));
    }
    lines.insert(lines.end(), added.begin(), added.end());
    contract::ImportRun run(session, origin.module, of.procedure->name, QStringLiteral("*"));
    Recordset rows =
        session.SourceConnection().ExecuteWC(QStringLiteral("SELECT * FROM [%1]").arg(mapping.sourceTable));
    for (; !rows.Eof() && preview.rows.size() < MostRows; rows.MoveNext()) {
        const SourceRow row(rows);
        preview.rows.append(row.HasColumn(sources::RowNumberColumn) ? row.Text(sources::RowNumberColumn)
                                                                    : QString::number(preview.rows.size() + 1));
        for (size_t i = 0; i < lines.size(); ++i) {
            preview.lines[i].values.push_back(ValueOf(run, mapping.targetTable, lines[i], row));
        }
    }
}

} // namespace

namespace {

/// Whether another mapping shows the rows that some lines are of.
bool IsPartOfOthers(const contract::Mapping& mapping, const contract::Needs& needs) {
    return mapping.isPart &&
           std::any_of(needs.mappings.begin(), needs.mappings.end(), [&mapping](const contract::Mapping* other) {
               return !other->isPart && other->targetTable == mapping.targetTable;
           });
}

} // namespace

std::vector<PreviewOf> Previews(const contract::Origin& origin) {
    std::vector<PreviewOf> previews;
    QSet<QString> told;
    for (const contract::Procedure& procedure : origin.procedures) {
        for (const contract::Mapping* mapping : procedure.needs.mappings) {
            const QString title =
                QStringLiteral("%1 da %2 (%3)").arg(mapping->targetTable, mapping->sourceTable, procedure.name);
            if (contract::SourceOf(origin, procedure) == &origin && !IsPartOfOthers(*mapping, procedure.needs) &&
                !mapping->sourceTable.isEmpty() && !told.contains(title)) {
                told.insert(title);
                previews.push_back({&procedure, mapping, title});
            }
        }
    }
    return previews;
}

Preview MakePreview(Session& session, const contract::Origin& origin, const PreviewOf& of) {
    Preview preview;
    try {
        const TakenBack takenBack(session);
        Fill(preview, session, origin, of);
    } catch (const Error& error) {
        preview.trouble = error.Message();
    }
    return preview;
}

} // namespace inspection
