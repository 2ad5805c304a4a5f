#include "adapters/contract/write/JoinedCodes.h"

#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QString JoinedTable = QStringLiteral("SYS_IMP");

QString KeyOf(const QString& column, const QString& code) { return column + u' ' + mod_ovTools::UpperChars(code); }

} // namespace

QHash<QString, QString>& JoinedCodes::Parties() {
    if (!m_parties) {
        m_parties.emplace();
        Session& session = m_run.GetSession();
        Recordset rows =
            session.Quadrix.ExecuteWC(QStringLiteral("SELECT TBFLD, TBOLD, TBNEW FROM SYS_IMP WHERE ") + OfList());
        for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
            m_parties->insert(KeyOf(row.Text("TBFLD"), row.Text("TBOLD")), row.Text("TBNEW"));
        }
    }
    return *m_parties;
}

QString JoinedCodes::PartyOf(bool customer, const QString& code) {
    return Parties().value(KeyOf(SourceCodeColumn(customer), code));
}

bool JoinedCodes::HasAny(bool customer, const QString& party) {
    const QString column = SourceCodeColumn(customer) + u' ';
    const QStringList keys = Parties().keys(party);
    return std::any_of(keys.begin(), keys.end(), [&column](const QString& key) { return key.startsWith(column); });
}

void JoinedCodes::Add(bool customer, const QString& code, const QString& party) {
    if (PartyOf(customer, code) == party) {
        return;
    }
    const QString key = KeyOf(SourceCodeColumn(customer), code);
    m_run.RestoresEntry(Parties(), key);
    Parties().insert(key, party);
    StoreNewCode(m_run, JoinedPartyList(m_run.GetSession()), SourceCodeColumn(customer), code, party);
}

void JoinedCodes::Drop(bool customer, const QString& code) {
    if (!Parties().contains(KeyOf(SourceCodeColumn(customer), code))) {
        return;
    }
    Forget(KeyOf(SourceCodeColumn(customer), code));
    Session& session = m_run.GetSession();
    const QString condition = OfList() + u" AND " + Equals(session, "TBFLD", SourceCodeColumn(customer)) + u" AND " +
                              Equals(session, "TBOLD", code);
    m_run.DeleteRows(JoinedTable,
                     Equals("RECORD_ID", IdOfCode(session.Quadrix, JoinedTable, condition, "TBOLD", code)));
}

void JoinedCodes::DropOf(const QString& party) {
    const QStringList keys = Parties().keys(party);
    if (keys.isEmpty()) {
        return;
    }
    for (const QString& key : keys) {
        Forget(key);
    }
    m_run.DeleteRows(JoinedTable, OfList() + u" AND " + Equals(m_run.GetSession(), "TBNEW", party));
}

void JoinedCodes::Forget(const QString& key) {
    m_run.RestoresEntry(Parties(), key);
    Parties().remove(key);
}

QString JoinedCodes::OfList() const { return Equals(m_run.GetSession(), "TBNAM", JoinedPartyList(m_run.GetSession())); }

} // namespace contract
