#include "adapters/contract/run/otherCompanies.h"

#include "sql/mod_ovTools.h"

namespace contract {

QStringList TablesOfOthers(Session& session, const QString& table) {
    QStringList names;
    const QString own = session.Quadrix.GetFullTableName(table);
    {
        Recordset companies = session.Quadrix.ExecuteWC(QStringLiteral("SELECT CDAZI FROM SYS_AZI ORDER BY CDAZI"));
        for (; !companies.Eof(); companies.MoveNext()) {
            names.append(mod_ovTools::ToText(companies.Fields(0).Value()).trimmed() + u'_' + table);
        }
    }
    names.removeIf([&own](const QString& name) { return name.compare(own, Qt::CaseInsensitive) == 0; });
    if (!names.isEmpty()) { // a company that is listed may have its tables elsewhere
        const QStringList there = session.Quadrix.GetTables();
        names.removeIf([&there](const QString& name) { return !there.contains(name, Qt::CaseInsensitive); });
    }
    return names;
}

QString OfThisCompanyAlone(const Session& session, const QString& column, const QString& table, const QString& code,
                           const QStringList& others) {
    QString condition =
        QStringLiteral("%1 IN (SELECT %2 FROM %3)").arg(column, code, session.Quadrix.GetFullTableName(table));
    for (const QString& other : others) { // without Null, of which nothing is known not to be there
        condition += QStringLiteral(" AND %1 NOT IN (SELECT %2 FROM %3 WHERE %2 IS NOT NULL)").arg(column, code, other);
    }
    return condition;
}

} // namespace contract
