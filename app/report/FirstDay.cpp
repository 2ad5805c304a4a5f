#include "app/report/FirstDay.h"

#include "app/sequence.h"

#include <QFileInfo>

namespace proof {

namespace {

/// Whether a run has imported, with all rows of its source, one of some procedures of an origin.
bool HasImported(const history::Run& run, const contract::Origin& origin,
                 const std::vector<const contract::Procedure*>& procedures) {
    const bool isWhole = !run.isTrial && !run.IsUndone() && !run.isElsewhere && run.code.isEmpty() &&
                         !run.options.contains(history::OnlySomeRows);
    const auto isOne = [&](const history::ProcedureRun& ran) {
        return (ran.origin.isEmpty() ? run.origin : ran.origin) == origin.name &&
               std::any_of(procedures.begin(), procedures.end(),
                           [&ran](const auto* each) { return each->name == ran.result.procedure; });
    };
    return isWhole && std::any_of(run.procedures.begin(), run.procedures.end(), isOne);
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
    const auto last = std::find_if(past.begin(), past.end(),
                                   [&](const history::Run& run) { return HasImported(run, origin, procedures); });
    if (last == past.end()) {
        return;
    }
    if (const QDate day = FirstDayOf(last->options); day.isValid()) {
        m_session.DocumentsFrom = day;
        m_session.DocumentsFromSetting = QStringLiteral("%1, esecuzione %2").arg(FirstDaySetting).arg(last->id);
    }
}

FirstDay::~FirstDay() {
    m_session.DocumentsFrom = m_day;
    m_session.DocumentsFromSetting = m_setting;
}

} // namespace proof
