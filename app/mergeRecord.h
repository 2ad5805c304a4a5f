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
    /// Takes up an interrupted merge: its end is that one's.
    void TakeUp(const modMain::EarlierMerge& interrupted);
    /// Notes that a merge begins, in the transaction of what it does first; one that is noted already is not again.
    void Begin(const Companies& companies);
    /// Notes that it has ended well.
    void End();

    /// To be called when a company was emptied: once nothing in it refers to a counterparty any more, its merge binds
    /// nobody. Noted as a merge into itself, for older releases too.
    void Forget(const QString& company);

private:
    Session& m_session;
    /// Within a trial nothing is noted: it must leave no trace, and making a table ends the transaction of some
    /// engines.
    bool m_isOff;
    qint64 m_id = 0; ///< RECORD_ID of the merge under way; 0: it is not noted
};

/// The codes of the companies whose rows hold the codes of a company: their last merge with references went into it.
QStringList MergedInto(ovConnection& quadrix, const QString& company);

/// What whoever imports into a company must know of a merge with references out of it: its rows hold the codes of
/// another company since. Empty without one. @param company its code
QString MergedText(Session& session, const QString& company);

} // namespace merge
