#pragma once

#include "adapters/contract/write/CounterpartyRegister.h"

namespace contract {

/// The carriers of a run. A carrier has no column for its code of the source, as customers and suppliers have: SYS_IMP
/// tells what became of it, in a list of the company (`CarriersOf`), and in that of the source, which all companies
/// share, of the first one. Every operation raises as the register does.
class Carriers {
public:
    Carriers(ImportRun& run, const CounterpartyRegister& parties)
        : m_run(run),
          m_parties(parties) {}

    /// Finds the counterparty of a carrier: the one with its VAT number; else the one that SYS_IMP tells, by somebody's
    /// word or of an earlier import; else the next free code.
    Placement Place(const SourceIdentity& source);
    /// Stores in SYS_IMP what became of a carrier, unless it stands there.
    void Remember(const SourceIdentity& source, const QString& code);

private:
    QString Kept(const SourceIdentity& source) const;
    QString GivenBefore(const SourceIdentity& source);
    QString OfAll(const SourceIdentity& source);
    bool IsAlone();

    ImportRun& m_run;
    const CounterpartyRegister& m_parties;
    QHash<QString, QString> m_placed; ///< CDCON: the carrier of the source that this run gave it to first
    std::optional<bool> m_isAlone;    ///< `IsOnlyCompany`; none before somebody asks
};

} // namespace contract
