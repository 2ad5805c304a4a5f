#include "sql/engines/odbc/odbcRights.h"

namespace odbc {

QVector<RightQuery> RightQueries(Dbms dbms, const QString& table, bool writes) {
    if (dbms != Dbms::SqlServer) {
        return {};
    }
    QString literal = table;
    literal.replace(u'\'', QLatin1String("''"));
    QVector<RightQuery> queries;
    for (const char* right : {"SELECT", "INSERT", "UPDATE", "DELETE"}) {
        const QString name = QLatin1String(right);
        queries.append({name, QStringLiteral("SELECT HAS_PERMS_BY_NAME(N'%1', N'OBJECT', N'%2')").arg(literal, name)});
        if (!writes) {
            break;
        }
    }
    return queries;
}

} // namespace odbc
