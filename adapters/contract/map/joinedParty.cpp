#include "adapters/contract/map/joinedParty.h"

#include "adapters/contract/map/lookups.h"

namespace contract {

QString JoinedPartyList(const Session& session) { return session.Quadrix.GetFullTableName(QStringLiteral("CON_TRO")); }

QString JoinedParty(Session& session, const QString& column, const QString& code) {
    if (code.isEmpty() || session.Quadrix.IsAbsent(QStringLiteral("SYS_IMP"), QStringLiteral("TBOLD"), code)) {
        return {};
    }
    const QString party = StoredNewCode(session, JoinedPartyList(session), column, code).value_or(QString());
    return party.isEmpty() || !IsThere(session, QStringLiteral("CON_TRO"), QStringLiteral("CDCON"), party) ? QString()
                                                                                                           : party;
}

} // namespace contract
