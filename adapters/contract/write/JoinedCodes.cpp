#include "adapters/contract/write/JoinedCodes.h"

#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

QString ColumnOf(bool customer) { return customer ? QStringLiteral("COCGE") : QStringLiteral("COFGE"); }

QString KeyOf(const QString& column, const QString& code) { return column + u' ' + mod_ovTools::UpperChars(code); }

} // namespace

QHash<QString, QString>& JoinedCodes::Parties() {
    if (!m_parties) {
        m_parties.emplace();
        Session& session = m_run.GetSession();
        Recordset rows = session.Quadrix.ExecuteWC(QStringLiteral("SELECT TBFLD, TBOLD, TBNEW FROM SYS_IMP WHERE ") +
                                                   Equals(session, "TBNAM", JoinedPartyList(session)));
        for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
            m_parties->insert(KeyOf(row.Text("TBFLD"), row.Text("TBOLD")), row.Text("TBNEW"));
        }
    }
    return *m_parties;
}

QString JoinedCodes::PartyOf(bool customer, const QString& code) {
    return Parties().value(KeyOf(ColumnOf(customer), code));
}

void JoinedCodes::Add(bool customer, const QString& code, const QString& party) {
    if (PartyOf(customer, code) == party) {
        return;
    }
    m_run.Restores(m_parties);
    m_parties->insert(KeyOf(ColumnOf(customer), code), party);
    StoreNewCode(m_run, JoinedPartyList(m_run.GetSession()), ColumnOf(customer), code, party);
}

void JoinedCodes::Drop(bool customer, const QString& code) {
    const QString key = KeyOf(ColumnOf(customer), code);
    if (!Parties().contains(key)) {
        return;
    }
    m_run.Restores(m_parties);
    m_parties->remove(key);
    const Session& session = m_run.GetSession();
    m_run.DeleteRows(QStringLiteral("SYS_IMP"), Equals(session, "TBNAM", JoinedPartyList(session)) + u" AND " +
                                                    Equals(session, "TBFLD", ColumnOf(customer)) + u" AND " +
                                                    Equals(session, "TBOLD", code));
}

void JoinedCodes::DropOf(const QString& party) {
    const QHash<QString, QString>& parties = Parties();
    if (std::none_of(parties.begin(), parties.end(), [&party](const QString& one) { return one == party; })) {
        return;
    }
    m_run.Restores(m_parties);
    m_parties->removeIf([&party](auto one) { return one.value() == party; });
    const Session& session = m_run.GetSession();
    m_run.DeleteRows(QStringLiteral("SYS_IMP"),
                     Equals(session, "TBNAM", JoinedPartyList(session)) + u" AND " + Equals(session, "TBNEW", party));
}

} // namespace contract
