#include "adapters/contract/run/SourceCompany.h"

#include "adapters/contract/run/SourceRow.h"
#include "core/modMain.h"
#include "sources/layout/Layout.h"

#include <QDir>

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

QString ConditionOf(const QString& column, const QString& literal) {
    const bool isNull = literal.compare(u"NULL", Qt::CaseInsensitive) == 0;
    return column + (isNull ? QStringLiteral(" IS NULL") : QString(QStringLiteral(" = ") + literal));
}

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

QString SourceCompany::Take(ovConnection& source, sources::Layout& layout, const QStringList& tables) {
    return m_key.column.isEmpty() ? TakeByPrefix(source) : TakeByColumn(source, layout, tables);
}

QString SourceCompany::TakeByPrefix(ovConnection& source) {
    QStringList companies;
    bool hasNoPrefix = false;
    for (const QString& table : source.GetTables()) {
        if (table.compare(m_key.table, Qt::CaseInsensitive) == 0) {
            if (m_code.isEmpty() || !ColumnsOf(source, m_key.table).isEmpty()) {
                m_taken = m_code;
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

QString SourceCompany::TakeByColumn(ovConnection& source, sources::Layout& layout, const QStringList& tables) {
    if (ColumnIn(ColumnsOf(source, m_key.table)).isEmpty()) {
        return m_code.isEmpty() ? QString() : Lacking(m_key.table);
    }
    const Values values = ValuesByTable(source, QStringList{m_key.table} + tables);
    QVariant company;
    QStringList companies;
    for (const QString& table : QStringList{m_key.table} + tables) {
        for (const QVariant& value : values.value(table)) {
            const QString text = TextOf(value);
            if (text.isEmpty() || companies.contains(text, Qt::CaseInsensitive)) {
                continue;
            }
            companies.append(text);
            company = m_code.isEmpty() || text.compare(m_code, Qt::CaseInsensitive) == 0 ? value : company;
        }
    }
    if (company.isNull() || (m_code.isEmpty() && companies.size() > 1)) {
        return companies.isEmpty() ? QString() : Wrong(companies);
    }
    m_taken = TextOf(company);
    m_takesNameless = m_code.isEmpty();
    for (const QString& table : tables) {
        const QStringList columns = ColumnsOf(source, table);
        if (const QString column = ColumnIn(columns); !column.isEmpty()) {
            CountNameless(source, table, column, values.value(table));
            QStringList literals{LiteralOf(source, company)};
            for (const QVariant& value : values.value(table)) {
                const QString text = TextOf(value);
                const bool isTaken = text.isEmpty() ? m_takesNameless : text.compare(m_taken, Qt::CaseInsensitive) == 0;
                if (const QString literal = LiteralOf(source, value); isTaken && !literals.contains(literal)) {
                    literals.append(literal);
                }
            }
            FilterBy(layout, table, column, literals);
        } else if (!columns.isEmpty() && !m_code.isEmpty() && !IsEnding()) { // its rows would come from every company
            return Lacking(table);
        }
    }
    return {};
}

/// Of the table that lists them and of the others: what cannot be told apart must not be imported for each company, and
/// a company need not have rows in every table.
SourceCompany::Values SourceCompany::ValuesByTable(ovConnection& source, const QStringList& tables) const {
    Values values;
    for (const QString& table : tables) {
        const QString column = values.contains(table) ? QString() : ColumnIn(ColumnsOf(source, table));
        if (!column.isEmpty()) {
            values.insert(table, ValuesOf(source, table, column));
        }
    }
    return values;
}

/// Those that are not read cannot be counted a second time.
void SourceCompany::CountNameless(ovConnection& source, const QString& table, const QString& column,
                                  const QList<QVariant>& values) {
    QStringList conditions;
    for (const QVariant& value : values) {
        if (TextOf(value).isEmpty()) {
            conditions.append(ConditionOf(column, LiteralOf(source, value)));
        }
    }
    if (!conditions.isEmpty()) {
        m_nameless[table] = source.ExecuteCommand(
            QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2").arg(table, conditions.join(QStringLiteral(" OR "))));
    }
}

/// A layout that is taken again has the condition already.
void SourceCompany::FilterBy(sources::Layout& layout, const QString& table, const QString& column,
                             const QStringList& literals) const {
    const QString called = layout.InSource({table + u'.' + column}).first().section(u'.', -1);
    QStringList conditions;
    for (const QString& literal : literals) {
        conditions.append(ConditionOf(called, literal));
    }
    const QString any = conditions.join(QStringLiteral(" OR "));
    const QString condition = conditions.size() > 1 ? QString(u'(' + any + u')') : any;
    const sources::LayoutTable* known = layout.Find(table);
    const QString own = known == nullptr ? QString() : known->filter;
    const bool isThere = own == condition || own.endsWith(QString(u") AND " + condition));
    if (!isThere) {
        layout.Filter(table, own.isEmpty() ? condition : QStringLiteral("(%1) AND %2").arg(own, condition));
    }
}

QStringList SourceCompany::Lines(const QStringList& tables) const {
    if (m_taken.isEmpty()) {
        return {};
    }
    QStringList lines{QStringLiteral("Azienda dell'origine: '%1'").arg(m_taken)};
    for (const QString& table : tables) {
        if (const qint64 rows = m_nameless.value(table); rows > 0) {
            lines.append(QStringLiteral("Righe senza azienda: della tabella '%1' sono %2, e %3")
                             .arg(table, QString::number(rows),
                                  m_takesNameless ? QStringLiteral("si leggono con quelle dell'azienda")
                                                  : QStringLiteral("non si leggono")));
        }
    }
    return lines;
}

bool SourceCompany::IsOfAnother(const QString& name, const QStringList& tables, const QStringList& read) const {
    if (!m_key.column.isEmpty() || m_code.isEmpty() || name.startsWith(m_code, Qt::CaseInsensitive)) {
        return false;
    }
    return std::any_of(tables.begin(), tables.end(), [&](const QString& table) {
        const QString code =
            table.endsWith(m_key.table, Qt::CaseInsensitive) ? table.chopped(m_key.table.size()) : QString();
        return !code.isEmpty() && name.startsWith(code, Qt::CaseInsensitive) &&
               read.contains(name.sliced(code.size()), Qt::CaseInsensitive);
    });
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
