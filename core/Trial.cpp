#include "core/Trial.h"

#include "core/Schema.h"
#include "sql/mod_ovTools.h"

namespace {

/// Whether a table is one of Quadrix, by its physical name.
bool IsOfQuadrix(const QString& company, const QString& table) {
    const QString prefix = company + u'_';
    const QString bare = table.startsWith(prefix, Qt::CaseInsensitive) ? table.mid(prefix.size()) : table;
    return schema::FindTable(bare.toUpper()) != nullptr;
}

ovConnection& WhereAllIsTakenBack(Session& session) {
    const QStringList tables = TablesWithoutTransactions(session, session.UserManager.Azienda());
    if (!tables.isEmpty()) {
        throw ImportError(
            QStringLiteral("Una prova non si può fare: ciò che si scrive in %1 non si può riportare com'era. "
                           "Le tabelle devono essere di un tipo con transazioni, come InnoDB")
                .arg(tables.join(QStringLiteral(", "))));
    }
    return session.Quadrix;
}

} // namespace

QStringList TablesWithoutTransactions(Session& session, const QString& company) {
    QStringList tables;
    if (session.Quadrix.Embedded || session.Quadrix.ProviderType != Provider::MySql) {
        return tables;
    }
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT T.TABLE_NAME AS TABNM, T.ENGINE AS KIND FROM information_schema.TABLES T "
                       "JOIN information_schema.ENGINES E ON E.ENGINE = T.ENGINE "
                       "WHERE T.TABLE_SCHEMA = DATABASE() AND COALESCE(E.TRANSACTIONS, 'NO') <> 'YES' "
                       "ORDER BY T.TABLE_NAME"));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString table = mod_ovTools::ToText(rows.Value(QStringLiteral("TABNM")));
        if (IsOfQuadrix(company, table)) {
            tables.append(
                QStringLiteral("%1 (%2)").arg(table, mod_ovTools::ToText(rows.Value(QStringLiteral("KIND")))));
        }
    }
    return tables;
}

Trial::Trial(Session& session)
    : m_transaction(WhereAllIsTakenBack(session)) {}
