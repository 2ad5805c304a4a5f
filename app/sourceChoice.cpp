#include "app/sourceChoice.h"

#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "app/inspect.h"
#include "app/windowFile.h"
#include "sql/mod_ovTools.h"

#include <QDir>
#include <QScopeGuard>

#include <algorithm>

namespace sourceChoice {

namespace {

constexpr qsizetype MostRecent = 8;

/// A setting in the section that an origin has it in.
struct Entry {
    QString section;
    QString key;
};

/// Where the settings of a source stand. The password's section is that of the user, as that is when it is asked for.
class Entries {
public:
    Entries(Session& session, const contract::Origin& origin)
        : m_session(session),
          m_origin(origin.name),
          m_keys(origin.source.prepare.keys) {}

    Entry Database() const { return Of(m_keys.database); }
    Entry Server() const { return Of(m_keys.server); }
    Entry DataSource() const { return Of("DSN"); }
    Entry User() const { return Of(m_keys.username); }
    Entry Network() const { return {sourceSettings::NetworkSectionOf(m_session, m_origin, m_keys), m_keys.network}; }
    Entry Password() const { return {sourceSettings::PasswordSectionOf(m_session, m_origin, m_keys), m_keys.password}; }

    QString Read(const Entry& entry) const { return m_session.Config.PeekAppConfig(entry.section, entry.key); }
    bool IsIntegrated() const {
        const QString value = Read(Network());
        return mod_ovTools::ReadNumber(value.isEmpty() ? m_keys.networkDefault : value).value_or(0) == 1;
    }
    void Write(const Entry& entry, const QString& value) const {
        if (value.size() > ovConfig::LongestValue) {
            throw ImportError(QStringLiteral("'%1' ha %2 caratteri: delle impostazioni se ne leggono %3")
                                  .arg(value, QString::number(value.size()), QString::number(ovConfig::LongestValue)));
        }
        if (Read(entry) != value) {
            m_session.Config.SetAppConfig(entry.section, entry.key, value);
        }
    }

private:
    Entry Of(const QString& key) const { return {sourceSettings::SectionOf(m_session, m_origin, key), key}; }

    Session& m_session;
    const QString& m_origin;
    const contract::SourceKeys& m_keys;
};

QString SettingsFolder(const Session& session) { return QFileInfo(session.Config.ConfigFile()).path(); }

QString RecentKey(Place place) {
    return place == Place::Folder ? QStringLiteral("Recenti/Cartelle") : QStringLiteral("Recenti/File");
}

QString OrMissing(const QString& text) { return text.isEmpty() ? QStringLiteral("(non impostato)") : text; }

QString PathOf(const Session& session, const QString& path) {
    return path.isEmpty() ? path : QDir::toNativeSeparators(sourceSettings::FromSettingsFolder(session, path));
}

QString ServerLine(const Session& session, const Source& source) {
    if (sourceSettings::NamesSqliteFile(source.database)) {
        return QStringLiteral("File ") + PathOf(session, source.database);
    }
    return QStringLiteral("Server %1, database %2, %3")
        .arg(OrMissing(source.server), OrMissing(source.database),
             source.integrated ? QStringLiteral("accesso integrato")
                               : QStringLiteral("utente ") + OrMissing(source.user));
}

} // namespace

Source Read(Session& session, const contract::Origin& origin) {
    const Entries entries(session, origin);
    return {origin.source.prepare.place,
            entries.Read(entries.Database()),
            entries.Read(entries.Server()),
            entries.Read(entries.DataSource()),
            entries.Read(entries.User()),
            entries.IsIntegrated(),
            !entries.Read(entries.Password()).isEmpty()};
}

void Write(Session& session, const contract::Origin& origin, const Source& before, const Source& source,
           const std::optional<QString>& password) {
    const Entries entries(session, origin);
    const auto take = [&](const Entry& entry, QString Source::*field) {
        if (source.*field != before.*field) {
            entries.Write(entry, source.*field);
        }
    };
    const bool isDataSource = source.place == Place::DataSource;
    if (isDataSource) {
        take(entries.DataSource(), &Source::dsn);
    } else {
        take(entries.Database(), &Source::database);
    }
    if (source.place == Place::Server) {
        take(entries.Server(), &Source::server);
        if (source.integrated != before.integrated && source.integrated != entries.IsIntegrated()) {
            entries.Write(entries.Network(), source.integrated ? "1" : "0");
        }
    }
    if (source.place == Place::Server || isDataSource) {
        take(entries.User(), &Source::user);
        if (password) {
            entries.Write(entries.Password(), *password);
        }
    }
}

QStringList Sections(Session& session, const contract::Origin& origin) {
    const Entries entries(session, origin);
    const Place place = origin.source.prepare.place;
    std::vector<Entry> written{place == Place::DataSource ? entries.DataSource() : entries.Database()};
    if (place == Place::Server) {
        written.insert(written.end(), {entries.Server(), entries.Network()});
    }
    if (place == Place::Server || place == Place::DataSource) {
        written.insert(written.end(), {entries.User(), entries.Password()});
    }
    QStringList sections;
    for (const Entry& entry : written) {
        sections.append(entry.section);
    }
    sections.removeDuplicates();
    std::stable_partition(sections.begin(), sections.end(),
                          [&origin](const QString& section) { return section == origin.name; });
    return sections;
}

QString Line(Session& session, const contract::Origin& origin) {
    const Source source = Read(session, origin);
    switch (source.place) {
    case Place::Folder:
        return QStringLiteral("Cartella ") + OrMissing(PathOf(session, source.database));
    case Place::File:
        return QStringLiteral("File ") + OrMissing(PathOf(session, source.database));
    case Place::Server:
        return ServerLine(session, source);
    case Place::DataSource:
        return QStringLiteral("Origine dati ODBC %1").arg(OrMissing(source.dsn)) +
               (source.user.isEmpty() ? QString() : QStringLiteral(", utente ") + source.user);
    case Place::Chosen:
        return QStringLiteral("Un file che si sceglie a ogni importazione");
    case Place::Asked:
        break;
    }
    return QStringLiteral("Si chiede a ogni importazione");
}

QStringList Recent(Session& session, Place place) {
    QStringList paths = windowFile::Read(SettingsFolder(session), RecentKey(place)).toStringList();
    paths.removeIf([](const QString& path) { return !QFileInfo::exists(path); });
    return paths;
}

void Remember(Session& session, Place place, const QString& path) {
    QStringList paths = Recent(session, place);
    paths.removeAll(path);
    paths.prepend(path);
    windowFile::Write(SettingsFolder(session), RecentKey(place), paths.mid(0, MostRecent));
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
