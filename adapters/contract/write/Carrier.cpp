#include "adapters/contract/write/Carrier.h"

#include "adapters/contract/map/carrierCodes.h"
#include "adapters/contract/map/lookups.h"
#include "sql/mod_ovTools.h"

namespace contract {

/// What an import has kept of a carrier in this company; empty for nothing.
QString Carriers::Kept(const SourceIdentity& source) const {
    const auto [list, field] = CarriersOf(m_run.GetSession(), source.table, source.field);
    return StoredNewCode(m_run.GetSession(), list, field, source.code).value_or(QString());
}

bool Carriers::IsAlone() {
    if (!m_isAlone) {
        m_isAlone = IsOnlyCompany(m_run.GetSession());
    }
    return *m_isAlone;
}

/// What an import has kept in the list of all companies, which earlier releases had alone: where there are several, the
/// code may be another company's, whose carrier has another name and other numbers here.
QString Carriers::OfAll(const SourceIdentity& source) {
    const QString code = StoredNewCode(m_run.GetSession(), source.table, source.field, source.code).value_or(QString());
    return code.isEmpty() || IsAlone() ? code : m_parties.CarrierOfBefore(source, code);
}

/// The code that an earlier import gave a carrier; empty when there is none. One that has gone to a customer or
/// supplier since, when the counterparties were emptied and numbered anew, is none.
QString Carriers::GivenBefore(const SourceIdentity& source) {
    const QString kept = Kept(source);
    const QString code = kept.isEmpty() ? OfAll(source) : kept;
    ovConnection& quadrix = m_run.GetSession().Quadrix;
    return !code.isEmpty() && mod_ovTools::ToBoolean(quadrix.GetDbValue("CON_TRO", "CDCON", code, "COVET", true))
               ? code
               : QString();
}

Placement Carriers::Place(const SourceIdentity& source) {
    const QString told = ToldCode(m_run.GetSession(), source.table, source.field, source.code);
    const QString before = told.isEmpty() ? GivenBefore(source) : told;
    QString code = FindByIdentity(m_run.GetSession(), source.vatNumber, {});
    if (code.isEmpty()) {
        const bool isAnothers = told.isEmpty() && m_placed.value(before, source.code) != source.code; // numbered anew
        code = before.isEmpty() || isAnothers ? m_parties.NextCode() : before;
    } else if (code != before) {
        m_parties.TellMerge(source, code);
    }
    const bool known = m_parties.Exists(code);
    return {code, known, known && code == before && !m_placed.contains(code)};
}

void Carriers::Remember(const SourceIdentity& source, const QString& code) {
    if (code != Kept(source)) {
        const auto [list, field] = CarriersOf(m_run.GetSession(), source.table, source.field);
        StoreNewCode(m_run, list, field, source.code, code);
    }
    const QString ofAll =
        StoredNewCode(m_run.GetSession(), source.table, source.field, source.code).value_or(QString());
    const bool isStale =
        ofAll != code && IsAlone() && ToldCode(m_run.GetSession(), source.table, source.field, source.code).isEmpty();
    if (ofAll.isEmpty() || isStale) {
        StoreNewCode(m_run, source.table, source.field, source.code, code);
    }
    if (!m_placed.contains(code)) {
        m_placed.insert(code, source.code);
        m_run.WhenTakenBack([this, code] { m_placed.remove(code); });
    }
}

} // namespace contract
