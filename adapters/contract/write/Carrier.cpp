#include "adapters/contract/write/Carrier.h"

#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

/// The row of SYS_IMP that tells what became of a carrier.
QString TranslationOf(const Session& session, const SourceIdentity& source) {
    return Equals(session, "TBNAM", source.table) + " AND " + Equals(session, "TBFLD", source.field) + " AND " +
           Equals(session, "TBOLD", source.code);
}

/// Whether an import has written it, and not a person.
bool IsOfImport(Session& session, const SourceIdentity& source) {
    return IdOfCode(session.Quadrix, "SYS_IMP", TranslationOf(session, source) + " AND " + OfImports(session), "TBOLD",
                    source.code) != 0;
}

} // namespace

/// The code that a carrier has in SYS_IMP; empty when it has none. A code that an earlier import gave it may have gone
/// to a customer or supplier since, when the counterparties were emptied and numbered anew: then it is none.
QString Carriers::CodeBefore(const SourceIdentity& source) const {
    Session& session = m_run.GetSession();
    const QString code = modImport::GetNewCode(session, source.table, source.field, source.code, false);
    if (code.isEmpty() || !IsOfImport(session, source)) {
        return code;
    }
    const bool isCarrier = mod_ovTools::ToBoolean(session.Quadrix.GetDbValue("CON_TRO", "CDCON", code, "COVET", true));
    return isCarrier ? code : QString();
}

Placement Carriers::Place(const SourceIdentity& source) const {
    const QString before = CodeBefore(source);
    QString code = FindByIdentity(m_run.GetSession(), source.vatNumber, {});
    if (code.isEmpty()) {
        const bool isAnothers = m_placed.value(before, source.code) != source.code && // numbered anew
                                IsOfImport(m_run.GetSession(), source);
        code = before.isEmpty() || isAnothers ? m_parties.NextCode() : before;
    } else if (code != before) {
        m_parties.TellMerge(source, code);
    }
    const bool known = m_parties.Exists(code);
    return {code, known, known && code == before && !m_placed.contains(code)};
}

void Carriers::Remember(const SourceIdentity& source, const QString& code) {
    if (code != CodeBefore(source)) {
        StoreNewCode(m_run, source.table, source.field, source.code, code);
    }
    if (!m_placed.contains(code)) {
        m_placed.insert(code, source.code);
        m_run.WhenTakenBack([this, code] { m_placed.remove(code); });
    }
}

} // namespace contract
