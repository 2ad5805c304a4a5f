#include "adapters/contract/Counterparty.h"

#include "adapters/contract/lookups.h"
#include "core/modImport.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QString Prefix = QStringLiteral("+39");
constexpr qint64 HighestCode = 999999;

QString SixDigits(qint64 number) { return QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0')); }

QString Without(QString text, const QString& characters) {
    return text.removeIf([&characters](QChar c) { return characters.contains(c); });
}

} // namespace

std::vector<TableNeed> CounterpartyNeeds() {
    const QString name = QStringLiteral("TBNAM");
    const QString key = QStringLiteral("TBKEY");
    return {{"CON_RIF", {"CDCON", "RFNOM"}},
            {"NUM_TEL", {name, key, "NRDES", "NRPRI", "NRNUM", "NRTEL"}},
            {"IND_WEB", {name, key, "WBTIP", "WBDES", "WBIND"}}};
}

const QStringList& CounterpartyTables() {
    static const QStringList tables{"CON_TRO", "CON_RIF", "CON_SED", "NUM_TEL", "IND_WEB"};
    return tables;
}

QString WithoutSeparators(QString text) { return Without(std::move(text), QStringLiteral("/ -\\")); }

QString CounterpartyWriter::FindByIdentity(const QString& vatNumber, const QString& taxCode) const {
    if (vatNumber.isEmpty() && taxCode.isEmpty()) {
        return {};
    }
    const QString condition = vatNumber.isEmpty() ? QStringLiteral("COFIS = ") + m_run.Quoted(taxCode)
                                                  : QStringLiteral("COIVA = ") + m_run.Quoted(vatNumber);
    const Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT CDCON FROM ") +
                                                                m_run.FullName(QStringLiteral("CON_TRO")) +
                                                                QStringLiteral(" WHERE ") + condition);
    return rows.Eof() ? QString() : rows.Fields(0).Value().toString();
}

bool CounterpartyWriter::Exists(const QString& code) const {
    return !m_run.GetSession()
                .Quadrix
                .ExecuteWC(QStringLiteral("SELECT * FROM ") + m_run.FullName(QStringLiteral("CON_TRO")) +
                           QStringLiteral(" WHERE CDCON = ") + m_run.Quoted(code))
                .Eof();
}

QString CounterpartyWriter::NextCode() const {
    const QString highest =
        m_run.GetSession()
            .Quadrix.GetMaxValue(QStringLiteral("CON_TRO"), QStringLiteral("CDCON"), {}, QStringLiteral("000000"))
            .toString();
    bool isNumber = false;
    const qint64 number = highest.toLongLong(&isNumber);
    if (!isNumber) {
        throw ImportError(
            QStringLiteral("il codice più alto di CON_TRO, '%1', non è un numero: non se ne può fare un altro")
                .arg(highest));
    }
    if (number >= HighestCode) {
        throw ImportError(QStringLiteral("i codici a sei cifre di CON_TRO sono esauriti"));
    }
    return SixDigits(number + 1);
}

Placement CounterpartyWriter::Place(const SourceIdentity& source) const {
    const QString same = FindByIdentity(source.vatNumber, source.taxCode);
    if (!same.isEmpty()) {
        return {same, true};
    }
    QString code = modImport::GetNewCode(m_run.GetSession(), source.table, source.field, source.code, false);
    if (code.isEmpty()) {
        code = NewCode(source);
    }
    if (!Exists(code)) {
        return {code, false};
    }
    m_run.Log(QStringLiteral("CONTROPARTE DOPPIA: ") + code);
    return {code, true};
}

QString CounterpartyWriter::NewCode(const SourceIdentity& source) const {
    bool isNumber = false;
    const qint64 number = (source.number.isEmpty() ? source.code : source.number).toLongLong(&isNumber);
    if (source.customer && isNumber && number > 0 && number <= HighestCode) {
        return SixDigits(number);
    }
    // Imported before: a second one would be made at every import.
    const QString before =
        LookUp(m_run.GetSession(), "CON_TRO", source.customer ? "COCGE" : "COFGE", source.code, "CDCON");
    return before.isEmpty() ? NextCode() : before;
}

TargetRow CounterpartyWriter::NewRow(const QString& table) const {
    TargetRow row(m_run, table);
    if (!m_created.isNull()) {
        row.Set(QStringLiteral("DTINS"), m_created);
    }
    return row;
}

void CounterpartyWriter::Telephone(const Owner& owner, const QString& label, const QString& number) const {
    if (number.isEmpty()) {
        return;
    }
    QString stored = WithoutSeparators(number);
    if (!mod_ovTools::ReadNumber(stored)) {
        stored = u'0' + mod_ovTools::NumberText(ReadLeadingNumber(stored).value_or(0));
        m_run.Log(
            QStringLiteral("TELEFONO NON NUMERICO: %1: '%2' scritto come '%3'").arg(m_run.RowKey(), number, stored));
    }
    TargetRow row = NewRow(QStringLiteral("NUM_TEL"));
    row.Set(QStringLiteral("TBNAM"), owner.table);
    row.Set(QStringLiteral("TBKEY"), owner.key);
    row.Set(QStringLiteral("NRDES"), label);
    row.Set(QStringLiteral("NRPRI"), Prefix);
    row.Set(QStringLiteral("NRNUM"), stored);
    row.Set(QStringLiteral("NRTEL"), QString(Prefix + u' ' + stored));
    row.Insert();
}

void CounterpartyWriter::Address(const Owner& owner, const QString& kind, const QString& label,
                                 const QString& address) const {
    TargetRow row = NewRow(QStringLiteral("IND_WEB"));
    row.Set(QStringLiteral("TBNAM"), owner.table);
    row.Set(QStringLiteral("TBKEY"), owner.key);
    row.Set(QStringLiteral("WBTIP"), kind);
    row.Set(QStringLiteral("WBDES"), label);
    row.Set(QStringLiteral("WBIND"), address);
    row.Insert();
}

void CounterpartyWriter::WebSite(const Owner& owner, const QString& address) const {
    if (!address.isEmpty()) {
        Address(owner, QStringLiteral("W"), QStringLiteral("Indirizzo Web"), WithoutSeparators(address));
    }
}

void CounterpartyWriter::Mail(const Owner& owner, const QString& label, const QString& address) const {
    if (!address.isEmpty()) {
        Address(owner, QStringLiteral("E"), label, Without(address.toLower(), QStringLiteral("/ \\")));
    }
}

Owner CounterpartyWriter::InsertOwner(TargetRow& row, const QString& table) const {
    row.Insert();
    const Recordset rows =
        m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT MAX(RECORD_ID) FROM ") + m_run.FullName(table));
    return {table, rows.Fields(0).Value().toString()};
}

Owner CounterpartyWriter::Contact(const QString& code, const QString& name) const {
    TargetRow row = NewRow(QStringLiteral("CON_RIF"));
    row.Set(QStringLiteral("CDCON"), code);
    row.Set(QStringLiteral("RFNOM"), name);
    return Contact(row);
}

Owner CounterpartyWriter::Contact(TargetRow& contact) const { return InsertOwner(contact, QStringLiteral("CON_RIF")); }

Owner CounterpartyWriter::Branch(TargetRow& branch) const { return InsertOwner(branch, QStringLiteral("CON_SED")); }

} // namespace contract
