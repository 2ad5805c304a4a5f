#include "app/report/PartiesAnew.h"

#include "adapters/contract/map/lookups.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"

namespace proof {

using contract::Equals;

namespace {

const QString ImportUser = QStringLiteral("SYSTEM_IMPORT");
/// By these a counterparty is found: its code, its codes in the source, its numbers.
const QStringList FoundBy{"CDCON", "COCGE", "COFGE", "COIVA", "COFIS"};
enum Place { Code, AsCustomer, AsSupplier };

QString TextOf(const QVariant& value) { return mod_ovTools::ToText(value).trimmed(); }

/// A code that nobody has, and that comes before every number.
QString HiddenCode(qint64 id) { return u'!' + QString::number(id, 36); }

/// The code in the source of a counterparty that one row of it has made; empty for others.
QString SourceCode(const QVariantList& values) {
    const QString customer = TextOf(values.at(AsCustomer));
    const QString supplier = TextOf(values.at(AsSupplier));
    return customer.isEmpty() || customer == supplier ? supplier : supplier.isEmpty() ? customer : QString();
}

} // namespace

void PartiesAnew::Hide(const std::vector<const contract::Mapping*>& mappings) {
    Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, " + FoundBy.join(u", ") + u" FROM " +
                                                 m_session.Quadrix.GetFullTableName(Table) + u" WHERE " +
                                                 Equals(m_session, QStringLiteral("USINS"), ImportUser));
    for (; !rows.Eof(); rows.MoveNext()) {
        Party party{rows.Value(QStringLiteral("RECORD_ID")).toLongLong(), {}};
        for (const QString& column : FoundBy) {
            party.values.append(rows.Value(column));
        }
        if (!SourceCode(party.values).isEmpty()) {
            m_hidden.push_back(party);
        }
    }
    rows.Close();
    for (const contract::Mapping* mapping : mappings) {
        if (mapping->targetTable == Table) {
            Translate(*mapping);
        }
    }
    for (const Party& party : m_hidden) {
        Set(party.id, FoundBy, {HiddenCode(party.id), {}, {}, {}, {}});
    }
}

/// Has the codes of the source mean the codes that the counterparties have.
void PartiesAnew::Translate(const contract::Mapping& mapping) {
    const auto code = std::find_if(mapping.lines.begin(), mapping.lines.end(),
                                   [](const contract::MapLine& line) { return line.target == FoundBy.first(); });
    if (code == mapping.lines.end() || code->sources.isEmpty()) {
        return;
    }
    constexpr qsizetype longestName = 20; // as translations are kept
    const QString table = mapping.sourceTable.left(longestName);
    const QString field = code->sources.first().left(longestName);
    for (const Party& party : m_hidden) {
        const QString old = SourceCode(party.values);
        m_session.Quadrix.Execute(QStringLiteral("DELETE FROM SYS_IMP WHERE ") + Equals(m_session, "TBNAM", table) +
                                  u" AND " + Equals(m_session, "TBFLD", field) + u" AND " +
                                  Equals(m_session, "TBOLD", old));
        ovQueryConstructor query;
        query.ProviderType = m_session.Quadrix.ProviderType;
        query.SetTable(QStringLiteral("SYS_IMP"));
        query.AddUpdateField("TBNAM", table, DataType::NVarChar);
        query.AddUpdateField("TBFLD", field, DataType::NVarChar);
        query.AddUpdateField("TBOLD", old, DataType::NVarChar);
        query.AddUpdateField("TBNEW", party.values.at(Code), DataType::NVarChar);
        m_session.Quadrix.Execute(query.MakeStatement(StatementKind::Insert));
    }
}

void PartiesAnew::Set(qint64 id, const QStringList& columns, const QVariantList& values) {
    const schema::Table& table = *schema::FindTable(Table);
    ovQueryConstructor query;
    query.ProviderType = m_session.Quadrix.ProviderType;
    query.SetTable(Table, m_session.UserManager.Azienda());
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const schema::Column* column = table.FindColumn(columns.at(i));
        query.AddUpdateField(columns.at(i), values.at(i), column == nullptr ? DataType::NVarChar : column->type, true);
    }
    query.WhereString = QStringLiteral("WHERE ") + Equals("RECORD_ID", id);
    m_session.Quadrix.Execute(query.MakeStatement(StatementKind::Update));
}

void PartiesAnew::Show() {
    for (const Party& party : m_hidden) {
        if (!GiveBack(party)) {
            Set(party.id, FoundBy, party.values);
        }
    }
}

/// Puts what the trial has written under the code of a counterparty into its row; false when it has written nothing. A
/// column that it leaves blank is not its own.
bool PartiesAnew::GiveBack(const Party& party) {
    const QString table = m_session.Quadrix.GetFullTableName(Table);
    const QString condition = Equals(m_session, FoundBy.first(), TextOf(party.values.at(Code)));
    Recordset anew = m_session.Quadrix.ExecuteWC(u"SELECT * FROM " + table + u" WHERE " + condition);
    if (anew.Eof()) {
        return false;
    }
    QStringList columns = FoundBy;
    QVariantList values = party.values;
    for (const QString& column : anew.Columns()) {
        const QVariant value = anew.Value(column);
        static const QStringList own{"RECORD_ID", "USINS", "DTINS", "CDCON"};
        if (own.contains(column, Qt::CaseInsensitive) || mod_ovTools::ToText(value).isEmpty()) {
            continue;
        }
        if (const qsizetype known = columns.indexOf(column.toUpper()); known >= 0) {
            values[known] = value;
        } else {
            columns.append(column);
            values.append(value);
        }
    }
    anew.Close();
    columns.append({"USMDF", "DTMDF"});
    values.append({ImportUser, m_session.Now()});
    m_session.Quadrix.Execute(u"DELETE FROM " + table + u" WHERE " + condition);
    Set(party.id, columns, values);
    return true;
}

} // namespace proof
