#include "app/codes/apply.h"

#include "app/history/History.h"
#include "app/history/rejects.h"

#include <QFileInfo>

#include <limits>

namespace codes {

namespace {

constexpr qsizetype MostNamed = 3; ///< rows that a line names

RowsToRepeat& OfRun(std::vector<RowsToRepeat>& all, const history::WaitingCode& code) {
    const QString press = code.isOfSeveral ? code.procedure : QString();
    const auto known = std::find_if(
        all.begin(), all.end(), [&](const RowsToRepeat& each) { return each.run == code.run && each.press == press; });
    return known != all.end() ? *known
                              : all.emplace_back(RowsToRepeat{.run = code.run, .origin = code.origin, .press = press});
}

void SortByRun(std::vector<RowsToRepeat>& all) {
    std::stable_sort(all.begin(), all.end(),
                     [](const RowsToRepeat& a, const RowsToRepeat& b) { return a.run < b.run; });
}

} // namespace

qsizetype RowsToRepeat::Count() const {
    qsizetype count = 0;
    for (const QStringList& names : rows) {
        count += names.size();
    }
    return count;
}

QStringList RowsToRepeat::Lines(Worklist& worklist) const {
    QStringList lines;
    for (const Code& code : codes) {
        const Waiting waiting = code.waiting.value_or(Waiting());
        lines.append(QStringLiteral("%1 = '%2', va in %3: righe %4 (%5%6)")
                         .arg(NameOf(code), code.newCode, FeedsText(worklist.ListOf(code)),
                              QString::number(waiting.rows), waiting.first.mid(0, MostNamed).join(QStringLiteral("; ")),
                              waiting.first.size() > MostNamed ? QStringLiteral("; ...") : QString()));
    }
    return lines;
}

std::vector<RowsToRepeat> FindRowsToRepeat(Worklist& worklist) {
    Session& session = worklist.GetSession();
    std::vector<RowsToRepeat> all;
    const QString path = history::FilePath(session.Config.ConfigFile());
    if (!QFileInfo::exists(path)) {
        return all;
    }
    const history::History history(session);
    for (const history::WaitingCode& each :
         history.WaitingCodes(session.UserManager.Azienda(), std::numeric_limits<int>::max())) {
        const Code* known = worklist.Find(each.code.list, each.code.field, each.code.code);
        if (known == nullptr || known->IsOpen() || each.origin.isEmpty()) {
            continue;
        }
        RowsToRepeat& rows = OfRun(all, each);
        rows.codes.push_back(*known);
        rows.codes.back().waiting = Waiting{each.rows, each.first};
        QStringList& names = rows.rows[each.procedure];
        names += each.first;
        names.removeDuplicates();
    }
    SortByRun(all);
    return all;
}

std::vector<RowsToRepeat> FindWaitingRows(Session& session) {
    const history::History history(session);
    std::vector<RowsToRepeat> all;
    for (const history::WaitingCode& each : history.WaitingCodes(session.UserManager.Azienda(), 1)) {
        if (!each.origin.isEmpty()) {
            OfRun(all, each).rows[each.procedure] += each.first;
        }
    }
    SortByRun(all);
    return all;
}

ImportRequest RequestFor(Session& session, const RowsToRepeat& rows) {
    const history::History history(session);
    ImportRequest request;
    history::Repeat(session, history.Load(rows.run), rows.press, request);
    request.choice.errors = ErrorAction::Ignore;
    request.confirmed = true;
    request.reset = false;
    request.only = std::make_shared<contract::RowSelection>();
    request.only->FillCodes();
    for (const Code& code : rows.codes) {
        request.only->FillCode(code.table, code.field, code.oldCode);
    }
    for (auto procedure = rows.rows.begin(); procedure != rows.rows.end(); ++procedure) {
        for (const QString& name : procedure.value()) {
            request.only->Add({.procedure = procedure.key(), .name = name, .table = {}, .key = {}});
        }
    }
    return request;
}

FlowOutcome Repeat(Session& session, const RowsToRepeat& rows) { return RunImport(session, RequestFor(session, rows)); }

FlowOutcome Try(Session& session, const RowsToRepeat& rows, const TrialLook& look) {
    ImportRequest request = RequestFor(session, rows);
    request.dryRun = true;
    request.look = look;
    return RunImport(session, request);
}

} // namespace codes
