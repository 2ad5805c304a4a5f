#pragma once

#include "app/history/History.h"
#include "app/importFlow.h"

namespace proof {

/// The runs of the company under work that are kept, the latest first.
std::vector<history::Run> PastOf(Session& session);

/// While it lives, documents are read from the day on that a sequence went by when it imported them: what it left out
/// on purpose is not missing.
class FirstDay {
public:
    /// Takes the day where the last of the runs that have imported one of some procedures is such a sequence.
    /// @param past see `PastOf`
    FirstDay(Session& session, const std::vector<history::Run>& past, const contract::Origin& origin,
             const std::vector<const contract::Procedure*>& procedures);
    ~FirstDay();
    FirstDay(const FirstDay&) = delete;
    FirstDay& operator=(const FirstDay&) = delete;

private:
    Session& m_session;
    QDate m_day;
    QString m_setting;
};

} // namespace proof
