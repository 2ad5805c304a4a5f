#include "sql/odbcText.h"

#include "sql/errors.h"

#include <QRegularExpression>
#include <QSysInfo>

#include <algorithm>
#include <optional>

namespace odbc {

namespace {

/// One "key=value" of a connection string, the value without its braces or quotes.
struct Part {
    QString key;
    QString value;
};
using Parts = QVector<Part>;

/// MySQL's own driver keeps a whole result in memory unless told to read it forward and not to keep it; MariaDB's
/// driver keeps it in any case.
const QString StreamingOption = QStringLiteral("OPTION=3145728;");

#ifdef Q_OS_WIN
constexpr bool OnWindows = true;
#else
constexpr bool OnWindows = false;
#endif

bool Same(const QString& text, QLatin1String word) { return text.compare(word, Qt::CaseInsensitive) == 0; }

/// End of the value that starts at `at`: the ";" after it, or the end of the text.
qsizetype EndOfValue(const QString& text, qsizetype at) {
    const QChar first = at < text.size() ? text.at(at) : QChar();
    const QChar close = first == u'{' ? QChar(u'}') : first;
    if (close == u'}' || close == u'"' || close == u'\'') {
        for (qsizetype end = text.indexOf(close, at + 1); end >= 0; end = text.indexOf(close, end + 2)) {
            if (end + 1 >= text.size() || text.at(end + 1) != close) {
                at = end + 1;
                break;
            }
        }
    }
    const qsizetype end = text.indexOf(u';', at);
    return end < 0 ? text.size() : end;
}

QString Unquoted(const QString& value) {
    const QString text = value.trimmed();
    const QChar first = text.isEmpty() ? QChar() : text.front();
    const QChar close = first == u'{' ? QChar(u'}') : first;
    if (text.size() < 2 || (close != u'}' && close != u'"' && close != u'\'') || text.back() != close) {
        return text;
    }
    QString inner = text.mid(1, text.size() - 2);
    return inner.replace(QString(2, close), QString(close));
}

/// A piece without "=" belongs to the value before it: a password with a ";" that nobody put between braces.
Parts Read(const QString& text) {
    Parts parts;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype equals = text.indexOf(u'=', at);
        const qsizetype semicolon = text.indexOf(u';', at);
        const qsizetype pieceEnd = semicolon < 0 ? text.size() : semicolon;
        if (equals < 0 || equals > pieceEnd) {
            const QString piece = text.mid(at, pieceEnd - at);
            if (!parts.isEmpty() && !piece.trimmed().isEmpty()) {
                parts.last().value += u';' + piece;
            }
            at = pieceEnd + 1;
            continue;
        }
        qsizetype start = equals + 1;
        while (start < text.size() && text.at(start) == u' ') {
            ++start;
        }
        const qsizetype end = EndOfValue(text, start);
        parts.append({text.mid(at, equals - at).trimmed(), Unquoted(text.mid(start, end - start))});
        at = end + 1;
    }
    return parts;
}

std::optional<QString> Find(const Parts& parts, QLatin1String key) {
    const auto found =
        std::find_if(parts.begin(), parts.end(), [key](const Part& part) { return Same(part.key, key); });
    return found == parts.end() ? std::nullopt : std::optional(found->value);
}

QString Write(const Parts& parts) {
    QString text;
    for (const Part& part : parts) {
        text += part.key + u'=' + Quoted(part.value) + u';';
    }
    return text;
}

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
        return Write(parts);
    }
    if (provider == Provider::Oracle) {
        const bool microsoft = driver.startsWith(QLatin1String("Microsoft"));
        parts.append({microsoft ? QStringLiteral("SERVER") : QStringLiteral("DBQ"), OracleName(settings)});
        AddSignOn(parts, settings);
        return Write(parts);
    }
    if (driver.contains(QLatin1String("FreeTDS"), Qt::CaseInsensitive)) {
        AddFreeTds(parts, settings, provider == Provider::Sybase ? "5.0" : "7.4");
    } else {
        AddUnlessEmpty(parts, "SERVER", settings.server);
    }
    AddUnlessEmpty(parts, "DATABASE", settings.databaseName);
    AddSignOn(parts, settings);
    return Write(parts);
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
    return Write(parts) + own;
}

/// The connection string but for what makes its driver stream.
QString PlainText(const ConnectionSettings& settings, Provider provider) {
    if (!settings.connectionString.isEmpty()) {
        const Parts parts = Read(settings.connectionString);
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
    return Write(parts);
}

} // namespace

QString Quoted(const QString& value) {
    const bool plain = !value.isEmpty() && value == value.trimmed() &&
                       std::none_of(value.begin(), value.end(),
                                    [](QChar c) { return QStringLiteral("[]{}(),;?*=!@'\"").contains(c); });
    if (plain || value.isEmpty()) {
        return value;
    }
    QString text = value;
    return u'{' + text.replace(u'}', QLatin1String("}}")) + u'}';
}

QString ConnectionText(const ConnectionSettings& settings, Provider provider) {
    const QString text = PlainText(settings, provider);
    const Parts parts = Read(text);
    const bool mySql =
        Find(parts, QLatin1String("DRIVER")).value_or(QString()).startsWith(u"MySQL", Qt::CaseInsensitive);
    return mySql && !Find(parts, QLatin1String("OPTION")) ? QString(StreamingOption + text) : text;
}

QString WithoutPassword(const QString& text) {
    static const QRegularExpression password(
        QStringLiteral(R"(\b(PWD|Password)\s*=\s*(\{(?:[^}]|\}\})*\}|"[^"]*"|[^;\]]*))"),
        QRegularExpression::CaseInsensitiveOption);
    QString covered = text;
    return covered.replace(password, QStringLiteral("\\1=***"));
}

QString DriverOrDsn(const QString& text) {
    const Parts parts = Read(text);
    const auto driver = Find(parts, QLatin1String("DRIVER"));
    return driver ? *driver : Find(parts, QLatin1String("DSN")).value_or(QString());
}

QString QtDatabaseName(const QString& text) {
    Parts parts = Read(text);
    const bool asWritten = text.contains(QLatin1String("DRIVER="), Qt::CaseInsensitive) ||
                           text.contains(QLatin1String("SERVER="), Qt::CaseInsensitive);
    const auto dsn = Find(parts, QLatin1String("DSN"));
    if (asWritten || !dsn) {
        return text;
    }
    // Qt puts "DSN=" before a text that names neither driver nor server.
    parts.erase(
        std::find_if(parts.begin(), parts.end(), [](const Part& p) { return Same(p.key, QLatin1String("DSN")); }));
    return Quoted(*dsn) + u';' + Write(parts);
}

} // namespace odbc
