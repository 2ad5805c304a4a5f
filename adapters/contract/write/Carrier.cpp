#include "adapters/contract/write/Carrier.h"

#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

/// The row of SYS_IMP that tells what became of a carrier.
QString TranslationOf(const Session& session, const SourceIdentity& source) {
    return Equals(session, "TBNAM", source.table) + " AND " + Equals(session, "TBFLD", source.field) + " AND " +
           Equals(session, "TBOLD", source.code);
}

/// The code that a carrier has in SYS_IMP; empty when it has none. A code that an earlier import gave it may have gone
/// to a customer or supplier since, when the counterparties were emptied and numbered anew: then it is none.
QString CodeBefore(Session& session, const SourceIdentity& source) {
    const QString code = modImport::GetNewCode(session, source.table, source.field, source.code, false);
    if (code.isEmpty()) {
        return {};
    }
    const bool byImport =
        IdWhere(session, "SYS_IMP", TranslationOf(session, source) + " AND " + OfImports(session)) != 0;
    const bool isCarrier = mod_ovTools::ToBoolean(session.Quadrix.GetDbValue("CON_TRO", "CDCON", code, "COVET", true));
    return byImport && !isCarrier ? QString() : code;
}

} // namespace

Placement PlaceCarrier(ImportRun& run, const CounterpartyRegister& parties, const SourceIdentity& source) {
    const QString before = CodeBefore(run.GetSession(), source);
    QString code = FindByIdentity(run.GetSession(), source.vatNumber, {});
    if (code.isEmpty()) {
        code = before.isEmpty() ? parties.NextCode() : before;
    } else if (code != before) {
        parties.TellMerge(source, code);
    }
    return {code, parties.Exists(code)};
}

void RememberCarrier(ImportRun& run, const SourceIdentity& source, const QString& code) {
    if (code != CodeBefore(run.GetSession(), source)) {
        StoreNewCode(run, source.table, source.field, source.code, code);
    }
}

} // namespace contract
