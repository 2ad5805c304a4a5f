#pragma once

#include "app/history/History.h"
#include "app/importFlow.h"

namespace proof {

/// The runs of the company under work that are kept, the latest first.
std::vector<history::Run> PastOf(Session& session);

/// While it lives, documents are read from the day on that a sequence went by when it imported them: what it left out
/// on purpose is not missing, unless another run has imported it.
class FirstDay {
public:
    /// Takes the earliest day of the whole runs of a procedure that stand, where that is of such a sequence; of several
    /// procedures that of the latest day. Raises `SqlError`, or `ImportError` when DOC_DateStart is no date.
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
