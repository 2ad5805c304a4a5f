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
    joining.marks = MarksOf(source, *party, joining.isAgain);
    joining.ownLists = ListsThatAreThere(m_run.GetSession(), party->code, party->ownLists);
    return joining;
}

void CounterpartyRegister::BeginParty(const SourceIdentity& source, const QString& code) {
    m_joined.DropOf(code);
    for (const bool customer : {true, false}) {
        if (HasRole(source.roles, customer)) {
            m_joined.Drop(customer, source.code);
            m_run.Remember(m_joinedNow, InRole(customer, source.code));
        }
    }
    if (source.marks.cancelled || source.marks.blocked) {
        RememberMarks(code, {source.marks.cancelled.value_or(false), source.marks.blocked.value_or(false), false});
    }
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

/// The marks that a counterparty loses to a row that it becomes one with: those that all rows before had, where no hand
/// has been at it.
PartyMarks CounterpartyRegister::MarksOf(const SourceIdentity& source, const Party& party, bool isAgain) {
    if (!source.marks.cancelled && !source.marks.blocked) {
        return {};
    }
    const bool isFirst = !m_metMarks.contains(party.code);
    MetMarks met = isFirst ? MetMarks{.isByHand = party.isByHand} : m_metMarks.value(party.code);
    const auto follow = [&](std::optional<bool> told, bool isMarked, bool hadAll,
                            const MarkWords& words) -> std::optional<bool> {
        if (isAgain || told.value_or(isMarked) == isMarked) {
            return std::nullopt;
        }
        const bool clears = isMarked && !met.isByHand && (isFirst ? party.isUntouched : hadAll);
        m_run.Log(DifferentMark(words, m_run.RowKey(), party.code, isMarked, clears));
        return clears ? std::optional<bool>(false) : std::optional<bool>();
    };
    const PartyMarks marks{follow(source.marks.cancelled, party.isCancelled, met.cancelled, CancelledWords),
                           follow(source.marks.blocked, party.isBlocked, met.blocked, BlockedWords)};
    met.cancelled = met.cancelled && source.marks.cancelled.value_or(false);
    met.blocked = met.blocked && source.marks.blocked.value_or(false);
    RememberMarks(party.code, met);
    return marks;
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
