#include "app/history/again.h"

#include "app/confirmation.h"
#include "app/history/keptChanges.h"
#include "app/history/rejects.h"
#include "core/italianText.h"

namespace history {

namespace {

/// Where each procedure goes on: "ImportArticoliGescom: dopo le prime 1.200 righe (ultima: tabella ...)".
QStringList ReachedLines(const Run& run) {
    QStringList lines;
    for (const ProcedureRun& procedure : run.procedures) {
        if (procedure.hasEnded && procedure.result.outcome == RunResult::Outcome::Done) {
            lines.append(QStringLiteral("%1: già completata").arg(procedure.result.procedure));
        } else if (procedure.reached.rows > 0) {
            lines.append(QStringLiteral("%1: dopo %2 righe scritte, dietro %3")
                             .arg(procedure.result.procedure, italian::NumberText(procedure.reached.rows),
                                  procedure.reached.last));
        } else {
            lines.append(QStringLiteral("%1: dall'inizio").arg(procedure.result.procedure));
        }
    }
    return lines;
}

/// The request with what is asked before; none when its company cannot be worked on.
std::optional<Again> Asked(Session& session, ImportRequest request, ErrorAction errors, const QString& question,
                           const QString& rows) {
    request.choice.errors = errors;
    request.confirmed = true;
    if (!CheckData(session, request.choice)) {
        return std::nullopt;
    }
    const QString what = confirmation::RunDetails(session, *request.choice.origin, CalledBy(request));
    return Again{.request = std::move(request), .question = question, .details = what + u'\n' + rows};
}

/// Table and number of the last row that a run has written and that neither it nor a later one has deleted; none when
/// all are.
std::optional<std::pair<QString, qint64>> LastRow(const History& history, qint64 run) {
    std::optional<std::pair<QString, qint64>> last;
    QSet<std::pair<QString, qint64>> deleted;
    {
        Recordset rows = history.File().ExecuteWC(
            Statement("SELECT C.target_table, C.target_id FROM changes C JOIN procedures P ON P.id = C.procedure WHERE "
                      "P.run >= ? AND C.kind = ?",
                      {run, static_cast<int>(TargetChange::Kind::Deleted)}));
        for (; !rows.Eof(); rows.MoveNext()) {
            deleted.insert({rows.Fields(0).Value().toString(), rows.Fields(1).Value().toLongLong()});
        }
    }
    Recordset rows = history.File().ExecuteWC(Statement(
        "SELECT C.target_table, C.target_id, C.inserted FROM changes C JOIN procedures P ON P.id = C.procedure "
        "WHERE P.run = ? AND C.kind <> ? ORDER BY C.id DESC",
        {run, static_cast<int>(TargetChange::Kind::Deleted)}));
    for (; !rows.Eof() && !last; rows.MoveNext()) {
        const QString table = rows.Fields(0).Value().toString();
        const auto take = [&](qint64 id) {
            if (!deleted.contains({table, id})) {
                last = {table, id};
            }
        };
        if (const QString inserted = rows.Fields(2).Value().toString(); !inserted.isEmpty()) {
            ForEachInserted(inserted, [&](qint64 id, qint64) { take(id); });
        } else {
            take(rows.Fields(1).Value().toLongLong());
        }
    }
    return last;
}

/// Raises `ImportError` where the last row of a run, or of that which it goes on with, is not there.
void CheckLastRow(Session& session, const History& history, Run run) {
    auto last = LastRow(history, run.id);
    while (!last && run.resumes != 0) {
        run = history.Load(run.resumes);
        last = LastRow(history, run.id);
    }
    if (last &&
        session.Quadrix
            .ExecuteWC(
                QStringLiteral("SELECT RECORD_ID FROM %1 WHERE RECORD_ID = %2").arg(last->first).arg(last->second))
            .Eof()) {
        throw ImportError(
            QStringLiteral("l'ultima riga scritta dall'esecuzione %1 non c'è (%2, RECORD_ID %3): il database non è più "
                           "quello di allora, o qualcuno l'ha eliminata. Non si riprende, importare da capo")
                .arg(QString::number(run.id), last->first, QString::number(last->second)));
    }
}

} // namespace

std::vector<ImportRequest> RejectRequests(Session& session, const History& history, qint64 number,
                                          const QStringList& files) {
    const Run run = history.Load(number);
    std::vector<ImportRequest> requests;
    for (const QString& press : PressesOf(history, run, !files.isEmpty())) {
        ImportRequest request;
        request.only =
            files.isEmpty() ? RejectsOf(history, number, press) : MendedRejects(history, number, files, press);
        if (request.only != nullptr) {
            Repeat(session, run, press, request);
            requests.push_back(std::move(request));
        }
    }
    return requests;
}

ImportRequest RestRequest(Session& session, const History& history, qint64 number) {
    const Run run = history.Load(number);
    ImportRequest request;
    request.only = RestOf(history, run);
    CheckLastRow(session, history, run);
    request.resumes = number;
    Repeat(session, run, {}, request);
    return request;
}

std::vector<Again> RejectsAgain(Session& session, const History& history, qint64 number, const QStringList& files,
                                ErrorAction errors) {
    const QString question = files.isEmpty() ? QStringLiteral("Importare di nuovo le righe abbandonate?")
                                             : QStringLiteral("Importare le righe corrette?");
    std::vector<Again> all;
    for (ImportRequest& request : RejectRequests(session, history, number, files)) {
        QString rows = QStringLiteral("Righe: %1, abbandonate dall'esecuzione %2")
                           .arg(italian::NumberText(request.only->Count()), QString::number(number));
        if (!files.isEmpty()) {
            rows += QStringLiteral("\nFile: ") + files.join(QStringLiteral(", "));
        }
        for (const QString& remark : request.only->Remarks()) {
            rows += u'\n' + remark;
        }
        std::optional<Again> again = Asked(session, std::move(request), errors, question, rows);
        if (!again) {
            return {};
        }
        all.push_back(std::move(*again));
    }
    return all;
}

std::optional<Again> RestAgain(Session& session, const History& history, qint64 number, ErrorAction errors) {
    return Asked(session, RestRequest(session, history, number), errors,
                 QStringLiteral("Riprendere l'esecuzione %1 da dove si è interrotta?").arg(number),
                 ReachedLines(history.Load(number)).join(u'\n'));
}

bool CanGoOn(const Run& run) {
    const bool brokeOff = run.ended.isValid() && (run.ending == Ending::Interrupted || run.ending == Ending::Failed);
    return !run.isTrial && !run.isElsewhere && !run.IsUndone() && !run.origin.isEmpty() && !run.procedures.empty() &&
           (run.WasKilled() || brokeOff);
}

qint64 RejectsIn(const Run& run) {
    qint64 rejects = 0;
    for (const ProcedureRun& procedure : run.procedures) {
        rejects += procedure.rejects - procedure.imported;
    }
    return rejects;
}

} // namespace history
