#include "sql/engines/odbc/odbcText.h"

#include "sql/connectionParts.h"
#include "sql/engines/lineText.h"
#include "sql/engines/odbc/odbcDrivers.h"
#include "sql/engines/odbc/odbcEncryption.h"
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
    if (settings.server.contains(u',')) {
        line::ReadPort(settings.server, port);
    }
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
        return SqlServerDriver(InstalledDrivers(), OnWindows);
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

/// A driver of Microsoft's that nobody has named stands in for the old one, which takes any certificate: it encrypts,
/// and is as easy about it. One that was named has its own way.
void AddUsualEncryption(Parts& parts, const ConnectionSettings& settings, DriverKind kind) {
    const bool isChosenHere = settings.driver.isEmpty() && settings.encryption == Encryption::DriversOwn;
    if (isChosenHere && kind == DriverKind::SqlServer) {
        parts.append({QStringLiteral("Encrypt"), QStringLiteral("yes")});
        parts.append({QStringLiteral("TrustServerCertificate"), QStringLiteral("yes")});
    }
}

/// A server that is spoken to in the words of another does not take its dates and names.
void RefuseOther(const ConnectionSettings& settings, Provider provider) {
    const DriverKind kind = KindOf(settings.driver);
    if (provider != Provider::MySql && (kind == DriverKind::MariaDb || kind == DriverKind::MySql)) {
        throw ImportError(QStringLiteral("Impostazione Driver: '%1' è un driver di MariaDB e MySQL, che si raggiungono "
                                         "senza: togliere Driver e indicare Provider=MYSQL, per un'origine "
                                         "ProviderType=3")
                              .arg(settings.driver));
    }
}

Parts FromServer(const ConnectionSettings& settings, Provider provider) {
    RefuseOther(settings, provider);
    const bool leadsSomewhere = !settings.server.isEmpty() || !settings.databaseName.isEmpty();
    const QString driver = settings.driver.isEmpty() && leadsSomewhere ? UsualDriver(provider) : settings.driver;
    if (driver.isEmpty() || !leadsSomewhere) {
        throw ImportError(QStringLiteral("Connessione al database: indicare il DSN, la stringa di connessione oppure "
                                         "server e database"));
    }
    Parts parts{{QStringLiteral("DRIVER"), driver}};
    if (provider == Provider::Access) {
        parts.append({QStringLiteral("DBQ"), settings.databaseName});
        AddUnlessEmpty(parts, "PWD", settings.networkCredential ? QString() : settings.password);
        return parts;
    }
    if (provider == Provider::Oracle) {
        const bool microsoft = driver.startsWith(QLatin1String("Microsoft"));
        parts.append({microsoft ? QStringLiteral("SERVER") : QStringLiteral("DBQ"), OracleName(settings)});
        AddSignOn(parts, settings);
        return parts;
    }
    const DriverKind kind = KindOf(driver);
    if (kind == DriverKind::FreeTds) {
        AddFreeTds(parts, settings, provider == Provider::Sybase ? "5.0" : "7.4");
    } else {
        AddUnlessEmpty(parts, "SERVER", settings.server);
    }
    AddUsualEncryption(parts, settings, kind);
    AddUnlessEmpty(parts, "DATABASE", settings.databaseName);
    AddSignOn(parts, settings);
    return parts;
}

/// What OLE DB says, in the words of ODBC; other keys are the driver's own and stay.
Parts FromOleDb(const Parts& oleDb, bool dataSourceIsDsn) {
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
    return parts + ReadParts(Find(oleDb, QLatin1String("Extended Properties")).value_or(QString()));
}

/// The OLE DB provider that a connection string is written for; empty for one in the words of ODBC.
QString OleDbProvider(const Parts& parts) {
    const QString provider = Find(parts, QLatin1String("Provider")).value_or(QString());
    for (const QLatin1String known :
         {QLatin1String("MSDASQL"), QLatin1String("SQLOLEDB"), QLatin1String("SQLNCLI"), QLatin1String("MSOLEDBSQL")}) {
        if (provider.startsWith(known, Qt::CaseInsensitive)) {
            return known;
        }
    }
    return {};
}

/// The parts of the connection string, but for encryption.
Parts PartsOf(const ConnectionSettings& settings, Provider provider) {
    if (!settings.connectionString.isEmpty()) {
        const Parts written = ReadParts(settings.connectionString);
        const QString oleDb = OleDbProvider(written);
        return oleDb.isEmpty() ? written : FromOleDb(written, oleDb == QLatin1String("MSDASQL"));
    }
    if (settings.dsn.isEmpty()) {
        return FromServer(settings, provider);
    }
    Parts parts{{QStringLiteral("DSN"), settings.dsn}};
    AddUnlessEmpty(parts, "DATABASE", settings.databaseName);
    AddSignOn(parts, settings);
    return parts;
}

/// FreeTDS ends a value between braces at "};" and takes every other brace in it as it stands.
QString WriteForFreeTds(const Parts& parts) {
    QString text;
    for (const Part& part : parts) {
        if (part.value.contains(QLatin1String("};"))) {
            const bool isPassword = Same(part.key, QLatin1String("PWD"));
            throw ImportError(QStringLiteral("Il driver FreeTDS non può ricevere %1 con i caratteri \"};\": cambiarl%2")
                                  .arg(isPassword ? QStringLiteral("una password")
                                                  : QStringLiteral("un valore di %1 ('%2')").arg(part.key, part.value),
                                       isPassword ? QStringLiteral("a") : QStringLiteral("o")));
        }
        const QString usual = Quoted(part.value);
        text += part.key + u'=' + (usual.startsWith(u'{') ? QString(u'{' + part.value + u'}') : usual) + u';';
    }
    return text;
}

/// A string in the words of ODBC that nothing is added to is not touched.
bool IsHonouredAsWritten(const ConnectionSettings& settings) {
    return settings.encryption == Encryption::DriversOwn && !settings.connectionString.isEmpty() &&
           OleDbProvider(ReadParts(settings.connectionString)).isEmpty();
}

/// The connection string but for what makes its driver stream.
QString PlainText(const ConnectionSettings& settings, Provider provider) {
    if (IsHonouredAsWritten(settings)) {
        return settings.connectionString;
    }
    Parts parts = PartsOf(settings, provider);
    const QString driver = DriverOf(parts);
    AskForEncryption(parts, driver, settings);
    return KindOf(driver) == DriverKind::FreeTds ? WriteForFreeTds(parts) : WriteParts(parts);
}

} // namespace

QString ConnectionText(const ConnectionSettings& settings, Provider provider) {
    const QString text = PlainText(settings, provider);
    const Parts parts = ReadParts(text);
    const bool mySql =
        Find(parts, QLatin1String("DRIVER")).value_or(QString()).startsWith(u"MySQL", Qt::CaseInsensitive);
    return mySql && !Find(parts, QLatin1String("OPTION")) ? QString(StreamingOption + text) : text;
}

QString DriverOf(const Parts& parts) {
    const auto driver = Find(parts, QLatin1String("DRIVER"));
    return driver ? *driver : DriverOfDsn(Find(parts, QLatin1String("DSN")).value_or(QString()));
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
