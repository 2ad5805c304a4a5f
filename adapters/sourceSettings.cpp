#include "adapters/sourceSettings.h"

#include "core/modMain.h"

#include <QDir>

namespace sourceSettings {

namespace {

const QString Section = QStringLiteral("IMPORT");

QString Setting(Session& session, const QString& key, const QString& defaultValue) {
    return modMain::GetAppConfig(session, Section, key, defaultValue);
}

void ReadProvider(Session& session, ovConnection& source) {
    source.ProviderType = static_cast<Provider>(Setting(session, "ProviderType", "0").toInt());
}

/// Whether the name of a database is that of a SQLite file.
bool NamesSqliteFile(const QString& database) {
    return database.endsWith(u".sqlite", Qt::CaseInsensitive) || database.endsWith(u".db", Qt::CaseInsensitive);
}

/// A path of the settings, counted from their folder.
QString FromSettingsFolder(const Session& session, const QString& path) {
    const QDir folder = QFileInfo(session.Config.ConfigFile()).absoluteDir();
    return QDir::cleanPath(folder.absoluteFilePath(QString(path).replace(u'\\', u'/')));
}

/// SQLite would make a file that is not there, and the import would find an empty database.
void RequireFile(const QString& file) {
    if (!QFileInfo(file).isFile()) {
        throw ImportError(QStringLiteral("Il file '%1' non esiste: correggere il nome del database nelle impostazioni "
                                         "dell'origine")
                              .arg(file));
    }
}

void UseFoxProFolder(ovConnection& source, const QString& folder) {
    source.ProviderType = Provider::VisualFoxPro;
    source.ConnectionString = "Driver={Microsoft Visual FoxPro Driver};Data Source=" + folder;
}

void UseAccessFile(ovConnection& source, const QString& file) {
    source.ProviderType = Provider::Access;
    source.ConnectionString = "Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=" + file;
}

void UseTextFolder(ovConnection& source, const QString& folder) {
    source.ConnectionString = "Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=" + folder;
}

/// Lets the operator choose a file and hands it on; false when he gave up.
template<class Use>
Prepare ChosenFile(const QString& title, const QString& filter, Use use) {
    return [=](Session& session, ovConnection& source) {
        session.Dialogs.DialogTitle = title;
        session.Dialogs.Filter = filter;
        if (!session.Dialogs.ovShowOpen()) {
            return false;
        }
        use(source, session.Dialogs.FileName);
        return true;
    };
}

} // namespace

Prepare DataSource(const QString& defaultDsn) {
    return [=](Session& session, ovConnection& source) {
        ReadProvider(session, source);
        source.DSN = Setting(session, "DSN", defaultDsn);
        source.User = session.Config.PeekAppConfig(Section, "Username");
        source.Password = session.Config.PeekAppConfig(Section, "Password");
        return true;
    };
}

Prepare Server(const QString& defaultDatabase, const ServerKeys& keys) {
    return [=](Session& session, ovConnection& source) {
        ReadProvider(session, source);
        source.Server = Setting(session, keys.server, "SERVER");
        source.DatabaseName = Setting(session, keys.database, defaultDatabase);
        source.Embedded = NamesSqliteFile(source.DatabaseName);
        if (source.Embedded) {
            source.DatabaseName = FromSettingsFolder(session, source.DatabaseName);
            RequireFile(source.DatabaseName);
        }
        source.NetworkCredential =
            modMain::IsAppConfigOn(session, keys.networkSection, keys.network, keys.networkDefault);
        if (!source.NetworkCredential) {
            source.User = Setting(session, keys.username, "sa");
            source.Password = Setting(session, keys.password, "");
        }
        return true;
    };
}

Prepare FoxProFolder() {
    return [](Session& session, ovConnection& source) {
        UseFoxProFolder(source, Setting(session, "Databasename", ""));
        return true;
    };
}

Prepare ChosenAccessFile(const QString& defaultDatabase) {
    const Prepare choose =
        ChosenFile("File Access da importare", "File di Access (*.mdb)|*.mdb|Tutti i file (*.*)|*.*", UseAccessFile);
    return [=](Session& session, ovConnection& source) {
        const QString file = FromSettingsFolder(session, Setting(session, "Databasename", defaultDatabase));
        if (QFileInfo(file).isFile()) {
            UseAccessFile(source, file);
            return true;
        }
        return choose(session, source);
    };
}

Prepare AccessFileInFolder(const QString& fileName) {
    return [=](Session& session, ovConnection& source) {
        const QString folder = Setting(session, "Databasename", ".");
        UseAccessFile(source, QDir(FromSettingsFolder(session, folder)).filePath(fileName));
        return true;
    };
}

Prepare Workbook() {
    return ChosenFile("File Excel da importare", "File di Excel (*.xls)|*.xls|Tutti i file (*.*)|*.*",
                      [](ovConnection& source, const QString& file) {
                          source.ConnectionString = "Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=" + file;
                      });
}

Prepare TextFile(const QString& title, const QString& filter) {
    return ChosenFile(title, filter, [](ovConnection& source, const QString& file) {
        UseTextFolder(source, QFileInfo(file).path());
        source.SourceTables = QStringList{QFileInfo(file).fileName()};
    });
}

Prepare TextFolder(const QString& defaultFolder) {
    return [=](Session& session, ovConnection& source) {
        UseTextFolder(source, FromSettingsFolder(session, Setting(session, "Databasename", defaultFolder)));
        return true;
    };
}

Prepare Fixed(const QString& connectionString) {
    return [=](Session& session, ovConnection& source) {
        ReadProvider(session, source);
        source.ConnectionString = connectionString;
        return true;
    };
}

} // namespace sourceSettings
