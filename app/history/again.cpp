#include "app/history/again.h"

#include "app/confirmation.h"
#include "app/history/rejects.h"

#include <QLocale>

namespace history {

namespace {

QString Number(qint64 number) { return QLocale(QLocale::Italian, QLocale::Italy).toString(number); }

/// Where each procedure goes on: "ImportArticoliGescom: dopo le prime 1.200 righe (ultima: tabella ...)".
QStringList ReachedLines(const Run& run) {
    QStringList lines;
    for (const ProcedureRun& procedure : run.procedures) {
        if (procedure.hasEnded && procedure.result.outcome == RunResult::Outcome::Done) {
            lines.append(QStringLiteral("%1: già completata").arg(procedure.result.procedure));
        } else if (procedure.reached.rows > 0) {
            lines.append(QStringLiteral("%1: dopo %2 righe scritte, dietro %3")
                             .arg(procedure.result.procedure, Number(procedure.reached.rows), procedure.reached.last));
        } else {
            lines.append(QStringLiteral("%1: dall'inizio").arg(procedure.result.procedure));
        }
    }
    return lines;
}

/// Fills in what both ways have in common; false when the company cannot be worked on.
bool Prepare(Session& session, const Run& run, const QString& press, ErrorAction errors, const QString& rows,
             Again& again) {
    Repeat(session, run, press, again.request);
    again.request.choice.errors = errors;
    again.request.reset = false;
    again.request.confirmed = true;
    if (!CheckData(session, again.request.choice)) {
        return false;
    }
    again.details =
        confirmation::RunDetails(session, *again.request.choice.origin, CalledBy(again.request)) + u'\n' + rows;
    return true;
}

} // namespace

std::vector<Again> RejectsAgain(Session& session, const History& history, qint64 number, const QStringList& files,
                                ErrorAction errors) {
    const Run run = history.Load(number);
    std::vector<Again> all;
    for (const QString& press : PressesOf(history, run, !files.isEmpty())) {
        Again again;
        again.request.only =
            files.isEmpty() ? RejectsOf(history, number, press) : MendedRejects(history, number, files, press);
        if (again.request.only == nullptr) {
            continue;
        }
        const qint64 rows = again.request.only->Count();
        again.question = files.isEmpty() ? QStringLiteral("Importare di nuovo le righe abbandonate?")
                                         : QStringLiteral("Importare le righe corrette?");
        QString text =
            QStringLiteral("Righe: %1, abbandonate dall'esecuzione %2").arg(Number(rows), QString::number(number));
        if (!files.isEmpty()) {
            text += QStringLiteral("\nFile: ") + files.join(QStringLiteral(", "));
        }
        if (!Prepare(session, run, press, errors, text, again)) {
            return {};
        }
        all.push_back(std::move(again));
    }
    return all;
}

std::optional<Again> RestAgain(Session& session, const History& history, qint64 number, ErrorAction errors) {
    const Run run = history.Load(number);
    Again again;
    again.request.only = RestOf(history, run);
    again.request.resumes = number;
    again.question = QStringLiteral("Riprendere l'esecuzione %1 da dove si è interrotta?").arg(number);
    const QString text = ReachedLines(run).join(u'\n');
    return Prepare(session, run, {}, errors, text, again) ? std::optional(again) : std::nullopt;
}

bool CanGoOn(const Run& run) {
    const bool brokeOff = run.ended.isValid() && (run.ending == Ending::Interrupted || run.ending == Ending::Failed);
    return !run.isTrial && !run.IsUndone() && !run.origin.isEmpty() && !run.procedures.empty() &&
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
