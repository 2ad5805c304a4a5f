#include "app/mergeParts.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

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

/// Tables whose rows belong to a counterparty and own numbers and addresses themselves, by their RECORD_ID.
const QStringList Owners{"CON_RIF", "CON_SED"};
/// Tables of what rows of others own.
const QStringList Attached{"NUM_TEL", "IND_WEB"};

} // namespace

Copier::Copier(Session& session, Companies companies, const References& references)
    : m_session(session),
      m_companies(companies),
      m_references(references),
      m_ownCodes(session, std::move(companies)) {
    for (const QString& table : QStringList(Master) + Attached + Owners) {
        ReadTypes(table);
    }
}

void Copier::ReadTypes(const QString& table) {
    const CompanyUnderWork source(m_session.Quadrix, m_companies.from);
    const QString destination = TableOf(m_companies.to, table);
    QStringList known;
    for (const ColumnInfo& column : m_session.Quadrix.GetColumns(destination)) {
        known.append(column.name.toUpper());
    }
    for (const ColumnInfo& column : m_session.Quadrix.GetColumns(TableOf(m_companies.from, table))) {
        if (!known.contains(column.name.toUpper())) {
            throw ImportError(QStringLiteral("La colonna %1 della tabella %2 manca nella tabella %3")
                                  .arg(column.name, TableOf(m_companies.from, table), destination));
        }
        const QString type = m_session.Quadrix.GetFieldTypeText(table, column.name);
        m_types[table].insert(column.name.toUpper(), ovQueryConstructor::GetDataTypeFromString(type));
    }
}

Copied Copier::Copy(const modMain::MergeMatch& match) {
    Copied copied;
    CopyRows({Master, "CDCON", match.oldCode, match.newCode}, copied);
    CopyAttached(Master, match.oldCode, match.newCode, copied);
    for (const QString& table : Owners) {
        CopyRows({table, "CDCON", match.oldCode, match.newCode}, copied);
    }
    if (!match.isRecognisable) {
        copied.notes.append(
            QStringLiteral("CONTROPARTE NON RICONOSCIBILE: controparte %1 di %2, copiata come %3: senza "
                           "ragione sociale, partita IVA e codice fiscale, un'altra fusione la "
                           "copierebbe di nuovo")
                .arg(match.oldCode, m_companies.from, match.newCode));
    }
    return copied;
}

void Copier::CopyRows(const Rows& what, Copied& copied) {
    const QString query = u"SELECT * FROM " + TableOf(m_companies.from, what.table) + u"\rWHERE " + what.condition +
                          what.keyColumn + u" = " + TextLiteral(m_session.Quadrix, what.oldKey);
    for (Recordset rows = m_session.Quadrix.ExecuteWC(query); !rows.Eof(); rows.MoveNext()) {
        m_session.Quadrix.Execute(InsertText(what, rows, copied));
        ++copied.rows[what.table];
        if (Owners.contains(what.table)) {
            CopyAttached(what.table, mod_ovTools::ToText(rows.Value(Identity)),
                         QString::number(m_session.Quadrix.LastInsertId()), copied);
        }
    }
}

void Copier::CopyAttached(const QString& owner, const QString& oldKey, const QString& newKey, Copied& copied) {
    const QString condition = u"TBNAM = " + TextLiteral(m_session.Quadrix, owner) + u" AND\r      ";
    for (const QString& table : Attached) {
        CopyRows({table, "TBKEY", oldKey, newKey, condition}, copied);
    }
}

QString Copier::InsertText(const Rows& what, const Recordset& row, Copied& copied) {
    const auto& types = m_types[what.table];
    QStringList columns;
    QStringList values;
    for (const QString& column : row.Columns()) {
        if (column.compare(Identity, Qt::CaseInsensitive) == 0) {
            continue;
        }
        const bool isKey = column.compare(what.keyColumn, Qt::CaseInsensitive) == 0;
        const QVariant value = isKey ? QVariant(what.newKey) : Translated(what, column, row.Value(column), copied);
        columns.append(column);
        values.append(mod_ovTools::FormatSqlValue(TextAsIs(value), types.value(column.toUpper(), DataType::Char),
                                                  m_session.Quadrix.ProviderType));
    }
    return u"INSERT INTO " + TableOf(m_companies.to, what.table) + u" (" + columns.join(QStringLiteral(", ")) +
           u")\rVALUES (" + values.join(QStringLiteral(", ")) + u')';
}

bool Copier::HoldsCounterparty(const QString& table, const QString& column) const {
    const schema::Column* known = schema::FindTable(table)->FindColumn(column);
    const bool inSchema = known != nullptr && known->refersTo == Master && known->conditionColumn.isEmpty();
    return inSchema || m_references.Holds(table, column);
}

/// The source may hold the code of the other counterparty old or already re-pointed.
QVariant Copier::Translated(const Rows& what, const QString& column, const QVariant& value, Copied& copied) {
    const QString code = mod_ovTools::ToText(value);
    if (code.trimmed().isEmpty()) {
        return value;
    }
    if (!HoldsCounterparty(what.table, column)) {
        const QString note = m_ownCodes.NoteOf(what.oldKey, what.table, column, code.trimmed());
        copied.notes += note.isEmpty() ? QStringList() : QStringList(note);
        return value;
    }
    if (References::IsMarked(code)) {
        return References::Unmarked(code);
    }
    if (const auto newCode = NewCodeOf(code)) {
        return *newCode;
    }
    copied.notes.append(QStringLiteral("CODICE NON TRADOTTO: controparte %1 di %2, colonna %3: '%4' copiato com'è")
                            .arg(what.oldKey, m_companies.from, column, code));
    return value;
}

} // namespace merge
