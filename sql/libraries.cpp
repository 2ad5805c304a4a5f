#include "sql/libraries.h"

#include <mysql.h>
#include <sqlite3.h>

QVector<Library> SqlLibraries() {
    return {{QStringLiteral("Qt"), QString::fromLatin1(qVersion())},
            {QStringLiteral("SQLite"), QString::fromLatin1(sqlite3_libversion())},
            {QStringLiteral("client MariaDB"), QString::fromLatin1(mysql_get_client_info())},
            {QStringLiteral("ODBC"), QStringLiteral(QUADRIX_ODBC_VERSION)}};
}
