#include "app/sourceChoice.h"

#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "app/inspect.h"
#include "core/modMain.h"

#include <QDir>
#include <QScopeGuard>
#include <QSettings>

namespace sourceChoice {

namespace {

constexpr qsizetype MostRecent = 8;

/// The keys of an origin that has some of its own.
struct Keys {
    QString server = "Servername";
    QString database = "Databasename";
    QString user = "Username";
    QString password = "Password";
    QString network = "NetworkCredential";
};

Keys KeysOf(const QString& origin, Kind kind) {
    Keys keys;
    if (kind == Kind::DataSource) {
        keys.user = "DSN_Username";
        keys.password = "DSN_Password";
    } else if (origin.startsWith(u"Tessera", Qt::CaseInsensitive)) {
        keys.user = "Tessera_Username";
        keys.password = "Tessera_Password";
    }
    return keys;
}

QString Peek(Session& session, const QString& origin, const QString& key) {
    return session.Config.PeekAppConfig(sourceSettings::SectionOf(session, origin, key), key);
}

void Put(Session& session, const QString& origin, const QString& key, const QString& value) {
    if (value.size() > ovConfig::LongestValue) {
        throw ImportError(QStringLiteral("'%1' ha %2 caratteri: delle impostazioni se ne leggono %3")
                              .arg(value, QString::number(value.size()), QString::number(ovConfig::LongestValue)));
    }
    if (Peek(session, origin, key) != value) {
        session.Config.SetAppConfig(sourceSettings::SectionOf(session, origin, key), key, value);
    }
}

/// The window keeps its place in the same file.
QString RecentFile(const Session& session) {
    return QFileInfo(session.Config.ConfigFile()).dir().filePath(QStringLiteral("Finestra.ini"));
}

QString RecentKey(Kind kind) {
    return kind == Kind::Folder ? QStringLiteral("Recenti/Cartelle") : QStringLiteral("Recenti/File");
}

QString OrMissing(const QString& text) { return text.isEmpty() ? QStringLiteral("(non impostato)") : text; }

QString PathOf(const Session& session, const QString& path) {
    const QDir folder = QFileInfo(session.Config.ConfigFile()).absoluteDir();
    return path.isEmpty() ? path : QDir::toNativeSeparators(QDir::cleanPath(folder.absoluteFilePath(path)));
}

QString ServerLine(const Session& session, const Source& source) {
    const bool isFile = source.database.endsWith(u".sqlite", Qt::CaseInsensitive) ||
                        source.database.endsWith(u".db", Qt::CaseInsensitive);
    if (isFile) {
        return QStringLiteral("File ") + PathOf(session, source.database);
    }
    return QStringLiteral("Server %1, database %2, %3")
        .arg(OrMissing(source.server), OrMissing(source.database),
             source.integrated ? QStringLiteral("accesso integrato")
                               : QStringLiteral("utente ") + OrMissing(source.user));
}

} // namespace

Kind KindOf(const contract::Origin& origin) {
    static const QSet<QString> asked{"SAM", "MEMPHIS", "LIBERTYCOMMERCE", "SOLUTION"};
    static const QSet<QString> folders{"DSS WAPS", "MEXAL", "OS1"};
    const QString& kind = origin.source.kind;
    if (asked.contains(origin.name.toUpper())) {
        return Kind::Asked;
    }
    if (kind.startsWith(u"FoxPro") || folders.contains(origin.name.toUpper())) {
        return Kind::Folder;
    }
    if (kind == u"Access") {
        return Kind::File;
    }
    if (kind == u"ODBC" || kind == u"Oracle") {
        return Kind::DataSource;
    }
    return kind == u"SQL Server" ? Kind::Server : Kind::Chosen;
}

Source Read(Session& session, const contract::Origin& origin) {
    const Kind kind = KindOf(origin);
    const Keys keys = KeysOf(origin.name, kind);
    return {kind,
            Peek(session, origin.name, keys.database),
            Peek(session, origin.name, keys.server),
            Peek(session, origin.name, "DSN"),
            Peek(session, origin.name, keys.user),
            Peek(session, origin.name, keys.network) == u"1"};
}

void Write(Session& session, const contract::Origin& origin, const Source& source,
           const std::optional<QString>& password) {
    const Keys keys = KeysOf(origin.name, source.kind);
    const bool isDataSource = source.kind == Kind::DataSource;
    const auto put = [&](const QString& key, const QString& value) { Put(session, origin.name, key, value); };
    put(isDataSource ? "DSN" : keys.database, isDataSource ? source.dsn : source.database);
    if (source.kind == Kind::Server) {
        put(keys.server, source.server);
        put(keys.network, source.integrated ? "1" : "0");
    }
    if (source.kind == Kind::Server || isDataSource) {
        put(keys.user, source.user);
        if (password) {
            put(keys.password, *password);
        }
    }
}

QString Line(Session& session, const contract::Origin& origin) {
    const Source source = Read(session, origin);
    switch (source.kind) {
    case Kind::Folder:
        return QStringLiteral("Cartella ") + OrMissing(PathOf(session, source.database));
    case Kind::File:
        return QStringLiteral("File ") + OrMissing(PathOf(session, source.database));
    case Kind::Server:
        return ServerLine(session, source);
    case Kind::DataSource:
        return QStringLiteral("Origine dati ODBC %1").arg(OrMissing(source.dsn)) +
               (source.user.isEmpty() ? QString() : QStringLiteral(", utente ") + source.user);
    case Kind::Chosen:
        return QStringLiteral("Un file che si sceglie a ogni importazione");
    case Kind::Asked:
        break;
    }
    return QStringLiteral("Si chiede a ogni importazione");
}

QStringList Recent(Session& session, Kind kind) {
    QStringList paths = QSettings(RecentFile(session), QSettings::IniFormat).value(RecentKey(kind)).toStringList();
    paths.removeIf([](const QString& path) { return !QFileInfo::exists(path); });
    return paths;
}

void Remember(Session& session, Kind kind, const QString& path) {
    QStringList paths = Recent(session, kind);
    paths.removeAll(path);
    paths.prepend(path);
    QSettings(RecentFile(session), QSettings::IniFormat).setValue(RecentKey(kind), paths.mid(0, MostRecent));
}

Trial Try(Session& session, const contract::Origin& origin) {
    const Operator::Busy busy(session.Person);
    const auto close = qScopeGuard([&session] { CloseSource(session); });
    try {
        if (!inspection::OpenToLook(session, origin)) {
            return {};
        }
        const auto tables = session.SourceConnection().GetTables().size();
        return {true, QStringLiteral("Collegamento riuscito: %1 tabelle.").arg(tables)};
    } catch (const Error& error) {
        return {false, error.Message()};
    }
}

} // namespace sourceChoice
