// What becomes of a counterparty that several rows of the source are.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/CounterpartyRegister.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

QString InRole(bool customer, const QString& code) { return (customer ? u'C' : u'F') + mod_ovTools::UpperChars(code); }

bool HasRole(const Roles& roles, bool customer) { return customer ? roles.customer : roles.supplier; }

/// A mark in the words of the log.
struct MarkWords {
    QString label;
    QString adjective;
};

const MarkWords CancelledWords{QStringLiteral("ANNULLATA SOLO IN PARTE"), QStringLiteral("annullata")};
const MarkWords BlockedWords{QStringLiteral("BLOCCATA SOLO IN PARTE"), QStringLiteral("bloccata")};

/// "tabella ... è annullata, la controparte 000001 no: resta com'è".
QString DifferentMark(const MarkWords& words, const QString& row, const QString& party, bool isOfParty, bool clears) {
    return QStringLiteral("%1: %2 %3 %4, la controparte %5 %6: %7")
        .arg(words.label, row, isOfParty ? QStringLiteral("non è") : QStringLiteral("è"), words.adjective, party,
             isOfParty ? QStringLiteral("sì") : QStringLiteral("no"),
             clears ? QStringLiteral("non lo è più") : QStringLiteral("resta com'è"));
}

/// The lists of a counterparty's own code that are there: COLSC, COLSF.
QStringList ListsThatAreThere(Session& session, const QString& party, QStringList columns) {
    columns.removeIf([&](const QString&) { return !IsThere(session, "LIS_TES", "CDLIS", party); });
    return columns;
}

} // namespace

Joining CounterpartyRegister::Join(const SourceIdentity& source, const Placement& place) {
    const auto party = place.known ? Find(place.code) : std::nullopt;
    Joining joining{.isAgain = place.isAgain};
    if (!party) {
        BeginParty(source, place.code);
        return joining;
    }
    for (const bool customer : {true, false}) {
        if (HasRole(source.roles, customer)) {
            JoinRole(source, *party, customer, joining);
        }
    }
    joining.isRevived = Revives(source, *party, joining.isAgain);
    joining.ownLists = ListsThatAreThere(m_run.GetSession(), party->code, party->ownLists);
    return joining;
}

void CounterpartyRegister::BeginParty(const SourceIdentity& source, const QString& code) {
    m_joined.DropOf(code);
    for (const bool customer : {true, false}) {
        if (HasRole(source.roles, customer)) {
            KeepOwner(source, customer, code);
            m_run.Remember(m_joinedNow, InRole(customer, source.code));
        }
    }
    if (source.marks.cancelled || source.marks.blocked) {
        RememberMarks(code, {source.marks.cancelled.value_or(false), false});
    }
}

/// Where another counterparty has the source code too, which may have been another one's before, documents of the
/// source are those of the new one.
void CounterpartyRegister::KeepOwner(const SourceIdentity& source, bool customer, const QString& code) {
    const std::vector<Party> others = OfSourceCode(source, customer);
    if (others.empty()) {
        m_joined.Drop(customer, source.code);
        return;
    }
    m_run.Log(QStringLiteral("CODICE DI DUE CONTROPARTI: %1: il codice '%2' è di %3 e da ora di %4, che i documenti "
                             "trovano")
                  .arg(m_run.RowKey(), source.code, others.front().code, code));
    m_joined.Add(customer, source.code, code);
}

void CounterpartyRegister::JoinRole(const SourceIdentity& source, const Party& party, bool customer, Joining& joining) {
    const QString& there = customer ? party.customer : party.supplier;
    const bool has = there.compare(source.code, Qt::CaseInsensitive) == 0;
    const bool isBeside = m_joined.PartyOf(customer, source.code) == party.code;
    const QString code = InRole(customer, source.code);
    joining.isAgain = joining.isAgain || ((has || isBeside) && !m_joinedNow.contains(code));
    if (has) {
        return;
    }
    if (!isBeside) {
        m_run.Remember(m_joinedNow, code);
    }
    if (KeepsCode(source, party, customer)) {
        (customer ? joining.keeps.customer : joining.keeps.supplier) = true;
        m_joined.Add(customer, source.code, party.code);
        return;
    }
    m_joined.Drop(customer, source.code);
    if (!there.isEmpty()) {
        m_joined.Add(customer, there, party.code);
    }
}

/// Whether a counterparty is cancelled no longer for a row that it becomes one with: cancelled is who is so in every
/// row, unless a hand has been at it. Nobody is unblocked because another row, that of his as a supplier, says nothing
/// of it.
bool CounterpartyRegister::Revives(const SourceIdentity& source, const Party& party, bool isAgain) {
    if (!source.marks.cancelled && !source.marks.blocked) {
        return false;
    }
    const auto differs = [&](std::optional<bool> told, bool isMarked) {
        return !isAgain && told.value_or(isMarked) != isMarked;
    };
    const bool isFirst = !m_metMarks.contains(party.code);
    MetMarks met = isFirst ? MetMarks{.isByHand = party.isByHand} : m_metMarks.value(party.code);
    bool revives = false;
    if (differs(source.marks.cancelled, party.isCancelled)) {
        revives = party.isCancelled && !met.isByHand && (isFirst ? party.isUntouched : met.cancelled);
        m_run.Log(DifferentMark(CancelledWords, m_run.RowKey(), party.code, party.isCancelled, revives));
    }
    if (differs(source.marks.blocked, party.isBlocked)) {
        m_run.Log(DifferentMark(BlockedWords, m_run.RowKey(), party.code, party.isBlocked, false));
    }
    met.cancelled = met.cancelled && source.marks.cancelled.value_or(false);
    RememberMarks(party.code, met);
    return revives;
}

void CounterpartyRegister::RememberMarks(const QString& code, const MetMarks& marks) {
    const auto before = m_metMarks.constFind(code);
    m_run.WhenTakenBack(
        [this, code, had = before != m_metMarks.cend(), old = before == m_metMarks.cend() ? MetMarks{} : *before] {
            if (had) {
                m_metMarks.insert(code, old);
            } else {
                m_metMarks.remove(code);
            }
        });
    m_metMarks.insert(code, marks);
}

} // namespace contract
