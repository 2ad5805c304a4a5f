#include "adapters/contract/run/SourceCompany.h"

#include "adapters/contract/run/SourceRow.h"
#include "core/modMain.h"
#include "sources/layout/Layout.h"

#include <QDir>
#include <QSet>

namespace contract {

namespace {

const QString ImportSection = QStringLiteral("IMPORT");

QStringList ColumnsOf(ovConnection& source, const QString& table) {
    QStringList names;
    for (const ColumnInfo& column : source.GetColumns(table)) {
        names.append(column.name);
    }
    return names;
}

/// The values of a column, each once.
QList<QVariant> ValuesOf(ovConnection& source, const QString& table, const QString& column) {
    QList<QVariant> values;
    Recordset rows = source.ExecuteWC(QStringLiteral("SELECT DISTINCT %1 FROM %2 ORDER BY %1").arg(column, table));
    for (; !rows.Eof(); rows.MoveNext()) {
        values.append(rows.Value(column));
    }
    return values;
}

QString TextOf(const QVariant& value) { return value.toString().trimmed(); }

} // namespace

SourceCompany::SourceCompany(Session& session, CompanyKey key)
    : m_key(std::move(key)),
      m_code(modMain::GetAppConfig(session, ImportSection, m_key.setting, m_key.usual).trimmed()),
      m_setting(QStringLiteral("chiave %1, sezione [%2] di '%3'")
                    .arg(m_key.setting, ImportSection, QDir::toNativeSeparators(session.Config.ConfigFile()))) {}

void SourceCompany::CallTables(sources::Layout& layout, const QStringList& tables) const {
    if (!m_key.column.isEmpty() || m_code.isEmpty()) {
        return;
    }
    for (const QString& table : tables) {
        layout.CallTable(table, m_code + table);
    }
}

QString SourceCompany::Take(ovConnection& source, sources::Layout& layout, const QStringList& tables) const {
    return m_key.column.isEmpty() ? TakeByPrefix(source) : TakeByColumn(source, layout, tables);
}

QString SourceCompany::TakeByPrefix(ovConnection& source) const {
    QStringList companies;
    bool hasNoPrefix = false;
    for (const QString& table : source.GetTables()) {
        if (table.compare(m_key.table, Qt::CaseInsensitive) == 0) {
            if (m_code.isEmpty() || !ColumnsOf(source, m_key.table).isEmpty()) {
                return {};
            }
            hasNoPrefix = true; // the table of the company is another, and is not there
        } else if (table.endsWith(m_key.table, Qt::CaseInsensitive)) {
            companies.append(table.chopped(m_key.table.size()));
        }
    }
    if (companies.isEmpty() && hasNoPrefix) {
        return QStringLiteral("origine: azienda '%1'; le tabelle, come '%2', non hanno davanti un codice (%3)")
            .arg(m_code, m_key.table, m_setting);
    }
    return companies.isEmpty() ? QString() : Wrong(companies); // without any it is the tables that are missing
}

QString SourceCompany::TakeByColumn(ovConnection& source, sources::Layout& layout, const QStringList& tables) const {
    if (ColumnIn(ColumnsOf(source, m_key.table)).isEmpty()) {
        return m_code.isEmpty() ? QString() : Lacking(m_key.table);
    }
    QVariant company;
    QStringList companies;
    for (const QVariant& value : Companies(source, tables)) {
        companies.append(TextOf(value));
        if (m_code.isEmpty() || TextOf(value).compare(m_code, Qt::CaseInsensitive) == 0) {
            company = value;
        }
    }
    if (company.isNull() || (m_code.isEmpty() && companies.size() > 1)) {
        return companies.isEmpty() ? QString() : Wrong(companies);
    }
    for (const QString& table : tables) {
        const QStringList columns = ColumnsOf(source, table);
        if (const QString column = ColumnIn(columns); !column.isEmpty()) {
            FilterBy(layout, table, column, LiteralOf(source, company));
        } else if (!columns.isEmpty() && !m_code.isEmpty() && !IsEnding()) { // its rows would come from every company
            return Lacking(table);
        }
    }
    return {};
}

/// Of the table that lists them and of the others: what cannot be told apart must not be imported for each company, and
/// a company need not have rows in every table.
QList<QVariant> SourceCompany::Companies(ovConnection& source, const QStringList& tables) const {
    QList<QVariant> companies;
    QSet<QString> known;
    for (const QString& table : QStringList{m_key.table} + tables) {
        const QString column = ColumnIn(ColumnsOf(source, table));
        if (column.isEmpty()) {
            continue;
        }
        for (const QVariant& value : ValuesOf(source, table, column)) {
            if (const QString text = TextOf(value); !text.isEmpty() && !known.contains(text)) {
                known.insert(text);
                companies.append(value);
            }
        }
    }
    return companies;
}

/// A layout that is taken again has the condition already.
void SourceCompany::FilterBy(sources::Layout& layout, const QString& table, const QString& column,
                             const QString& literal) const {
    const QString called = layout.InSource({table + u'.' + column}).first().section(u'.', -1);
    const QString condition = called + QStringLiteral(" = ") + literal;
    const sources::LayoutTable* known = layout.Find(table);
    const QString own = known == nullptr ? QString() : known->filter;
    const bool isThere = own == condition || own.endsWith(QString(u") AND " + condition));
    if (!isThere) {
        layout.Filter(table, own.isEmpty() ? condition : QStringLiteral("(%1) AND %2").arg(own, condition));
    }
}

/// The column that tells the company; empty when it is not among them.
QString SourceCompany::ColumnIn(const QStringList& columns) const {
    const bool isEnding = IsEnding();
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const QString& column) {
        return isEnding ? column.endsWith(m_key.column.sliced(1), Qt::CaseInsensitive)
                        : column.compare(m_key.column, Qt::CaseInsensitive) == 0;
    });
    return found == columns.end() ? QString() : *found;
}

QString SourceCompany::Lacking(const QString& table) const {
    return QStringLiteral("origine: colonna '%1.%2', che distingue le aziende (%3)")
        .arg(table, m_key.column, m_setting);
}

QString SourceCompany::Wrong(const QStringList& companies) const {
    const QString present = QStringLiteral("'%1'").arg(companies.join(QStringLiteral("', '")));
    return m_code.isEmpty()
               ? QStringLiteral("origine: quale azienda si importa; ci sono %1 (%2)").arg(present, m_setting)
               : QStringLiteral("origine: azienda '%1'; ci sono %2 (%3)").arg(m_code, present, m_setting);
}

} // namespace contract
