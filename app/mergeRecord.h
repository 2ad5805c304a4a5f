#pragma once

#include "app/mergeParts.h"

namespace merge {

/// The merges with references that the target database remembers, in its table SYS_FUS: whoever works on the database
/// next, and from whatever machine, knows that the references of a company hold the codes of another.
class Records {
public:
    explicit Records(Session& session);

    /// The last one out of a company; none when there is none, or no table.
    std::optional<modMain::EarlierMerge> LastOf(const QString& company) const;

    /// Makes the table when it is missing. Raises `ImportError` telling what to do when it cannot be made.
    void Prepare();
    /// Notes that a merge begins, or that an interrupted one is taken up.
    void Begin(const Companies& companies, const std::optional<modMain::EarlierMerge>& last);
    /// Notes that it has ended well.
    void End();

private:
    /// Within a trial nothing is noted: it must leave no trace, and making a table ends the transaction of some
    /// engines.
    bool IsOff() const { return m_session.Quadrix.InTransaction(); }
    bool IsThere() const;

    Session& m_session;
    qint64 m_id = 0; ///< RECORD_ID of the merge under way; 0: it is not noted
};

/// What whoever imports into a company must know of a merge with references out of it: its rows hold the codes of
/// another company since. Empty without one. @param company its code
QString MergedText(Session& session, const QString& company);

} // namespace merge
