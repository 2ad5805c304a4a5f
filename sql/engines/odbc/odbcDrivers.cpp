#include "sql/engines/odbc/odbcDrivers.h"

#include "sql/engines/odbc/odbcApi.h"

#include <QRegularExpression>

#include <algorithm>

namespace odbc {

namespace {

const QString Old = QStringLiteral("SQL Server");
const QString FreeTds = QStringLiteral("FreeTDS");

struct Entry {
    QString name;
    QString more;
};

/// Goes through one of the lists of the driver manager. @param next SQLDriversW or SQLDataSourcesW, for a list of names
/// with a text each
template<class Next>
QVector<Entry> ListOf(const Next& next) {
    constexpr SQLSMALLINT Longest = 512;
    Handle<SQL_HANDLE_ENV> environment(nullptr);
    SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3),
                  0); // NOLINT(performance-no-int-to-ptr)
    QVector<Entry> entries;
    SQLWCHAR name[Longest] = {};
    SQLWCHAR more[Longest] = {};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT moreLength = 0;
    SQLUSMALLINT which = SQL_FETCH_FIRST;
    while (SQL_SUCCEEDED(next(environment.Get(), which, name, Longest, &nameLength, more, Longest, &moreLength))) {
        entries.append({Text(name, std::clamp<SQLSMALLINT>(nameLength, 0, Longest - 1)),
                        Text(more, std::clamp<SQLSMALLINT>(moreLength, 0, Longest - 1))});
        which = SQL_FETCH_NEXT;
    }
    return entries;
}

} // namespace

DriverKind KindOf(const QString& driver) {
    struct Known {
        const char* words; ///< regular expression
        DriverKind kind;
    };
    static constexpr Known All[] = {
        {"freetds|tdsodbc", DriverKind::FreeTds},
        {"odbc driver \\d+ for sql server|native client|msodbcsql|sqlncli", DriverKind::SqlServer},
        {"^sql server$|sqlsrv32", DriverKind::OldSqlServer},
        {"mariadb|maodbc", DriverKind::MariaDb},
        {"mysql|myodbc", DriverKind::MySql},
        {"oracle|sqora", DriverKind::Oracle},
        {"access|foxpro|excel|dbase|paradox|text driver|sqlite|mdbtools|mdbodbc", DriverKind::Files},
    };
    const auto* found = std::find_if(std::begin(All), std::end(All), [&driver](const Known& known) {
        return driver.contains(
            QRegularExpression(QLatin1String(known.words), QRegularExpression::CaseInsensitiveOption));
    });
    return found == std::end(All) ? DriverKind::Other : found->kind;
}

int VersionOf(const QString& driver) {
    static const QRegularExpression version(QStringLiteral("(?:ODBC Driver |msodbcsql-?)(\\d+)"),
                                            QRegularExpression::CaseInsensitiveOption);
    return version.match(driver).captured(1).toInt();
}

QStringList InstalledDrivers() {
    QStringList names;
    for (const Entry& entry : ListOf(SQLDriversW)) {
        names.append(entry.name);
    }
    return names;
}

QString DriverOfDsn(const QString& dsn) {
    for (const Entry& entry : ListOf(SQLDataSourcesW)) {
        if (entry.name.compare(dsn, Qt::CaseInsensitive) == 0) {
            return entry.more;
        }
    }
    return {};
}

QString SqlServerDriver(const QStringList& installed, bool onWindows) {
    const QString newest = QStringLiteral("ODBC Driver 18 for SQL Server");
    const QString before = QStringLiteral("ODBC Driver 17 for SQL Server");
    const QStringList wanted = onWindows ? QStringList{newest, before, Old} : QStringList{FreeTds, newest, before};
    for (const QString& driver : wanted) {
        if (installed.contains(driver, Qt::CaseInsensitive)) {
            return driver;
        }
    }
    return onWindows ? Old : FreeTds;
}

} // namespace odbc
