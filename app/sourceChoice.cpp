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
    const QString& kind = origin.source.kind;
    if (asked.contains(origin.name.toUpper())) {
        return Kind::Asked;
    }
    if (kind.startsWith(u"FoxPro") || origin.name.compare(u"Dss Waps", Qt::CaseInsensitive) == 0) {
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
    const bool isDataSource = kind == Kind::DataSource;
    return {kind,
            Peek(session, origin.name, "Databasename"),
            Peek(session, origin.name, "Servername"),
            Peek(session, origin.name, "DSN"),
            Peek(session, origin.name, isDataSource ? "DSN_Username" : "Username"),
            Peek(session, origin.name, "NetworkCredential") == u"1",
            origin.name};
}

void Write(Session& session, const Source& source, const std::optional<QString>& password) {
    const bool isDataSource = source.kind == Kind::DataSource;
    if (isDataSource) {
        Put(session, source.origin, "DSN", source.dsn);
    } else {
        Put(session, source.origin, "Databasename", source.database);
    }
    if (source.kind == Kind::Server) {
        Put(session, source.origin, "Servername", source.server);
        Put(session, source.origin, "NetworkCredential", source.integrated ? "1" : "0");
    }
    if (source.kind == Kind::Server || isDataSource) {
        Put(session, source.origin, isDataSource ? "DSN_Username" : "Username", source.user);
        if (password) {
            Put(session, source.origin, isDataSource ? "DSN_Password" : "Password", *password);
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
