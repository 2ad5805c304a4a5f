#pragma once

#include "core/Session.h"

/// Companies that this program alone writes to during the lifetime of the object: other imports, resets, truncations,
/// merges and sequences on them are refused, whichever machine they run on. What the session has locked already stays
/// so behind its end.
class CompanyLock {
public:
    /// Raises `ImportError` when somebody else works on one of them, naming him, or `SqlError`.
    /// @param companies their codes @param work what is to be done, in words for the operator who is refused meanwhile
    CompanyLock(Session& session, const QStringList& companies, const QString& work);
    ~CompanyLock() { LetGo(); }
    CompanyLock(const CompanyLock&) = delete;
    CompanyLock& operator=(const CompanyLock&) = delete;

private:
    void Take(const QString& company, const QString& work);
    void LetGo() noexcept;

    Session& m_session;
    QStringList m_taken;
};

/// The codes of all companies, for work on what they share. Raises `SqlError`.
QStringList AllCompanies(Session& session);
