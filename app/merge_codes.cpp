#include "app/codes/TargetCodes.h"
#include "app/mergeParts.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

namespace merge {

namespace {

/// The table whose codes a column holds, where each company has its own; null for any other column.
const schema::Table* OwnTable(const schema::Column* column) {
    if (column == nullptr || column->refersTo.isEmpty() || !column->conditionColumn.isEmpty()) {
        return nullptr;
    }
    const schema::Table* table = schema::FindTable(column->refersTo);
    return table == nullptr || table->shared || table->name == Master ? nullptr : table;
}

} // namespace

OwnCodes::OwnCodes(Session& session, Companies companies)
    : m_session(session),
      m_companies(std::move(companies)) {}

QString OwnCodes::NoteOf(const QString& counterparty, const QString& table, const QString& column,
                         const QString& code) {
    const schema::Column* holder = schema::FindTable(table)->FindColumn(column);
    const schema::Table* own = OwnTable(holder);
    const QString key = own == nullptr ? QString() : own->name + u'.' + code.toUpper();
    if (own == nullptr || m_told.contains(key)) {
        return {};
    }
    m_told.insert(key);
    const auto there = DescriptionOf(m_companies.to, *own, holder->refersToColumn, code);
    if (!there) {
        return QStringLiteral("CODICE CHE MANCA: controparte %1 di %2, colonna %3: '%4' copiato com'è, %5 non lo ha")
            .arg(counterparty, m_companies.from, column, code, TableOf(m_companies.to, own->name));
    }
    const auto here = DescriptionOf(m_companies.from, *own, holder->refersToColumn, code);
    return !here || here->compare(*there, Qt::CaseInsensitive) == 0
               ? QString()
               : QStringLiteral("CODICE DI ALTRO SIGNIFICATO: controparte %1 di %2, colonna %3: '%4' copiato com'è, in "
                                "%2 è '%5', in %6 è '%7'")
                     .arg(counterparty, m_companies.from, column, code, *here, m_companies.to, *there);
}

std::optional<QString> OwnCodes::DescriptionOf(const QString& company, const schema::Table& table,
                                               const QString& codeColumn, const QString& code) const {
    const Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT * FROM " + TableOf(company, table.name) + u"\rWHERE " +
                                                       codeColumn + u" = " + TextLiteral(m_session.Quadrix, code));
    if (rows.Eof()) {
        return std::nullopt;
    }
    const QString column = codes::DescriptionColumn({table.name, codeColumn});
    return column.isEmpty() ? QString() : mod_ovTools::ToText(rows.Value(column)).trimmed();
}

} // namespace merge
