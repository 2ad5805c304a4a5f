#include "sql/engines/odbc/odbcText.h"

#include "sql/connectionParts.h"
#include "sql/errors.h"

#include <algorithm>

namespace odbc {

namespace {

/// MySQL's own driver keeps a whole result in memory unless told to read it forward and not to keep it; MariaDB's
/// driver keeps it in any case, see `OdbcPortions`.
const QString StreamingOption = QStringLiteral("OPTION=3145728;");

#ifdef Q_OS_WIN
constexpr bool OnWindows = true;
#else
constexpr bool OnWindows = false;
#endif

void AddUnlessEmpty(Parts& parts, const char* key, const QString& value) {
    if (!value.isEmpty()) {
        parts.append({QString::fromLatin1(key), value});
    }
}

/// User and password, or the sign-on of the operating system.
void AddSignOn(Parts& parts, const ConnectionSettings& settings) {
    if (settings.networkCredential) {
        parts.append({QStringLiteral("Trusted_Connection"), QStringLiteral("Yes")});
        return;
    }
    AddUnlessEmpty(parts, "UID", settings.user);
    AddUnlessEmpty(parts, "PWD", settings.password);
}

/// FreeTDS takes the port apart from the server, where SQL Server's own driver reads "server,port".
void AddFreeTds(Parts& parts, const ConnectionSettings& settings, const char* version) {
    parts.append({QStringLiteral("SERVER"), settings.server.section(u',', 0, 0).trimmed()});
    const QString port = settings.server.section(u',', 1).trimmed();
    if (!port.isEmpty() || !settings.server.contains(u'\\')) {
        parts.append({QStringLiteral("PORT"), port.isEmpty() ? QStringLiteral("1433") : port});
    }
    parts.append({QStringLiteral("TDS_Version"), QString::fromLatin1(version)});
    parts.append({QStringLiteral("ClientCharset"), QStringLiteral("UTF-8")});
}

/// Usual driver of a provider; empty when there is none.
QString UsualDriver(Provider provider) {
    switch (provider) {
    case Provider::SqlServer:
        return OnWindows ? QStringLiteral("SQL Server") : QStringLiteral("FreeTDS");
    case Provider::Access:
        return OnWindows ? QStringLiteral("Microsoft Access Driver (*.mdb, *.accdb)") : QStringLiteral("MDBTools");
    case Provider::Sybase:
        return OnWindows ? QStringLiteral("SQL Anywhere 17") : QStringLiteral("FreeTDS");
    case Provider::MySql:
        return OnWindows ? QStringLiteral("MariaDB ODBC 3.1 Driver") : QStringLiteral("MariaDB Unicode");
    case Provider::Oracle:
        return OnWindows ? QStringLiteral("Microsoft ODBC for Oracle") : QStringLiteral("Oracle");
    case Provider::VisualFoxPro:
        return QStringLiteral("Microsoft Visual FoxPro Driver");
    }
    return {};
}

/// Oracle names a database by one word: "//server/service", or the alias of a server's own list.
QString OracleName(const ConnectionSettings& settings) {
    if (settings.server.isEmpty() || settings.databaseName.isEmpty()) {
        return settings.server + settings.databaseName;
    }
    return QStringLiteral("//") + settings.server + u'/' + settings.databaseName;
}

QString FromServer(const ConnectionSettings& settings, Provider provider) {
    const QString driver = settings.driver.isEmpty() ? UsualDriver(provider) : settings.driver;
    if (driver.isEmpty() || (settings.server.isEmpty() && settings.databaseName.isEmpty())) {
        throw ImportError(QStringLiteral("Connessione al database: indicare il DSN, la stringa di connessione oppure "
                                         "server e database"));
    }
    Parts parts{{QStringLiteral("DRIVER"), driver}};
    if (provider == Provider::Access) {
        parts.append({QStringLiteral("DBQ"), settings.databaseName});
        AddUnlessEmpty(parts, "PWD", settings.networkCredential ? QString() : settings.password);
        return WriteParts(parts);
    }
    if (provider == Provider::Oracle) {
        const bool microsoft = driver.startsWith(QLatin1String("Microsoft"));
        parts.append({microsoft ? QStringLiteral("SERVER") : QStringLiteral("DBQ"), OracleName(settings)});
        AddSignOn(parts, settings);
        return WriteParts(parts);
    }
    if (driver.contains(QLatin1String("FreeTDS"), Qt::CaseInsensitive)) {
        AddFreeTds(parts, settings, provider == Provider::Sybase ? "5.0" : "7.4");
    } else {
        AddUnlessEmpty(parts, "SERVER", settings.server);
    }
    AddUnlessEmpty(parts, "DATABASE", settings.databaseName);
    AddSignOn(parts, settings);
    return WriteParts(parts);
}

/// What OLE DB says, in the words of ODBC; other keys are the driver's own and stay.
QString FromOleDb(const Parts& oleDb, bool dataSourceIsDsn) {
    struct Word {
        QLatin1String oleDb;
        const char* odbc; ///< null: means nothing to ODBC
    };
    const Word words[] = {{QLatin1String("Provider"), nullptr},
                          {QLatin1String("Persist Security Info"), nullptr},
                          {QLatin1String("Extended Properties"), nullptr},
                          {QLatin1String("Data Source"), dataSourceIsDsn ? "DSN" : "SERVER"},
                          {QLatin1String("Initial Catalog"), "DATABASE"},
                          {QLatin1String("User ID"), "UID"},
                          {QLatin1String("Password"), "PWD"},
                          {QLatin1String("Integrated Security"), "Trusted_Connection"}};
    Parts parts;
    if (!dataSourceIsDsn) {
        parts.append({QStringLiteral("DRIVER"), UsualDriver(Provider::SqlServer)});
    }
    for (const Part& part : oleDb) {
        const auto* word = std::find_if(std::begin(words), std::end(words),
                                        [&part](const Word& w) { return Same(part.key, w.oleDb); });
        if (word == std::end(words)) {
            parts.append(part);
        } else if (word->odbc != nullptr) {
            const bool trusted = Same(part.key, QLatin1String("Integrated Security"));
            parts.append({QString::fromLatin1(word->odbc), trusted ? QStringLiteral("Yes") : part.value});
        }
    }
    const QString own = Find(oleDb, QLatin1String("Extended Properties")).value_or(QString());
    return WriteParts(parts) + own;
}

/// The connection string but for what makes its driver stream.
QString PlainText(const ConnectionSettings& settings, Provider provider) {
    if (!settings.connectionString.isEmpty()) {
        const Parts parts = ReadParts(settings.connectionString);
        const QString oleDb = Find(parts, QLatin1String("Provider")).value_or(QString());
        if (oleDb.startsWith(QLatin1String("MSDASQL"), Qt::CaseInsensitive)) {
            return FromOleDb(parts, true);
        }
        const bool sqlServer = oleDb.startsWith(QLatin1String("SQLOLEDB"), Qt::CaseInsensitive) ||
                               oleDb.startsWith(QLatin1String("SQLNCLI"), Qt::CaseInsensitive) ||
                               oleDb.startsWith(QLatin1String("MSOLEDBSQL"), Qt::CaseInsensitive);
        return sqlServer ? FromOleDb(parts, false) : settings.connectionString;
    }
    if (settings.dsn.isEmpty()) {
        return FromServer(settings, provider);
    }
    Parts parts{{QStringLiteral("DSN"), settings.dsn}};
    AddUnlessEmpty(parts, "DATABASE", settings.databaseName);
    AddSignOn(parts, settings);
    return WriteParts(parts);
}

} // namespace

QString ConnectionText(const ConnectionSettings& settings, Provider provider) {
    const QString text = PlainText(settings, provider);
    const Parts parts = ReadParts(text);
    const bool mySql =
        Find(parts, QLatin1String("DRIVER")).value_or(QString()).startsWith(u"MySQL", Qt::CaseInsensitive);
    return mySql && !Find(parts, QLatin1String("OPTION")) ? QString(StreamingOption + text) : text;
}

QString PlaceOf(const QString& text) {
    const Parts parts = ReadParts(text);
    const auto named = [&parts](std::initializer_list<const char*> keys) {
        for (const char* key : keys) {
            const QString value = Find(parts, QLatin1String(key)).value_or(QString());
            if (!value.isEmpty()) {
                return value;
            }
        }
        return QString();
    };
    const QString port = named({"PORT"});
    const QString host = named({"SERVER", "SERVERNAME", "HOST"});
    const QString server = port.isEmpty() || host.isEmpty() ? host : QString(host + u',' + port);
    const QString database = named({"DATABASE", "DBQ", "INITIAL CATALOG"});
    const QString dsn = named({"DSN"});
    if (!server.isEmpty()) {
        return database.isEmpty() ? QStringLiteral("Server '%1'").arg(server)
                                  : QStringLiteral("Database '%1' sul server '%2'").arg(database, server);
    }
    if (!dsn.isEmpty()) {
        return QStringLiteral("Origine dati ODBC '%1'").arg(dsn);
    }
    return database.isEmpty() ? QStringLiteral("Connessione '%1'").arg(WithoutPassword(text))
                              : QStringLiteral("Database '%1'").arg(database);
}

QString DriverOrDsn(const QString& text) {
    const Parts parts = ReadParts(text);
    const auto driver = Find(parts, QLatin1String("DRIVER"));
    return driver ? *driver : Find(parts, QLatin1String("DSN")).value_or(QString());
}

} // namespace odbc
