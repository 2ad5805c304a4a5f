#include "app/report/FirstDay.h"

#include "adapters/contract/write/Document.h"
#include "app/sequence.h"

#include <QFileInfo>

namespace proof {

namespace {

/// Whether what a run wrote stands in Quadrix, with all rows of its source.
bool Stands(const history::Run& run) {
    return !run.isTrial && !run.IsUndone() && !run.isElsewhere && run.code.isEmpty() &&
           !run.options.contains(history::OnlySomeRows);
}

bool IsOf(const history::Run& run, const history::ProcedureRun& ran, const contract::Origin& origin,
          const contract::Procedure& procedure) {
    return (ran.origin.isEmpty() ? run.origin : ran.origin) == origin.name && ran.result.procedure == procedure.name;
}

/// Whether it has come to the end, and no later one has emptied its documents.
bool IsWhole(const history::History& history, const history::Run& run, const history::ProcedureRun& ran) {
    return ran.hasEnded && ran.result.outcome == RunResult::Outcome::Done &&
           history.EmptiedBehind(run.id, run.company + QStringLiteral("_DOC_%"), ran.id).run == 0;
}

/// A first day, and the run that went by it.
struct DayOfRun {
    QDate day;
    qint64 run = 0; ///< 0: it is that of the settings
};

/// The earliest day that a whole run of a procedure went by: all behind it is there. Without a whole one that of the
/// last; none when it has not run.
/// @param day of the settings, by which all go that are no sequence with a day
std::optional<DayOfRun> EarliestDay(const history::History& history, const std::vector<history::Run>& past,
                                    const contract::Origin& origin, const contract::Procedure& procedure, QDate day) {
    std::optional<DayOfRun> last;
    std::optional<DayOfRun> earliest;
    for (const history::Run& run : past) {
        for (const history::ProcedureRun& ran : run.procedures) {
            if (!Stands(run) || !IsOf(run, ran, origin, procedure)) {
                continue;
            }
            const QDate own = FirstDayOf(run.options);
            const DayOfRun one{own.isValid() ? own : day, own.isValid() ? run.id : 0};
            last = last ? last : one;
            if (IsWhole(history, run, ran) && (!earliest || one.day < earliest->day)) {
                earliest = one;
            }
        }
    }
    return earliest ? earliest : last;
}

} // namespace

std::vector<history::Run> PastOf(Session& session) {
    return QFileInfo::exists(history::FilePath(session.Config.ConfigFile()))
               ? history::History(session).Runs(session.UserManager.Azienda())
               : std::vector<history::Run>();
}

FirstDay::FirstDay(Session& session, const std::vector<history::Run>& past, const contract::Origin& origin,
                   const std::vector<const contract::Procedure*>& procedures)
    : m_session(session),
      m_day(session.DocumentsFrom),
      m_setting(session.DocumentsFromSetting) {
    if (past.empty() || std::none_of(past.begin(), past.end(),
                                     [](const history::Run& run) { return FirstDayOf(run.options).isValid(); })) {
        return;
    }
    const history::History history(session);
    const QDate day = contract::ReadDocumentSettings(session).from;
    std::optional<DayOfRun> latest; // of several procedures: what one of them has left out is not missing
    for (const contract::Procedure* procedure : procedures) {
        const auto one = EarliestDay(history, past, origin, *procedure, day);
        latest = one && (!latest || one->day > latest->day) ? one : latest;
    }
    if (latest && latest->run != 0) {
        m_session.DocumentsFrom = latest->day;
        m_session.DocumentsFromSetting = QStringLiteral("%1, esecuzione %2").arg(FirstDaySetting).arg(latest->run);
    }
}

FirstDay::~FirstDay() {
    m_session.DocumentsFrom = m_day;
    m_session.DocumentsFromSetting = m_setting;
}

} // namespace proof
