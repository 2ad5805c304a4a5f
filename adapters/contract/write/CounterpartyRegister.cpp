#include "adapters/contract/write/CounterpartyRegister.h"

#include "adapters/contract/map/carrierCodes.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/bareName.h"
#include "core/identifyingNumber.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QString Register = QStringLiteral("CON_TRO");
const QString CodeColumn = QStringLiteral("CDCON");

constexpr qint64 HighestCode = 999999;

QString SixDigits(qint64 number) { return QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0')); }

bool IsOfSixDigits(const QString& code) {
    return code.size() == 6 && std::all_of(code.begin(), code.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

bool Agree(const QString& one, const QString& other) {
    return !one.isEmpty() && one.compare(other, Qt::CaseInsensitive) == 0;
}

/// What tells who somebody is, in the source or in Quadrix.
struct Identity {
    QString vatNumber;
    QString taxCode;
    QString name;

    Identity(const QString& vat, const QString& tax, const QString& called)
        : vatNumber(IdentifyingNumber(vat)),
          taxCode(IdentifyingNumber(tax)),
          name(BareName(called)) {}

    bool HasNumber() const { return !vatNumber.isEmpty() || !taxCode.isEmpty(); }
    bool SharesNumber(const Identity& other) const {
        return Agree(vatNumber, other.vatNumber) || Agree(taxCode, other.taxCode);
    }
    bool IsSame(const Identity& other) const {
        return SharesNumber(other) || ((!HasNumber() || !other.HasNumber()) && Agree(name, other.name));
    }
    /// Whether nothing that both tell is alike.
    bool IsStranger(const Identity& other) const {
        return HasNumber() && other.HasNumber() && !SharesNumber(other) && !Agree(name, other.name);
    }
    /// Whether the names are one, or one goes on where the other ends: "Rossi", "Rossi e figli".
    bool IsCalledLike(const Identity& other) const {
        return !name.isEmpty() && !other.name.isEmpty() && (name.startsWith(other.name) || other.name.startsWith(name));
    }
    /// Whether it may be the one that had the code of this one at an earlier import: one of another name only where
    /// neither has a number.
    bool MayHaveBeen(const Identity& other) const {
        return Agree(name, other.name) ||
               (!IsStranger(other) && (IsCalledLike(other) || (!HasNumber() && !other.HasNumber())));
    }
};

template<class Who>
Identity IdentityOf(const Who& who) {
    return {who.vatNumber, who.taxCode, who.name};
}

/// The first of some counterparties whose identity meets a condition; null when none does.
template<class Who, class Condition>
const Who* FirstThat(const std::vector<Who>& parties, Condition meets) {
    const auto found =
        std::find_if(parties.begin(), parties.end(), [&](const Who& one) { return meets(IdentityOf(one)); });
    return found == parties.end() ? nullptr : &*found;
}

/// "'Acciai' (partita IVA 01234567890, codice fiscale RSSMRA...)": how the log names somebody.
template<class Who>
QString Named(const Who& who) {
    QStringList numbers;
    if (!who.vatNumber.isEmpty()) {
        numbers.append(QStringLiteral("partita IVA ") + who.vatNumber);
    }
    if (!who.taxCode.isEmpty()) {
        numbers.append(QStringLiteral("codice fiscale ") + who.taxCode);
    }
    return QStringLiteral("'%1' (%2)")
        .arg(who.name, numbers.isEmpty() ? QStringLiteral("senza partita IVA e codice fiscale")
                                         : numbers.join(QStringLiteral(", ")));
}

/// The name of both lines; one that was cut at the end of the first goes on without a blank.
QString WholeName(const QString& first, const QString& second) {
    constexpr qsizetype cut = 35;
    return QString(first + (first.size() == cut ? QString() : QStringLiteral(" ")) + second).trimmed();
}

std::optional<TakenCode> ReadTakenCode(Session& session) {
    const QString value = session.Config.PeekAppConfig(QStringLiteral("IMPORT"), QStringLiteral("CodiceOccupato"));
    const auto is = [&value](QLatin1String text) { return value.compare(text, Qt::CaseInsensitive) == 0; };
    if (value.isEmpty()) {
        return std::nullopt;
    }
    if (!is(QLatin1String("aggiorna")) && !is(QLatin1String("nuovo"))) {
        throw ImportError(
            QStringLiteral("impostazione CodiceOccupato della sezione IMPORT: '%1' non è né 'aggiorna' né 'nuovo'")
                .arg(value));
    }
    return is(QLatin1String("aggiorna")) ? TakenCode::Update : TakenCode::Next;
}

} // namespace

CounterpartyRegister::CounterpartyRegister(ImportRun& run, TakenCode usual)
    : m_run(run),
      m_usual(usual),
      m_setting(ReadTakenCode(run.GetSession())),
      m_joined(run),
      m_cancelled(run.Shared<Cancelled>()) {}

CounterpartyRegister::Party CounterpartyRegister::PartyOf(const SourceRow& row) {
    const QString changedBy = row.Text("USMDF");
    const QString madeBy = row.Text("USINS");
    const auto isImport = [](const QString& user) { return Agree(user, schema::defaults::ImportUser); };
    Party party{row.Text("CDCON"),
                WholeName(mod_ovTools::ToText(row.Value("CORAS")), row.Text("CORA2")),
                row.Text("COIVA"),
                row.Text("COFIS"),
                row.Text("COCGE"),
                row.Text("COFGE"),
                mod_ovTools::ToBoolean(row.Value("COCLI")) || !row.IsBlank("COCGE"),
                mod_ovTools::ToBoolean(row.Value("COFOR")) || !row.IsBlank("COFGE"),
                mod_ovTools::ToBoolean(row.Value("COANN")),
                mod_ovTools::ToBoolean(row.Value("COBLK")),
                !isImport(changedBy.isEmpty() ? madeBy : changedBy),
                isImport(madeBy) && changedBy.isEmpty(),
                {}};
    for (const QString& column : {QStringLiteral("COLSC"), QStringLiteral("COLSF")}) {
        if (Agree(row.Text(column), party.code)) {
            party.ownLists.append(column);
        }
    }
    return party;
}

/// The counterparties that have a code in a column. CDCON is there once: where it is one with another for the database
/// alone, that raises `ImportError`.
std::vector<CounterpartyRegister::Party> CounterpartyRegister::Parties(const QString& column,
                                                                       const QString& code) const {
    std::vector<Party> parties;
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT * FROM ") + m_run.FullName(QStringLiteral("CON_TRO")) + QStringLiteral(" WHERE ") +
        column + QStringLiteral(" = ") + m_run.Quoted(code));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (column == CodeColumn) {
            CheckCodeAsked(row.Value(column), code);
        }
        if (!IsCodeAsked(row.Value(column), code)) {
            continue;
        }
        parties.push_back(PartyOf(row));
    }
    return parties;
}

std::optional<CounterpartyRegister::Party> CounterpartyRegister::Find(const QString& code) const {
    if (m_run.GetSession().Quadrix.IsAbsent(Register, CodeColumn, code)) {
        return std::nullopt;
    }
    const std::vector<Party> parties = Parties(CodeColumn, code);
    return parties.empty() ? std::nullopt : std::optional(parties.front());
}

bool CounterpartyRegister::Exists(const QString& code) const { return Find(code).has_value(); }

QString FindByIdentity(Session& session, const QString& vatNumber, const QString& taxCode) {
    const QString vat = IdentifyingNumber(vatNumber);
    const QString tax = IdentifyingNumber(taxCode);
    if (vat.isEmpty() && tax.isEmpty()) {
        return {};
    }
    const QString column = vat.isEmpty() ? QStringLiteral("COFIS") : QStringLiteral("COIVA");
    return session.Quadrix.GetDbValue(Register, column, vat.isEmpty() ? tax : vat, QStringLiteral("CDCON")).toString();
}

QString CounterpartyRegister::FindSame(const SourceIdentity& source) const {
    QString code = FindByIdentity(m_run.GetSession(), source.vatNumber, source.taxCode);
    if (code.isEmpty()) { // the source may have corrected the number in every row of a counterparty
        const QString vat = IdentifyingNumber(source.vatNumber);
        code = m_corrected.value(vat.isEmpty() ? IdentifyingNumber(source.taxCode) : vat);
    }
    if (!code.isEmpty()) {
        TellMerge(source, code);
    }
    return code;
}

QString CounterpartyRegister::NoStranger(const SourceIdentity& source, const QString& code) const {
    const auto party = Find(code);
    const Identity identity = IdentityOf(source);
    if (!party || !IdentityOf(*party).IsStranger(identity) ||
        Agree(source.roles.customer ? party->customer : party->supplier, source.code) ||
        m_joined.PartyOf(source.roles.customer, source.code) == code) { // or has been made one before
        return code;
    }
    const QString& other = source.roles.customer ? party->supplier : party->customer;
    const QString column = SourceCodeColumn(!source.roles.customer);
    const std::vector<Party> parties = other.isEmpty() ? std::vector<Party>() : Parties(column, other);
    if (const Party* same = FirstThat(parties, [&](const Identity& one) { return !one.IsStranger(identity); })) {
        return same->code;
    }
    const QChar role = source.roles.customer ? u'F' : u'C';
    if (parties.size() == 1 && m_met.contains(qHash(QString(role + mod_ovTools::UpperChars(other))))) {
        return code; // the source's own: whatever it tells of the two
    }
    m_run.Log(QStringLiteral("CONTROPARTI DIVERSE: %1 %2 e %3, %4, sono una per il codice dell'altro ruolo '%5': "
                             "restano due")
                  .arg(m_run.RowKey(), Named(source), Named(*party), code, other));
    return {};
}

/// "; il codice cliente '7' lascia il posto a '9'", of each source code that a counterparty has and loses to a source
/// row that it becomes, or that it keeps before that of a cancelled row or a stranger's; empty for none.
QString CounterpartyRegister::Replaced(const SourceIdentity& source, const Party& party) const {
    QString replaced;
    const auto look = [&](bool customer, bool has, const QString& there) {
        if (has && !there.isEmpty() && !Agree(there, source.code)) {
            const bool isKept = customer ? m_kept.customer : m_kept.supplier;
            replaced += isKept ? QStringLiteral("; resta il codice %1 '%2'").arg(RoleText(customer), there)
                               : (KeepsCode(source, party, customer)
                                      ? QStringLiteral("; resta il codice %1 '%2', la riga di '%3' è annullata")
                                      : QStringLiteral("; il codice %1 '%2' lascia il posto a '%3'"))
                                     .arg(RoleText(customer), there, source.code);
        }
    };
    look(true, source.roles.customer, party.customer);
    look(false, source.roles.supplier, party.supplier);
    return replaced;
}

/// Whether a counterparty keeps the code that it has in a role: the code of the source row stands beside it already, or
/// is that of a row that is cancelled.
bool CounterpartyRegister::KeepsCode(const SourceIdentity& source, const Party& party, bool customer) const {
    const QString& there = customer ? party.customer : party.supplier;
    return !there.isEmpty() && !Agree(there, source.code) &&
           (m_joined.PartyOf(customer, source.code) == party.code ||
            (source.marks.cancelled == true && !party.isCancelled));
}

void CounterpartyRegister::TellMerge(const SourceIdentity& source, const QString& code) const {
    const auto party = Find(code);
    if (!party) {
        return;
    }
    QStringList codes;
    bool made = false;
    const auto look = [&](bool customer, bool has, const QString& there) {
        made = made || (has && (Agree(there, source.code) || m_joined.PartyOf(customer, source.code) == code));
        if (!there.isEmpty()) {
            codes.append(QStringLiteral("%1 '%2'").arg(RoleText(customer), there));
        }
    };
    look(true, source.roles.customer, party->customer);
    look(false, source.roles.supplier, party->supplier);
    if (made) {
        TellTwice(code);
        return;
    }
    const QString origin =
        codes.isEmpty() ? QStringLiteral("senza codice d'origine") : codes.join(QStringLiteral(", "));
    m_run.Log(QStringLiteral("CONTROPARTI UNITE: %1 %2 e %3, %4, diventano una: %5%6")
                  .arg(m_run.RowKey(), Named(source), Named(*party), origin, code, Replaced(source, *party)));
}

void CounterpartyRegister::Meet(const SourceIdentity& source) {
    m_again = false;
    m_kept = {};
    m_held.reset();
    const QString code = mod_ovTools::UpperChars(source.code);
    for (const auto& [has, role] : {std::pair(source.roles.customer, u'C'), std::pair(source.roles.supplier, u'F')}) {
        if (!has) {
            continue;
        }
        const size_t hash = qHash(QString(role + code));
        m_again = m_again || m_met.contains(hash);
        m_run.Remember(m_met, hash);
    }
}

std::vector<CounterpartyRegister::Party> CounterpartyRegister::Holders(const QString& code, bool customer) const {
    const QString column = SourceCodeColumn(customer);
    if (code.isEmpty() || m_run.GetSession().Quadrix.IsAbsent(Register, column, code)) {
        return {};
    }
    return Parties(column, code);
}

/// Those that have the code or that an import of it has written last, who is the first.
std::vector<CounterpartyRegister::Party> CounterpartyRegister::OfSourceCode(const SourceIdentity& source,
                                                                            bool customer) const {
    std::vector<Party> parties = Holders(source.code, customer);
    m_held = {source.code, customer, parties};
    const QString owner = source.code.isEmpty() ? QString() : m_joined.PartyOf(customer, source.code);
    const auto held =
        std::find_if(parties.begin(), parties.end(), [&owner](const Party& one) { return one.code == owner; });
    if (held != parties.end()) {
        std::rotate(parties.begin(), held, held + 1);
    } else if (const auto beside = owner.isEmpty() ? std::nullopt : Find(owner)) {
        parties.insert(parties.begin(), *beside);
    }
    return parties;
}

Roles CounterpartyRegister::RolesHeld(const SourceIdentity& source, const QString& code) const {
    Roles held = source.roles;
    const auto look = [&](bool customer, bool& has) {
        if (has && m_joined.PartyOf(customer, source.code) == code) { // it has the column, as another one, or none has
            const auto party = Find(code);
            has = party && Agree(customer ? party->customer : party->supplier, source.code);
        }
    };
    look(true, held.customer);
    look(false, held.supplier);
    return held;
}

QString CounterpartyRegister::ImportedBefore(const SourceIdentity& source) const {
    const std::vector<Party> parties = OfSourceCode(source, source.roles.customer);
    const Identity identity = IdentityOf(source);
    const Party* party = FirstThat(parties, [&](const Identity& one) { return one.IsSame(identity); });
    if (party == nullptr) {
        party = FirstThat(parties, [&](const Identity& one) { return !one.IsStranger(identity); });
    }
    return party == nullptr ? QString() : party->code;
}

QString CounterpartyRegister::FindByCode(const SourceIdentity& source) const {
    const std::vector<Party> parties = OfSourceCode(source, source.roles.customer);
    if (parties.empty()) {
        return {};
    }
    const Identity identity = IdentityOf(source);
    if (const Party* same = FirstThat(parties, [&](const Identity& one) { return one.IsSame(identity); })) {
        TellTwice(same->code);
        return same->code;
    }
    if (m_again) {
        return OfAnother(source, parties.front());
    }
    if (const Party* before = FirstThat(parties, [&](const Identity& one) { return one.MayHaveBeen(identity); })) {
        if (!IdentityOf(*before).IsCalledLike(identity)) {
            TellDifferent(source, *before, true);
        }
        RememberNumbers(source, before->code);
        return before->code;
    }
    // Two origins may well have the same codes: who has other numbers is another one, of whom nothing is to be told.
    if (const Party* unsure = FirstThat(parties, [&](const Identity& one) { return !one.IsStranger(identity); })) {
        TellDifferent(source, *unsure, false);
    }
    return {};
}

QString CounterpartyRegister::CarrierOfBefore(const SourceIdentity& source, const QString& code) const {
    const Identity identity = IdentityOf(source);
    if (const auto party = Find(code)) {
        const Identity one = IdentityOf(*party);
        if (one.SharesNumber(identity) || (one.IsCalledLike(identity) && !one.IsStranger(identity))) {
            return code;
        }
    }
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral(
            "SELECT * FROM %1 WHERE COVET = 1 AND COALESCE(COCGE, '') = '' AND COALESCE(COFGE, '') = '' AND ")
            .arg(m_run.FullName(Register)) +
        OfImports(m_run.GetSession()) + QStringLiteral(" ORDER BY CDCON"));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const Party party = PartyOf(row);
        if (const Identity one = IdentityOf(party); Agree(one.name, identity.name) && !one.IsStranger(identity)) {
            return party.code;
        }
    }
    return {};
}

/// Other rows of the run with the numbers of a source row are the counterparty that this one is by its code and name,
/// and which keeps the number that it has.
void CounterpartyRegister::RememberNumbers(const SourceIdentity& source, const QString& code) const {
    for (const QString& number : {IdentifyingNumber(source.vatNumber), IdentifyingNumber(source.taxCode)}) {
        if (!number.isEmpty()) {
            m_run.RestoresEntry(m_corrected, number);
            m_corrected.insert(number, code);
        }
    }
}

/// What becomes of a source row whose code an earlier row had, which was another counterparty.
QString CounterpartyRegister::OfAnother(const SourceIdentity& source, const Party& party) const {
    const bool isUpdated = m_setting.value_or(m_usual) == TakenCode::Update;
    if (isUpdated) {
        TellTwice(party.code);
    }
    TellDifferent(source, party, isUpdated);
    return isUpdated ? party.code : QString();
}

void CounterpartyRegister::TellTwice(const QString& code) const {
    if (m_again) {
        m_run.Log(QStringLiteral("CONTROPARTE DOPPIA: ") + code);
    }
}

void CounterpartyRegister::TellDifferent(const SourceIdentity& source, const Party& party, bool isUpdated) const {
    m_run.Log(QStringLiteral("CONTROPARTI DIVERSE: %1 %2 e %3, %4, hanno lo stesso codice d'origine '%5': %6")
                  .arg(m_run.RowKey(), Named(source), Named(party), party.code, source.code,
                       isUpdated ? KeepRoles(source, party, IsTold(source, party)) : QStringLiteral("restano due")));
}

QString CounterpartyRegister::NextCode() const {
    ovConnection& quadrix = m_run.GetSession().Quadrix;
    const auto highest = [&quadrix](const QString& where) {
        return quadrix.GetMaxValue(Register, QStringLiteral("CDCON"), where, SixDigits(0)).toString().trimmed();
    };
    QString code = highest({});
    // Others may stand among those of six digits or behind them: "99", "Z1".
    for (QString below = QStringLiteral("<= ") + m_run.Quoted(SixDigits(HighestCode)); !IsOfSixDigits(code);
         below = QStringLiteral("< ") + m_run.Quoted(code)) {
        code = highest(QStringLiteral("WHERE CDCON LIKE '______%' AND CDCON ") + below);
    }
    const qint64 number = code.toLongLong();
    if (number >= HighestCode) {
        throw ImportError(QStringLiteral("i codici a sei cifre di CON_TRO sono esauriti"));
    }
    return SixDigits(number + 1);
}

/// The code that SYS_IMP has for a new one. What an import has written there is the code of a carrier, who may bear the
/// code of a customer or supplier.
QString CounterpartyRegister::ToldBySomebody(const SourceIdentity& source) const {
    Session& session = m_run.GetSession();
    const QString known = modImport::GetNewCode(session, source.table, source.field, source.code, false);
    const bool mayBeAnothers = !known.isEmpty() && (source.roles.customer || source.roles.supplier);
    return mayBeAnothers ? ToldCode(session, source.table, source.field, source.code) : known;
}

Placement CounterpartyRegister::Place(const SourceIdentity& source) const {
    QString known = FindByCode(source);
    if (known.isEmpty()) {
        known = FindSame(source);
    }
    if (!known.isEmpty()) {
        return {known, true};
    }
    const QString told = source.told.isEmpty() ? ToldBySomebody(source) : source.told;
    bool isNumber = false;
    const qint64 number = (source.number.isEmpty() ? source.code : source.number).toLongLong(&isNumber);
    const bool keepsNumber = source.roles.customer && isNumber && number > 0 && number <= HighestCode;
    const QString code = !told.isEmpty() ? told : keepsNumber ? SixDigits(number) : NextCode();
    const auto placement = Take(source, code, told.isEmpty() ? m_usual : TakenCode::Update);
    return placement ? *placement : TakeNext(source, code);
}

Placement CounterpartyRegister::Settle(const SourceIdentity& source, const QString& code) const {
    if (const auto placement = Take(source, code, m_usual)) {
        return *placement;
    }
    const QString before = FindByCode(source);
    return before.isEmpty() ? TakeNext(source, code) : Placement{before, true};
}

/// The code when it is free, or its counterparty is to be updated; none when another one has it.
std::optional<Placement> CounterpartyRegister::Take(const SourceIdentity& source, const QString& code,
                                                    TakenCode usual) const {
    const auto party = Find(code);
    if (!party) {
        return Placement{code, false};
    }
    const bool same = IdentityOf(source).IsSame(IdentityOf(*party));
    if (!same && m_setting.value_or(usual) != TakenCode::Update) {
        return std::nullopt;
    }
    m_run.Log(QStringLiteral("CONTROPARTE DOPPIA: ") + code);
    if (!same) {
        const QString stays = KeepRoles(source, *party, true);
        m_run.Log(QStringLiteral("CONTROPARTI DIVERSE: %1 %2 e %3 hanno lo stesso codice %4: %5%6")
                      .arg(m_run.RowKey(), Named(source), Named(*party), code, stays, Replaced(source, *party)));
    }
    return Placement{code, true};
}

Placement CounterpartyRegister::TakeNext(const SourceIdentity& source, const QString& taken) const {
    const auto party = Find(taken);
    const Placement next{NextCode(), false};
    m_run.Log(QStringLiteral("CODICE OCCUPATO: %1 %2 prende il codice %3: %4 è di %5")
                  .arg(m_run.RowKey(), Named(source), next.code, taken, party ? Named(*party) : QString()));
    return next;
}

} // namespace contract
