// What becomes of a counterparty that several rows of the source are.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/CounterpartyRegister.h"
#include "core/modImport.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

QString InRole(bool customer, const QString& code) { return (customer ? u'C' : u'F') + mod_ovTools::UpperChars(code); }

bool HasRole(const Roles& roles, bool customer) { return customer ? roles.customer : roles.supplier; }

bool IsCode(const QString& there, const QString& code) {
    return !there.isEmpty() && there.compare(code, Qt::CaseInsensitive) == 0;
}

/// A mark in the words of the log.
struct MarkWords {
    QString label; ///< with what stands behind it
    QString adjective;
};

const MarkWords CancelledWords{QStringLiteral("ANNULLATA SOLO IN PARTE: "), QStringLiteral("annullata")};
const MarkWords BlockedWords{QStringLiteral("BLOCCATA SOLO IN PARTE: "), QStringLiteral("bloccata")};

/// "tabella ... è annullata, la controparte 000001 no: resta com'è".
QString DifferentMark(const MarkWords& words, const QString& row, const QString& party, bool isOfParty, bool clears) {
    return QStringLiteral("%1%2 %3 %4, la controparte %5 %6: %7")
        .arg(words.label, row, isOfParty ? QStringLiteral("non è") : QStringLiteral("è"), words.adjective, party,
             isOfParty ? QStringLiteral("sì") : QStringLiteral("no"),
             clears ? QStringLiteral("non lo è più") : QStringLiteral("resta com'è"));
}

/// The lists of a counterparty's own code that are there: COLSC, COLSF.
QStringList ListsThatAreThere(Session& session, const QString& party, QStringList columns) {
    columns.removeIf([&](const QString&) { return !IsThere(session, "LIS_TES", "CDLIS", party); });
    return columns;
}

template<class ValueOf>
bool IsAnyNotZero(const QStringList& columns, const ValueOf& value) {
    return std::any_of(columns.begin(), columns.end(), [&value](const QString& column) {
        return mod_ovTools::ReadNumber(value(column)).value_or(0) != 0;
    });
}

} // namespace

const QStringList& DiscountColumns(bool customer) {
    static const QStringList ofCustomers{"COSC1", "COSC2", "COSC3"};
    static const QStringList ofSuppliers{"COSF1", "COSF2", "COSF3"};
    return customer ? ofCustomers : ofSuppliers;
}

/// Whether somebody has told that a source row is that counterparty; of no import that writes the role anyhow.
bool CounterpartyRegister::IsTold(const SourceIdentity& source, const Party& party) const {
    return !m_again && m_usual != TakenCode::Update &&
           IsCode(modImport::GetNewCode(m_run.GetSession(), source.table, source.field, source.code, false),
                  party.code);
}

/// Finds the roles that a counterparty keeps as they are, since the source row is a stranger to it; returns what
/// becomes of it, for the log. An origin that updates who has the code writes the role all the same.
/// @param mayBeOwn whether a role that has the code of the source row is one that an earlier run has given it for that
QString CounterpartyRegister::KeepRoles(const SourceIdentity& source, const Party& party, bool mayBeOwn) const {
    m_kept = {};
    bool isLacking = false;
    bool isWritten = false;
    for (const bool customer : {true, false}) {
        if (!HasRole(source.roles, customer)) {
            continue;
        }
        const bool isThere = customer ? party.isCustomer : party.isSupplier;
        const bool isOwn = mayBeOwn && !m_again && IsCode(customer ? party.customer : party.supplier, source.code);
        const bool isKept = isThere && !isOwn && m_usual != TakenCode::Update;
        (customer ? m_kept.customer : m_kept.supplier) = isKept;
        isLacking = isLacking || !isThere;
        isWritten = isWritten || (isThere && !isKept);
    }
    return isWritten   ? QStringLiteral("la riga che c'è resta com'è, salvo ciò che riguarda il ruolo di questa")
           : isLacking ? QStringLiteral("la riga che c'è resta com'è, e prende il ruolo che le manca")
                       : QStringLiteral("la riga che c'è resta com'è");
}

Roles CounterpartyRegister::RolesToWrite(const Roles& roles) const {
    Roles written = roles;
    written.customer = roles.customer && !m_kept.customer;
    written.supplier = roles.supplier && !m_kept.supplier;
    return written;
}

Joining CounterpartyRegister::Join(const SourceIdentity& source, const Placement& place) {
    if (source.marks.cancelled != true) {
        m_run.Remember(m_cancelled->inUse, place.code);
    }
    const auto party = place.known ? Find(place.code) : std::nullopt;
    Joining joining{.isAgain = place.isAgain};
    if (!party) {
        BeginParty(source, place.code);
        m_held.reset();
        return joining;
    }
    for (const bool customer : {true, false}) {
        if (HasRole(source.roles, customer)) {
            JoinRole(source, *party, customer, joining);
        }
    }
    m_held.reset();
    const Roles written = RolesToWrite(source.roles);
    joining.isStranger = (m_kept.customer || m_kept.supplier) && !written.customer && !written.supplier;
    joining.isRevived = Revives(source, *party, joining.isAgain);
    joining.ownLists = ListsThatAreThere(m_run.GetSession(), party->code, party->ownLists);
    return joining;
}

void CounterpartyRegister::BeginParty(const SourceIdentity& source, const QString& code) {
    m_joined.DropOf(code);
    for (const bool customer : {true, false}) {
        if (HasRole(source.roles, customer)) {
            KeepOwner(source, customer, code, true);
            m_run.Remember(m_joinedNow, InRole(customer, source.code));
        }
    }
    if (source.marks.cancelled || source.marks.blocked) {
        m_run.RestoresEntry(m_metMarks, code);
        m_metMarks.insert(code, {source.marks.cancelled.value_or(false), false});
    }
}

/// Who else has the source code of a row in the column of a role.
std::vector<CounterpartyRegister::Party> CounterpartyRegister::OtherHolders(const SourceIdentity& source, bool customer,
                                                                            const QString& party) const {
    const bool isRead = m_held && m_held->customer == customer && m_held->code == source.code;
    std::vector<Party> others = isRead ? m_held->parties : Holders(source.code, customer);
    std::erase_if(others, [&party](const Party& one) { return one.code == party; });
    return others;
}

/// Documents of the source code are those of the counterparty that the row is written into, as the list tells unless
/// that is the only one with the code; where they were another one's before, the log tells it.
/// @param holds whether the counterparty has the column of the role from now on
void CounterpartyRegister::KeepOwner(const SourceIdentity& source, bool customer, const QString& party, bool holds) {
    const std::vector<Party> others = OtherHolders(source, customer, party);
    QString before = m_joined.PartyOf(customer, source.code);
    if (before.isEmpty() || (before != party && !Exists(before))) {
        before = others.empty() ? party : others.front().code;
    }
    if (before != party) {
        m_run.Log(QStringLiteral("CODICE DI DUE CONTROPARTI: %1: il codice '%2' è di %3 e da ora di %4, che i "
                                 "documenti trovano")
                      .arg(m_run.RowKey(), source.code, before, party));
    }
    if (holds && others.empty()) {
        m_joined.Drop(customer, source.code);
    } else {
        m_joined.Add(customer, source.code, party);
    }
}

/// The code that another row has taken the column of stands beside it, unless an import has made it another one's
/// since.
void CounterpartyRegister::KeepDisplaced(bool customer, const QString& code, const QString& party) {
    const QString owner = m_joined.PartyOf(customer, code);
    if (owner.isEmpty() || !Exists(owner)) {
        m_joined.Add(customer, code, party);
    }
}

void CounterpartyRegister::JoinRole(const SourceIdentity& source, const Party& party, bool customer, Joining& joining) {
    const QString& there = customer ? party.customer : party.supplier;
    const bool has = there.compare(source.code, Qt::CaseInsensitive) == 0;
    const bool isBeside = !has && m_joined.PartyOf(customer, source.code) == party.code;
    const bool keeps = HasRole(m_kept, customer) || (!has && KeepsCode(source, party, customer));
    const QString code = InRole(customer, source.code);
    const bool isAgain = (has || isBeside) && !m_joinedNow.contains(code);
    joining.isAgain = joining.isAgain || isAgain;
    (customer ? joining.clears.customer : joining.clears.supplier) = isAgain && Clears(party, customer);
    if (!has && !isBeside) {
        m_run.Remember(m_joinedNow, code);
    }
    if (keeps) {
        (customer ? joining.keeps.customer : joining.keeps.supplier) = true;
    }
    KeepOwner(source, customer, party.code, has || !keeps);
    if (!has && !keeps && !there.isEmpty()) {
        KeepDisplaced(customer, there, party.code);
    }
}

/// Whether the discounts of a role are those of the source row alone: another row of the same counterparty, of this run
/// or one that the run does not come to, may have given them.
bool CounterpartyRegister::Clears(const Party& party, bool customer) {
    return !m_discounted.contains(InRole(customer, party.code)) &&
           !(m_run.IsPart() && m_joined.HasAny(customer, party.code));
}

void CounterpartyRegister::KeepDiscounts(TargetRow& target, const Roles& roles, const Placement& place,
                                         const Joining& joining) {
    for (const bool customer : {true, false}) {
        const QStringList& columns = DiscountColumns(customer);
        if (!HasRole(roles, customer)) {
            continue;
        }
        if (IsAnyNotZero(columns, [&target](const QString& column) { return target.Value(column); })) {
            m_run.Remember(m_discounted, InRole(customer, place.code));
        } else if (place.known && !HasRole(joining.clears, customer) && HasDiscounts(place.code, columns)) {
            std::for_each(columns.begin(), columns.end(), [&target](const QString& column) { target.Unset(column); });
        }
    }
}

bool CounterpartyRegister::HasDiscounts(const QString& party, const QStringList& columns) const {
    Session& session = m_run.GetSession();
    const Recordset there = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT %1 FROM %2 WHERE ").arg(columns.join(QStringLiteral(", ")), m_run.FullName("CON_TRO")) +
        Equals(session, "CDCON", party));
    return !there.Eof() && IsAnyNotZero(columns, [&there](const QString& column) { return there.Value(column); });
}

void CounterpartyRegister::NoteDiscounts(const Mapping& discounts, const SourceRow& row, const Placement& place,
                                         const Joining& joining) {
    const Roles own = RolesToWrite(joining.keeps);
    if (!own.customer && !own.supplier) {
        return;
    }
    TargetRow told(m_run, QStringLiteral("CON_TRO"));
    try {
        discounts.Apply(told, m_run.GetSession(), row, {place.code, own});
    } catch (const ImportError&) { // which is not written
        return;
    }
    KeepDiscounts(told, own, place, joining);
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
    if (isAgain && source.marks.cancelled == true) {
        NoteCancelled(party);
    }
    if (isAgain && isFirst && source.marks.blocked == true && !party.isBlocked && !HasRowsBeside(party)) {
        m_run.Log(
            QStringLiteral("BLOCCATA NELL'ORIGINE: %1: la controparte %2 non è bloccata in Quadrix, e resta com'è")
                .arg(m_run.RowKey(), party.code));
    }
    met.cancelled = met.cancelled && source.marks.cancelled.value_or(false);
    m_run.RestoresEntry(m_metMarks, party.code);
    m_metMarks.insert(party.code, met);
    return revives;
}

void CounterpartyRegister::NoteCancelled(const Roles& roles, const QString& code) {
    for (const bool customer : {true, false}) {
        for (const Party& party : HasRole(roles, customer) ? Holders(code, customer) : std::vector<Party>()) {
            NoteCancelled(party);
        }
    }
}

/// Whether the run, of some of the rows, may not meet others that the source has of a counterparty.
bool CounterpartyRegister::HasRowsBeside(const Party& party) const {
    return m_run.IsPart() && ((!party.customer.isEmpty() && !party.supplier.isEmpty()) ||
                              m_joined.HasAny(true, party.code) || m_joined.HasAny(false, party.code));
}

void CounterpartyRegister::NoteCancelled(const Party& party) {
    if (!party.isCancelled && !HasRowsBeside(party)) {
        m_cancelled->rows.emplace_back(party.code, m_run.RowKey());
        m_run.WhenTakenBack([this] { m_cancelled->rows.pop_back(); });
    }
}

void CounterpartyRegister::TellCancelled() {
    for (const auto& [party, row] : std::exchange(m_cancelled->rows, {})) {
        if (!m_cancelled->inUse.contains(party)) {
            m_run.Log(QStringLiteral(
                          "ANNULLATA NELL'ORIGINE: %1: la controparte %2 non è annullata in Quadrix, e resta com'è")
                          .arg(row, party));
        }
    }
}

} // namespace contract
