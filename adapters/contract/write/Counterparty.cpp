#include "adapters/contract/write/Counterparty.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/bareName.h"
#include "adapters/contract/write/iban.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>

namespace contract {

namespace {

const QString Prefix = QStringLiteral("+39");
const QString Telephones = QStringLiteral("NUM_TEL");
const QString Addresses = QStringLiteral("IND_WEB");
const QStringList AlikeBranches{"SETIP", "SERAS", "SEIND", "SENRC", "SECIT"};

QString Without(QString text, std::u16string_view characters) {
    return text.removeIf([characters](QChar c) { return characters.find(c.unicode()) != characters.npos; });
}

/// A telephone number by its digits, without the prefix of the country.
QString Digits(const QString& number) {
    static const QRegularExpression prefix(QStringLiteral("^(\\+|00)39"));
    QString digits = WithoutSeparators(number).remove(prefix);
    return digits.removeIf([](QChar c) { return !c.isDigit(); });
}

/// A rule whose column is Null where it gives nothing: what a counterparty that is there has no more.
Rule OrNull(const Rule& rule) {
    return Around(rule, rule.text, [apply = rule.apply](const RuleInput& input) {
        RuleValue value = apply(input);
        return value ? value : RuleValue(QVariant());
    });
}

/// The number that a text begins with, digit by digit, without zeros that do not count; "0" when it begins with none.
QString LeadingDigits(const QString& text) {
    static const QRegularExpression number(QStringLiteral("^[0-9]*(\\.[0-9]*)?"));
    QString digits = number.match(text).captured();
    if (digits.contains(u'.')) {
        static const QRegularExpression ending(QStringLiteral("\\.?0*$"));
        digits.remove(ending);
    }
    static const QRegularExpression beginning(QStringLiteral("^0+(?=[0-9])"));
    digits.remove(beginning);
    return digits.isEmpty() || digits.startsWith(u'.') ? QString(u'0' + digits) : digits;
}

/// Whether a number as it is stored may be none of this country, or several in one.
bool IsDoubtful(const QString& stored) {
    constexpr int most = 15; // of the digits of a number anywhere
    const auto digits = std::count_if(stored.begin(), stored.end(), [](QChar c) { return c.isDigit(); });
    return stored.startsWith(u'+') || stored.startsWith(u"00") || digits > most;
}

/// The e-mail addresses of a text: those between ";", ",", "/" and blanks where each part is one, else those between
/// ";" and ",", else the text as it is.
QStringList MailsOf(const QString& text) {
    if (text.count(u'@') < 2) {
        return {text};
    }
    static const QRegularExpression anyBorder(QStringLiteral("[;,/\\\\\\s]+"));
    static const QRegularExpression sureBorder(QStringLiteral("[;,]+"));
    for (const QRegularExpression& border : {anyBorder, sureBorder}) {
        const QStringList parts = text.split(border, Qt::SkipEmptyParts);
        if (parts.size() > 1 &&
            std::all_of(parts.begin(), parts.end(), [](const QString& part) { return part.count(u'@') == 1; })) {
            return parts;
        }
    }
    return {text};
}

/// The lines of a role, behind the mark of the role.
Mapping RoleLines(const Mapping& whole, Side side, const QString& mark) {
    Mapping role{whole.targetTable, whole.sourceTable, {{mark, {}, rules::Constant(true)}}, true};
    std::copy_if(whole.lines.begin(), whole.lines.end(), std::back_inserter(role.lines),
                 [side](const MapLine& line) { return line.rule.side == side; });
    for (MapLine& line : role.lines) {
        if (DiscountColumns(side == Side::Customer).contains(line.target)) {
            line.rule = OrNull(line.rule);
        }
    }
    return role;
}

/// The lines of some columns that the source feeds.
Mapping LinesOf(const Mapping& whole, const QStringList& columns) {
    Mapping some{whole.targetTable, whole.sourceTable, {}, true};
    std::copy_if(whole.lines.begin(), whole.lines.end(), std::back_inserter(some.lines),
                 [&columns](const MapLine& line) { return !line.sources.isEmpty() && columns.contains(line.target); });
    return some;
}

} // namespace

std::vector<TableNeed> CounterpartyNeeds() {
    const QString name = QStringLiteral("TBNAM");
    const QString key = QStringLiteral("TBKEY");
    return {{"CON_TRO", {"CDCON", "CORAS", "CORA2", "COIVA", "COFIS", "COCGE", "COFGE"}},
            {"CON_RIF", {"CDCON", "RFNOM"}},
            {"NUM_TEL", {name, key, "NRDES", "NRPRI", "NRNUM", "NRTEL"}},
            {"IND_WEB", {name, key, "WBTIP", "WBDES", "WBIND"}}};
}

Emptying CounterpartyEmptying() { return Truncated({"CON_TRO", "CON_RIF", "CON_SED", "NUM_TEL", "IND_WEB"}); }

void SetIban(ImportRun& run, const SourceRow& /*row*/, TargetRow& party) {
    const auto text = [&party](const QString& column) { return party.Value(column).toString(); };
    if (!text("COIBA").isEmpty() || text("CONAZ") != schema::defaults::Country) {
        return;
    }
    const ItalianIban made = IbanOf(text("COCIN"), text("COABI"), text("COCAB"), text("COCOC"));
    if (!made.iban.isEmpty()) {
        party.Set("COIBA", made.iban);
    } else if (!made.wrong.isEmpty()) {
        run.Log(QStringLiteral("IBAN NON CALCOLATO: %1: ").arg(run.RowKey()) + made.wrong);
    }
}

QString WithoutSeparators(QString text) { return Without(std::move(text), u"/ -\\"); }

QString StoredNumber(const QString& number) {
    const QString bare = WithoutSeparators(number);
    return number.isEmpty() || mod_ovTools::ReadNumber(bare) ? bare : QString(u'0' + LeadingDigits(bare));
}

QStringList NumberColumns::Names() const {
    QStringList names{office, office2, fax, mobile, mail, web, home, telex};
    names.removeAll(QString());
    return names;
}

CounterpartyMapping::CounterpartyMapping(Mapping whole)
    : m_whole(std::move(whole)),
      m_customer(RoleLines(m_whole, Side::Customer, QStringLiteral("COCLI"))),
      m_supplier(RoleLines(m_whole, Side::Supplier, QStringLiteral("COFOR"))),
      m_marks(LinesOf(m_whole, {"COANN", "COBLK"})),
      m_discounts(LinesOf(m_whole, DiscountColumns(true) + DiscountColumns(false))) {}

RowOutcome CounterpartyWriter::Write(const CounterpartyMapping& mapping, const SourceRow& row, const Placement& place,
                                     const Roles& roles, const std::function<void(TargetRow&)>& more) const {
    TargetRow target(m_run, QStringLiteral("CON_TRO"));
    if (FillsCodes(m_run) && !place.known) {
        return SkipGone(m_run);
    }
    if (FillsCodes(m_run)) {
        const MissingCodes missing(m_run, QStringLiteral("CON_TRO"), {place.code, roles});
        missing.Apply(mapping.Whole(), row, target);
        if (more) {
            TargetRow further(m_run, QStringLiteral("CON_TRO"));
            more(further);
            missing.Take(further, {}, target);
        }
        return missing.Write(target);
    }
    Apply(mapping, row, place, roles, target);
    if (more) {
        more(target);
    }
    if (place.known) {
        LeaveCodes(m_run);
        target.Update(QStringLiteral("WHERE CDCON = ") + m_run.Quoted(place.code));
        return RowOutcome::Updated;
    }
    target.Insert();
    return RowOutcome::Inserted;
}

void CounterpartyWriter::Apply(const CounterpartyMapping& mapping, const SourceRow& row, const Placement& place,
                               const Roles& roles, TargetRow& target) const {
    const auto apply = [&](const Mapping& one) { one.Apply(target, m_run.GetSession(), row, {place.code, roles}); };
    if (!place.known) {
        apply(mapping.Whole());
    }
    for (const bool customer : {true, false}) {
        if (place.known && (customer ? roles.customer : roles.supplier)) {
            apply(mapping.Role(customer));
        }
    }
}

TargetRow CounterpartyWriter::NewRow(const QString& table) const {
    TargetRow row(m_run, table);
    if (!m_created.isNull()) {
        row.Set(QStringLiteral("DTINS"), m_created);
    }
    return row;
}

/// Whether something that does not hang on an owner is not written on it again, which the log tells.
bool CounterpartyWriter::IsLeft(const Owner& owner, const QString& what, const QString& value) const {
    if (owner.isAgain) {
        m_run.Log(QStringLiteral("RECAPITO DIVERSO: %1: %2 '%3' non è tra i recapiti di Quadrix, che restano come sono")
                      .arg(m_run.RowKey(), what, value));
    }
    return owner.isAgain;
}

/// A row that hangs on an owner.
TargetRow CounterpartyWriter::NewRow(const QString& table, const Owner& owner) const {
    const QString key = QStringLiteral("TBKEY");
    TargetRow row = NewRow(table);
    row.Set(QStringLiteral("TBNAM"), owner.table);
    return owner.id != nullptr ? row.SetId(key, owner.id) : row.Set(key, owner.key);
}

bool CounterpartyWriter::Hangs(const Owner& owner, const QString& table, const QString& column,
                               const std::function<bool(const QString&)>& isIt) const {
    if (!owner.known) {
        return false;
    }
    const Session& session = m_run.GetSession();
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT %1 FROM %2 WHERE ").arg(column, m_run.FullName(table)) +
        Equals(session, QStringLiteral("TBNAM"), owner.table) + QStringLiteral(" AND ") +
        Equals(session, QStringLiteral("TBKEY"), owner.key));
    for (; !rows.Eof(); rows.MoveNext()) {
        if (isIt(mod_ovTools::ToText(rows.Value(column)))) {
            return true;
        }
    }
    return false;
}

void CounterpartyWriter::Numbers(const Owner& owner, const SourceRow& row, const NumberColumns& columns) const {
    const auto text = [&](const QString& column) {
        const QString told = column.isEmpty() ? QString() : row.Text(column);
        return columns.zeroIsNone && told == u"0" ? QString() : told;
    };
    Telephone(owner, QStringLiteral("Ufficio"), text(columns.office));
    Telephone(owner, QStringLiteral("Ufficio 2"), text(columns.office2));
    Telephone(owner, QStringLiteral("Fax (uff.)"), text(columns.fax));
    Telephone(owner, QStringLiteral("Cellulare"), text(columns.mobile));
    Telephone(owner, QStringLiteral("Abitazione"), text(columns.home));
    Telephone(owner, QStringLiteral("Telex"), text(columns.telex));
    Mail(owner, QStringLiteral("@ Principale"), text(columns.mail));
    WebSite(owner, text(columns.web));
}

void CounterpartyWriter::Telephone(const Owner& owner, const QString& label, const QString& number) const {
    if (number.isEmpty() || owner.table.isEmpty()) {
        return;
    }
    const QString stored = StoredNumber(number);
    const bool isNumber = stored == WithoutSeparators(number);
    if (Hangs(owner, QStringLiteral("NUM_TEL"), QStringLiteral("NRNUM"),
              [&stored](const QString& there) { return Digits(there) == Digits(stored); }) ||
        IsLeft(owner, label, number)) {
        return;
    }
    if (isNumber && IsDoubtful(stored)) {
        m_run.Log(QStringLiteral("TELEFONO DUBBIO: %1: '%2', scritto come '%3 %4'")
                      .arg(m_run.RowKey(), number, Prefix, stored));
    }
    if (!isNumber) {
        m_run.Log(QStringLiteral("TELEFONO NON NUMERICO: %1: '%2' non è un numero, scritto come '%3'")
                      .arg(m_run.RowKey(), number, stored));
    }
    TargetRow row = NewRow(QStringLiteral("NUM_TEL"), owner);
    row.Set(QStringLiteral("NRDES"), label);
    row.Set(QStringLiteral("NRPRI"), Prefix);
    row.Set(QStringLiteral("NRNUM"), stored);
    row.Set(QStringLiteral("NRTEL"), QString(Prefix + u' ' + stored));
    row.Insert();
}

void CounterpartyWriter::Address(const Owner& owner, const QString& kind, const QString& label,
                                 const QString& address) const {
    if (address.isEmpty() || // as a "-" is without its separators
        Hangs(owner, QStringLiteral("IND_WEB"), QStringLiteral("WBIND"),
              [&address](const QString& there) { return there.compare(address, Qt::CaseInsensitive) == 0; }) ||
        IsLeft(owner, label, address)) {
        return;
    }
    TargetRow row = NewRow(QStringLiteral("IND_WEB"), owner);
    row.Set(QStringLiteral("WBTIP"), kind);
    row.Set(QStringLiteral("WBDES"), label);
    row.Set(QStringLiteral("WBIND"), address);
    row.Insert();
}

void CounterpartyWriter::WebSite(const Owner& owner, const QString& address, const QString& label) const {
    if (!address.isEmpty() && !owner.table.isEmpty()) {
        Address(owner, QStringLiteral("W"), label, WithoutSeparators(address));
    }
}

void CounterpartyWriter::Mail(const Owner& owner, const QString& label, const QString& address) const {
    if (address.isEmpty() || owner.table.isEmpty()) {
        return;
    }
    QString under = label;
    for (const QString& one : MailsOf(address)) {
        Address(owner, QStringLiteral("E"), under, Without(one.toLower(), u"/ \\"));
        under = label == u"@ Principale" ? QStringLiteral("@ Ufficio") : label;
    }
}

/// The child that a row of a counterparty is already; none when it is new. Each child stands for one row of the source,
/// so that two contacts of one name stay two.
/// @param alike the columns that tell
std::optional<Owner> CounterpartyWriter::Met(const Owner& counterparty, const TargetRow& row, const QString& table,
                                             const QStringList& alike) {
    if (!counterparty.known) {
        return std::nullopt;
    }
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(ChildrenOf(counterparty, table));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString id = mod_ovTools::ToText(rows.Value(QStringLiteral("RECORD_ID")));
        const bool same = std::all_of(alike.begin(), alike.end(), [&](const QString& column) {
            return BareName(mod_ovTools::ToText(rows.Value(column))) ==
                   BareName(mod_ovTools::ToText(row.Value(column)));
        });
        if (same && !m_met.contains(table + id)) {
            MeetChild(table + id);
            return Owner{table, id, true, {}, counterparty.isAgain};
        }
    }
    return std::nullopt;
}

void CounterpartyWriter::MeetChild(const QString& child) {
    if (&m_met == &m_ownMet) { // gone with the row
        m_met.insert(child);
    } else {
        m_run.Remember(m_met, child);
    }
}

QString CounterpartyWriter::ChildrenOf(const Owner& counterparty, const QString& table) const {
    return QStringLiteral("SELECT * FROM %1 WHERE ").arg(m_run.FullName(table)) +
           Equals(m_run.GetSession(), QStringLiteral("CDCON"), counterparty.key) +
           QStringLiteral(" ORDER BY RECORD_ID");
}

/// Nobody looks for the children of a counterparty that is new: what hangs on this one need not know its number.
Owner CounterpartyWriter::Insert(TargetRow& row, const QString& table, const Owner& counterparty) {
    row.Insert();
    if (!counterparty.known) {
        return {table, {}, false, m_run.LastRow(table)};
    }
    const QString id = QString::number(m_run.LastId(table));
    MeetChild(table + id);
    return {table, id};
}

Owner CounterpartyWriter::Contact(const Owner& counterparty, const QString& name) {
    TargetRow row = NewRow(ContactTable);
    row.Set(QStringLiteral("CDCON"), counterparty.key);
    row.Set(QStringLiteral("RFNOM"), name);
    return Contact(counterparty, row);
}

Owner CounterpartyWriter::Contact(const Owner& counterparty, TargetRow& contact) {
    if (const auto met = Met(counterparty, contact, ContactTable, {QStringLiteral("RFNOM")})) {
        return *met;
    }
    const bool isLeft = IsLeft(counterparty, QStringLiteral("riferimento"),
                               mod_ovTools::ToText(contact.Value(QStringLiteral("RFNOM"))));
    return isLeft ? Owner{} : Insert(contact, ContactTable, counterparty);
}

Owner CounterpartyWriter::Branch(const Owner& counterparty, TargetRow& branch, const BranchSource* from) {
    if (const auto met = Met(counterparty, branch, BranchTable, AlikeBranches)) {
        FillMet(*met, branch, from);
        return *met;
    }
    const QString code = mod_ovTools::ToText(branch.Value(QStringLiteral("CDSED")));
    const QString free = FreeBranchCode(counterparty, code);
    if (free != code) {
        branch.Set(QStringLiteral("CDSED"), free);
        m_run.Log(QStringLiteral("SEDE RINUMERATA: %1: '%2' scritta come '%3'").arg(m_run.RowKey(), code, free));
    }
    TellSecondDefault(counterparty, branch);
    return Insert(branch, BranchTable, counterparty);
}

/// A branch whose address has changed is a new one beside that of before, which documents may name: both being the
/// default one, somebody has to choose.
void CounterpartyWriter::TellSecondDefault(const Owner& counterparty, const TargetRow& branch) const {
    if (!counterparty.known || !mod_ovTools::ToBoolean(branch.Value(QStringLiteral("SEDEF")))) {
        return;
    }
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(ChildrenOf(counterparty, BranchTable));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (mod_ovTools::ToBoolean(row.Value("SEDEF"))) {
            m_run.Log(QStringLiteral("DUE SEDI PREDEFINITE: %1: '%2' (%3) e '%4' (%5)")
                          .arg(m_run.RowKey(), row.Text("CDSED"), row.Text("SEIND"),
                               mod_ovTools::ToText(branch.Value(QStringLiteral("CDSED"))),
                               mod_ovTools::ToText(branch.Value(QStringLiteral("SEIND")))));
            return;
        }
    }
}

bool CounterpartyWriter::FillBranch(const Owner& counterparty, const TargetRow& branch, const BranchSource& from) {
    const auto met = Met(counterparty, branch, BranchTable, AlikeBranches);
    return met && FillMet(*met, branch, &from);
}

/// A branch that is there gets the codes that it lacks; false when it lacks none.
bool CounterpartyWriter::FillMet(const Owner& met, const TargetRow& branch, const BranchSource* from) const {
    const QString where = QStringLiteral("WHERE RECORD_ID = ") + met.key;
    const Recordset there = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT * FROM %1 ").arg(m_run.FullName(BranchTable)) + where);
    TargetRow lacking(m_run, BranchTable);
    const auto isLacking = [&](const QString& column, const QString& code) {
        const QString now = SourceRow(there).Text(column);
        return now.isEmpty() || (from != nullptr && now.compare(code, Qt::CaseInsensitive) != 0 &&
                                 HoldsSourceCode(from->mapping, from->row, column, now));
    };
    bool lacks = false;
    for (const schema::Column& column : schema::FindTable(BranchTable)->columns) {
        const QVariant value = branch.Value(column.name);
        const QString code = mod_ovTools::ToText(value);
        if (!there.Eof() && !column.refersTo.isEmpty() && !code.isEmpty() && isLacking(column.name, code)) {
            lacking.Set(column.name, value);
            lacks = true;
        }
    }
    if (lacks) {
        lacking.Update(where);
    }
    return lacks;
}

/// The code, where another branch of the counterparty has it behind an "F", else the first number that is free.
QString CounterpartyWriter::FreeBranchCode(const Owner& counterparty, const QString& code) {
    if (!m_branchCodes) {
        m_branchCodes.emplace();
        if (counterparty.known) {
            Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(ChildrenOf(counterparty, BranchTable));
            for (; !rows.Eof(); rows.MoveNext()) {
                m_branchCodes->insert(mod_ovTools::ToText(rows.Value(QStringLiteral("CDSED"))).trimmed().toUpper());
            }
        }
    }
    QString free = code;
    for (int number = 0; m_branchCodes->contains(free.toUpper()); ++number) {
        free = number == 0 ? QString(u'F' + code) : QStringLiteral("%1").arg(number, 3, 10, QLatin1Char('0'));
    }
    m_branchCodes->insert(free.toUpper());
    return free;
}

} // namespace contract
