#include "app/emptying.h"

#include "app/CompanyLock.h"
#include "app/history/Recorder.h"
#include "app/mergeRecord.h"

namespace {

/// What was emptied as the account of a run without source rows.
RunResult AccountOf(const Session& session, const EmptyingWork& work, const EmptyingResult& emptied,
                    qint64 errorsBefore, double start) {
    RunResult account;
    account.module = work.module;
    account.procedure = work.procedure;
    account.outcome = emptied.outcome;
    for (const EmptyingResult::Table& table : emptied.tables) {
        account.emptied.append({table.name, table.rows});
    }
    account.details = emptied.told;
    for (const ErrorEntry& entry : session.Errors.Since(errorsBefore)) {
        account.errors.append(entry.message);
    }
    account.seconds = session.Person.WorkedSeconds() - start;
    return account;
}

QString LogOf(const EmptyingResult& result) {
    QStringList lines;
    for (const EmptyingResult::Table& table : result.tables) {
        lines.append(EmptiedLine(table));
    }
    return (lines + result.told).join(u'\n');
}

} // namespace

EmptyingResult EmptyAndKeep(Session& session, const EmptyingWork& work,
                            const std::function<void(EmptyingResult&)>& empty) {
    EmptyingResult result;
    const qint64 errorsBefore = session.Errors.Count();
    const double start = session.Person.WorkedSeconds();
    try {
        const CompanyLock lock(session, work.companies, work.name);
        std::optional<history::Recorder> recorder;
        if (session.Observer == nullptr) {
            recorder.emplace(session, history::RunFacts{.work = work.name, .options = work.options});
        }
        session.Observer->ProcedureBegins(work.module, work.procedure);
        try {
            empty(result);
            for (const QString& company : work.companies) {
                merge::Records(session).Forget(company);
            }
        } catch (...) {
            result.outcome = RunResult::Outcome::Failed;
            session.Errors.Monitoring(work.module, work.procedure);
        }
        if (recorder) {
            recorder->Logs(LogOf(result));
        }
        session.Observer->ProcedureEnds(AccountOf(session, work, result, errorsBefore, start));
    } catch (...) {
        result.outcome = RunResult::Outcome::Failed;
        session.Errors.Monitoring(work.module, work.procedure);
    }
    return result;
}
