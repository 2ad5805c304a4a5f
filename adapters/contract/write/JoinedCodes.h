#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// The source codes whose counterparty, the one that an import of the code has written last, is not the only one with
/// it in COCGE or COFGE: another row that is the same counterparty has the column, or another counterparty has the code
/// too. SYS_IMP keeps them, and `JoinedParty` finds by them. Every operation raises `SqlError`.
class JoinedCodes {
public:
    explicit JoinedCodes(ImportRun& run)
        : m_run(run) {}

    /// CDCON of the counterparty of a code of that role; empty when it is none of these.
    QString PartyOf(bool customer, const QString& code);
    /// Whether a counterparty has such codes of that role.
    bool HasAny(bool customer, const QString& party);
    /// Keeps a code as that of a counterparty, in place of another one.
    void Add(bool customer, const QString& code, const QString& party);
    /// Forgets a code that its counterparty alone has in the column from now on.
    void Drop(bool customer, const QString& code);
    /// Forgets the codes of a counterparty of before, whose CDCON goes to a new one.
    void DropOf(const QString& party);

private:
    QHash<QString, QString>& Parties();
    void Forget(const QString& key);
    QString OfList() const;

    ImportRun& m_run;
    std::optional<QHash<QString, QString>> m_parties; ///< by column and code; none before somebody asks
};

} // namespace contract
