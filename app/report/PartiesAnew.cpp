#include "app/report/PartiesAnew.h"

#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"
#include "app/report/names.h"
#include "core/Schema.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"

namespace proof {

using contract::Equals;

namespace {

const QString IdColumn = QStringLiteral("RECORD_ID");
const QString Code = QStringLiteral("CDCON");
const QString AsCustomer = QStringLiteral("COCGE");
const QString AsSupplier = QStringLiteral("COFGE");
const QString AsCarrier = QStringLiteral("COVET");
const QString ItsCarrier = QStringLiteral("COVEP");
/// By these a counterparty is found: its code, its codes in the source, its numbers, and a carrier's name.
const QStringList FoundBy{Code, AsCustomer, AsSupplier, "COIVA", "COFIS", AsCarrier};

const QStringList Lists{"COLSC", "COLSF"};

/// Whether the price list of a counterparty is the one of its own code.
bool IsOwnList(const Recordset& rows, const QString& column) {
    const QString list = mod_ovTools::ToText(rows.Value(column)).trimmed();
    return !list.isEmpty() && list == mod_ovTools::ToText(rows.Value(Code)).trimmed();
}

/// A code that nobody has, and that comes before every number.
QString HiddenCode(qint64 id) { return u'!' + QString::number(id, 36); }

/// The codes in the source; empty without any.
QString SourceCodes(const QMap<QString, QVariant>& values) {
    const QString customer = mod_ovTools::ToText(values.value(AsCustomer)).trimmed();
    const QString supplier = mod_ovTools::ToText(values.value(AsSupplier)).trimmed();
    return customer.isEmpty() && supplier.isEmpty() ? QString() : QString(customer + QChar(u'\x1f') + supplier);
}

QString TextOf(const Recordset& row, const QString& column) { return mod_ovTools::ToText(row.Value(column)).trimmed(); }

} // namespace

/// CDCON of the carriers of the company by what SYS_IMP knows them by: they have no column for their code in the
/// source.
QHash<QString, QString> PartiesAnew::Carriers() {
    Recordset rows =
        m_session.Quadrix.ExecuteWC(u"SELECT TBFLD, TBOLD, TBNEW FROM SYS_IMP WHERE " +
                                    Equals(m_session, QStringLiteral("TBNAM"), contract::JoinedPartyList(m_session)));
    QHash<QString, QString> carriers;
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString list = TextOf(rows, QStringLiteral("TBFLD"));
        if (list != AsCustomer && list != AsSupplier) {
            carriers.insert(list + QChar(u'\x1f') + TextOf(rows, QStringLiteral("TBOLD")),
                            TextOf(rows, QStringLiteral("TBNEW")));
        }
    }
    return carriers;
}

void PartiesAnew::Hide() {
    QMultiHash<QString, QString> carriers; // by CDCON
    for (const auto& [carrier, code] : Carriers().asKeyValueRange()) {
        carriers.insert(code, carrier);
    }
    Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, USINS, " + ItsCarrier + u", " +
                                                 (FoundBy + Lists).join(u", ") + u" FROM " + m_table);
    for (; !rows.Eof(); rows.MoveNext()) {
        Party party{.id = rows.Value(IdColumn).toLongLong(), .carrier = TextOf(rows, ItsCarrier)};
        for (const QString& column : FoundBy) {
            party.foundBy.insert(column, rows.Value(column));
        }
        for (const QString& column : Lists) {
            if (IsOwnList(rows, column)) {
                party.ownLists.insert(column, rows.Value(column));
            }
        }
        m_last = std::max(m_last, party.id);
        const bool hasCodes = !SourceCodes(party.foundBy).isEmpty();
        party.carriers = hasCodes ? QStringList() : carriers.values(TextOf(rows, Code));
        const bool isImported = TextOf(rows, QStringLiteral("USINS")) == schema::defaults::ImportUser;
        if (isImported && (hasCodes || !party.carriers.isEmpty())) {
            m_hidden.push_back(party);
        }
    }
    rows.Close();
    for (const Party& party : m_hidden) {
        Set(party.id, {{Code, HiddenCode(party.id)},
                       {AsCustomer, {}},
                       {AsSupplier, {}},
                       {"COIVA", {}},
                       {"COFIS", {}},
                       {AsCarrier, false}});
    }
}

void PartiesAnew::Set(qint64 id, const Values& values) {
    const schema::Table& table = *schema::FindTable(Table);
    ovQueryConstructor query;
    query.ProviderType = m_session.Quadrix.ProviderType;
    query.SetTable(Table, m_session.UserManager.Azienda());
    for (const auto& [name, value] : values.asKeyValueRange()) {
        const schema::Column* column = table.FindColumn(name);
        query.AddUpdateField(name, value, column == nullptr ? DataType::NVarChar : column->type);
    }
    query.WhereString = QStringLiteral("WHERE ") + Equals(IdColumn, id);
    m_session.Quadrix.Execute(query.MakeStatement(StatementKind::Update));
}

/// What the trial has written; it is taken out of the table. A column that is blank is not the import's own.
PartiesAnew::Written PartiesAnew::TakeAnew() {
    static const QStringList others{IdColumn, Code, "USINS", "DTINS", "USMDF", "DTMDF"};
    const QString anew = m_table + u" WHERE RECORD_ID > " + QString::number(m_last);
    Written written;
    Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT * FROM " + anew);
    const QStringList columns = rows.Columns();
    for (; !rows.Eof(); rows.MoveNext()) {
        Values values;
        for (int i = 0; i < columns.size(); ++i) {
            const QString column = columns.at(i).toUpper();
            const QVariant value = rows.Fields(i).Value();
            if (!others.contains(column) && !mod_ovTools::ToText(value).isEmpty()) {
                values.insert(column, value);
            }
        }
        const QString code = TextOf(rows, Code);
        written.codes.insert(SourceCodes(values), code);
        written.values.insert(code, values);
    }
    rows.Close();
    m_session.Quadrix.Execute(u"DELETE FROM " + anew);
    return written;
}

/// Finds what the trial has written of each by its codes in the source; of several that have the same it cannot be told
/// which is which.
void PartiesAnew::FindAnew(const Written& written) {
    const QHash<QString, QString> carriers = Carriers();
    for (Party& party : m_hidden) {
        if (party.carriers.isEmpty()) {
            const QStringList found = written.codes.values(SourceCodes(party.foundBy));
            party.anew = found.size() == 1 ? found.first() : QString();
        }
        for (const QString& carrier : std::as_const(party.carriers)) {
            const QString code = carriers.value(carrier);
            party.anew = written.values.contains(code) ? code : party.anew;
        }
        (party.anew.isEmpty() ? m_inVain : m_anew).insert(party.id);
    }
}

void PartiesAnew::Show() {
    const Written written = TakeAnew();
    FindAnew(written);
    QHash<QString, QVariant> codes; // that they have, by those that the trial has given them
    for (const Party& party : m_hidden) {
        if (!party.anew.isEmpty()) {
            codes.insert(party.anew, party.foundBy.value(Code));
        }
    }
    for (const Party& party : m_hidden) {
        Values values = party.foundBy;
        if (!party.anew.isEmpty()) {
            values.insert(written.values.value(party.anew));
            values.insert(party.ownLists);
            const QString carrier = mod_ovTools::ToText(values.value(ItsCarrier)).trimmed();
            if (carrier != party.carrier && codes.contains(carrier)) {
                values.insert(ItsCarrier, codes.value(carrier));
            }
            values.insert(QStringLiteral("USMDF"), schema::defaults::ImportUser);
            values.insert(QStringLiteral("DTMDF"), m_session.Now());
        }
        Set(party.id, values);
    }
}

} // namespace proof
