#include "app/mergeParts.h"
#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"

namespace merge {

namespace {

/// Another company under work, for as long as it lives.
class CompanyUnderWork {
public:
    CompanyUnderWork(ovConnection& connection, const QString& company)
        : m_connection(connection),
          m_before(connection.Company()) {
        m_connection.SetCompany(company);
    }
    ~CompanyUnderWork() { m_connection.SetCompany(m_before); }
    CompanyUnderWork(const CompanyUnderWork&) = delete;
    CompanyUnderWork& operator=(const CompanyUnderWork&) = delete;

private:
    ovConnection& m_connection;
    QString m_before;
};

const QString Identity = QStringLiteral("RECORD_ID");

} // namespace

Copier::Copier(Session& session, Companies companies)
    : m_session(session),
      m_companies(std::move(companies)),
      m_parts{{"CON_TRO", "CDCON", "", {}},
              {"NUM_TEL", "TBKEY", "TBNAM = 'CON_TRO'", {}},
              {"IND_WEB", "TBKEY", "TBNAM = 'CON_TRO'", {}},
              {"CON_RIF", "CDCON", "", {}},
              {"CON_SED", "CDCON", "", {}}} {
    for (Part& part : m_parts) {
        ReadTypes(part);
    }
}

void Copier::ReadTypes(Part& part) {
    const CompanyUnderWork source(m_session.Quadrix, m_companies.from);
    const QString destination = TableOf(m_companies.to, part.table);
    QStringList known;
    for (const ColumnInfo& column : m_session.Quadrix.GetColumns(destination)) {
        known.append(column.name.toUpper());
    }
    for (const ColumnInfo& column : m_session.Quadrix.GetColumns(TableOf(m_companies.from, part.table))) {
        if (!known.contains(column.name.toUpper())) {
            throw ImportError(QStringLiteral("La colonna %1 della tabella %2 manca nella tabella %3")
                                  .arg(column.name, TableOf(m_companies.from, part.table), destination));
        }
        const QString type = m_session.Quadrix.GetFieldTypeText(part.table, column.name);
        part.types.insert(column.name.toUpper(), ovQueryConstructor::GetDataTypeFromString(type));
    }
}

void Copier::Copy(const modMain::MergeMatch& match, QMap<QString, qint64>& copied) {
    for (const Part& part : m_parts) {
        copied[part.table] += CopyRows(part, match);
    }
}

qint64 Copier::CopyRows(const Part& part, const modMain::MergeMatch& match) {
    QString query = u"SELECT * FROM " + TableOf(m_companies.from, part.table) + u"\rWHERE " + part.codeColumn + u" = " +
                    Quoted(m_session, match.oldCode);
    if (!part.condition.isEmpty()) {
        query += u" AND\r      " + part.condition;
    }
    qint64 copied = 0;
    for (Recordset rows = m_session.Quadrix.ExecuteWC(query); !rows.Eof(); rows.MoveNext()) {
        m_session.Quadrix.Execute(InsertText(part, rows, match.newCode));
        ++copied;
    }
    return copied;
}

QString Copier::InsertText(const Part& part, const Recordset& rows, const QString& newCode) const {
    QStringList columns;
    QStringList values;
    for (const QString& column : rows.Columns()) {
        if (column.compare(Identity, Qt::CaseInsensitive) == 0) {
            continue;
        }
        const bool isCode = column.compare(part.codeColumn, Qt::CaseInsensitive) == 0;
        const QVariant value = isCode ? QVariant(newCode) : Translated(part, column, rows.Value(column));
        columns.append(column);
        values.append(mod_ovTools::FormatSqlValue(value, part.types.value(column.toUpper(), DataType::Char),
                                                  m_session.Quadrix.ProviderType));
    }
    return u"INSERT INTO " + TableOf(m_companies.to, part.table) + u" (" + columns.join(QStringLiteral(", ")) +
           u")\rVALUES (" + values.join(QStringLiteral(", ")) + u')';
}

/// The new code of another counterparty that the row refers to: the source may hold it old or already re-pointed.
QVariant Copier::Translated(const Part& part, const QString& column, const QVariant& value) const {
    if (KnownReferences == nullptr || value.isNull() || !KnownReferences->Holds(part.table, column)) {
        return value;
    }
    const QString code = mod_ovTools::ToText(value);
    return code.contains(u'X') ? References::Unmarked(code) : NewCodeOf(code);
}

} // namespace merge
