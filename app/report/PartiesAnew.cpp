#include "app/report/PartiesAnew.h"

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
/// By these a counterparty is found: its code, its codes in the source, its numbers.
const QStringList FoundBy{Code, AsCustomer, AsSupplier, "COIVA", "COFIS"};

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

/// Whether one row of the source has made it.
bool IsOfOne(const QMap<QString, QVariant>& values) {
    const QString codes = SourceCodes(values);
    const QString customer = codes.section(QChar(u'\x1f'), 0, 0);
    const QString supplier = codes.section(QChar(u'\x1f'), 1);
    return !codes.isEmpty() && (customer.isEmpty() || supplier.isEmpty() || customer == supplier);
}

} // namespace

void PartiesAnew::Hide() {
    Recordset rows =
        m_session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, USINS, " + (FoundBy + Lists).join(u", ") + u" FROM " + m_table);
    for (; !rows.Eof(); rows.MoveNext()) {
        Party party{rows.Value(IdColumn).toLongLong(), {}, {}};
        for (const QString& column : FoundBy) {
            party.foundBy.insert(column, rows.Value(column));
        }
        for (const QString& column : Lists) {
            if (IsOwnList(rows, column)) {
                party.ownLists.insert(column, rows.Value(column));
            }
        }
        m_last = std::max(m_last, party.id);
        const bool isImported =
            mod_ovTools::ToText(rows.Value(QStringLiteral("USINS"))).trimmed() == schema::defaults::ImportUser;
        if (isImported && IsOfOne(party.foundBy)) {
            m_hidden.push_back(party);
        }
    }
    rows.Close();
    for (const Party& party : m_hidden) {
        Set(party.id, {{Code, HiddenCode(party.id)}, {AsCustomer, {}}, {AsSupplier, {}}, {"COIVA", {}}, {"COFIS", {}}});
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

/// What the trial has written, by its codes in the source; it is taken out of the table. A column that is blank is not
/// the import's own.
QHash<QString, PartiesAnew::Values> PartiesAnew::TakeAnew() {
    static const QStringList others{IdColumn, Code, "USINS", "DTINS", "USMDF", "DTMDF"};
    const QString anew = m_table + u" WHERE RECORD_ID > " + QString::number(m_last);
    QHash<QString, Values> taken;
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
        taken.insert(SourceCodes(values), values);
    }
    rows.Close();
    m_session.Quadrix.Execute(u"DELETE FROM " + anew);
    return taken;
}

void PartiesAnew::Show() {
    const QHash<QString, Values> anew = TakeAnew();
    for (const Party& party : m_hidden) {
        Values values = party.foundBy;
        const auto given = anew.constFind(SourceCodes(party.foundBy));
        if (given != anew.cend()) {
            values.insert(*given);
            values.insert(party.ownLists);
            values.insert(QStringLiteral("USMDF"), schema::defaults::ImportUser);
            values.insert(QStringLiteral("DTMDF"), m_session.Now());
        }
        Set(party.id, values);
    }
}

} // namespace proof
