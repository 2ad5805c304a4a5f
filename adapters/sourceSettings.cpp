#include "adapters/sourceSettings.h"

#include "core/lineSettings.h"
#include "core/modMain.h"
#include "core/storedPassword.h"
#include "core/wholeSettings.h"
#include "sources/layout/Layout.h"
#include "sources/textFolder.h"
#include "sql/mod_ovTools.h"

#include <QDir>
#include <QSet>

namespace sourceSettings {

using contract::Place;

namespace {

const QString Section = QStringLiteral("IMPORT");
const QString Database = QStringLiteral("Databasename");
const QString DataSourceName = QStringLiteral("DSN");

/// The section that holds a key of the origin under way.
QString SectionOfKey(Session& session, const QString& key) {
    return SectionOf(session, session.SettingsOrigin.value_or(QString()), key);
}

/// A setting as messages name it, where it is to be corrected.
QString KeyName(Session& session, const QString& key) {
    const auto name = [](const QString& of, const QString& section, const QString& file) {
        return QStringLiteral("chiave %1, sezione [%2] di '%3'").arg(of, section, QDir::toNativeSeparators(file));
    };
    const QString section = SectionOfKey(session, key);
    if (const auto& written = session.Written; written && section == Section && key.startsWith(written->prefix)) {
        if (const QString own = key.mid(written->prefix.size()); written->keys.contains(own)) {
            return name(own, written->section, written->file);
        }
    }
    return name(key, section, session.Config.ConfigFile());
}

QString Setting(Session& session, const QString& key, const QString& defaultValue) {
    return modMain::GetWholeConfig(session, SectionOfKey(session, key), key, defaultValue);
}

/// A setting that is not written when it is missing.
QString Peek(Session& session, const QString& key) {
    return session.Config.PeekAppConfig(SectionOfKey(session, key), key);
}

/// The section of the password, of those that each key stands in.
template<class Sections>
QString PasswordSection(const Sections& sectionOf, const ServerKeys& keys) {
    const QString ofUser = sectionOf(keys.username);
    return ofUser == Section ? sectionOf(keys.password) : ofUser;
}

template<class Sections>
QString NetworkSection(const Sections& sectionOf, const ServerKeys& keys) {
    const QString own = sectionOf(keys.network);
    return own == Section ? keys.networkSection : own;
}

QString ReadPassword(Session& session, const ServerKeys& keys) {
    const auto sectionOf = [&session](const QString& key) { return SectionOfKey(session, key); };
    return storedPassword::Read(session, session.Config.File(), PasswordSection(sectionOf, keys), keys.password);
}

void ReadProvider(Session& session, ovConnection& source) {
    static const QSet<int> known{0, 1, 2, 3, 4, 6};
    const QString key = QStringLiteral("ProviderType");
    const QString text = Setting(session, key, QStringLiteral("0"));
    const auto number = mod_ovTools::ReadNumber(text);
    const int provider = number && *number == static_cast<int>(*number) ? static_cast<int>(*number) : -1;
    if (!known.contains(provider)) {
        throw ImportError(QStringLiteral("'%1' non è un tipo di database: 0 SQL Server, 1 Access, 2 Sybase, 3 MySQL, 4 "
                                         "Oracle, 6 Visual FoxPro (%2)")
                              .arg(text, KeyName(session, key)));
    }
    source.ProviderType = static_cast<Provider>(provider);
}

/// Whether a path begins with a drive or a computer of Windows, whatever system this is.
bool IsWindowsPath(const QString& path) {
    return path.startsWith(u"\\\\") || (path.size() > 1 && path.at(1) == u':' && path.at(0).isLetter());
}

/// The path of the setting Databasename that a source of files cannot do without.
QString RequiredPath(Session& session, const QString& defaultPath) {
    const QString path = Setting(session, Database, defaultPath);
    if (path.isEmpty()) {
        throw ImportError(
            QStringLiteral("Manca il percorso dei dati dell'origine: scriverlo in %1").arg(KeyName(session, Database)));
    }
    return FromSettingsFolder(session, path);
}

/// Opens a SQLite file in the place of the source. It would be made where it is not there, and the import would find an
/// empty database: that raises `ImportError`. @param key of the setting that names it
void UseSqliteFile(Session& session, ovConnection& source, const QString& file, const QString& key) {
    source.Embedded = true;
    source.DatabaseName = FromSettingsFolder(session, file);
    if (!QFileInfo(source.DatabaseName).isFile()) {
        const QString advice = key.isEmpty() ? QString() : QStringLiteral(": correggere %1").arg(KeyName(session, key));
        throw ImportError(QStringLiteral("Il file '%1' non esiste").arg(source.DatabaseName) + advice);
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
    const auto open = [=](Session& session, ovConnection& source) {
        session.Dialogs.DialogTitle = title;
        session.Dialogs.Filter = filter;
        if (!session.Dialogs.ovShowOpen()) {
            return false;
        }
        use(source, session.Dialogs.FileName);
        return true;
    };
    return {open, Place::Chosen};
}

} // namespace

QString SectionOf(Session& session, const QString& origin, const QString& key) {
    const bool isOwn = !origin.isEmpty() && !session.Config.PeekAppConfig(origin, key).isEmpty();
    return isOwn ? origin : Section;
}

bool UseNamedFile(Session& session, ovConnection& source, const QString& key) {
    const bool isFile = NamesSqliteFile(source.DatabaseName);
    if (isFile) {
        UseSqliteFile(session, source, source.DatabaseName, key);
    }
    return isFile;
}

QString NetworkSectionOf(Session& session, const QString& origin, const ServerKeys& keys) {
    return NetworkSection([&](const QString& key) { return SectionOf(session, origin, key); }, keys);
}

QString PasswordSectionOf(Session& session, const QString& origin, const ServerKeys& keys) {
    return PasswordSection([&](const QString& key) { return SectionOf(session, origin, key); }, keys);
}

bool NamesSqliteFile(const QString& database) {
    return database.endsWith(u".sqlite", Qt::CaseInsensitive) || database.endsWith(u".db", Qt::CaseInsensitive);
}

QString FromSettingsFolder(const Session& session, const QString& path) {
    if (IsWindowsPath(path)) {
        return path;
    }
    const QDir folder = QFileInfo(session.Config.ConfigFile()).absoluteDir();
    return QDir::cleanPath(folder.absoluteFilePath(QString(path).replace(u'\\', u'/')));
}

OfOrigin::OfOrigin(Session& session, const QString& origin)
    : m_session(session.SettingsOrigin ? nullptr : &session) {
    if (m_session != nullptr) {
        m_session->SettingsOrigin = origin;
    }
}

OfOrigin::~OfOrigin() {
    if (m_session != nullptr) {
        m_session->SettingsOrigin.reset();
    }
}

void ReadLine(Session& session, ovConnection& source) {
    const QString key = QStringLiteral("Encryption");
    modMain::ReadLine(session, source, SectionOfKey(session, key), key, QStringLiteral("EncryptionCA"));
}

QString ArticleCondition(Session& session) {
    const QString condition = modMain::GetWholeConfig(session, Section, "WhereArticoli", "0");
    return condition.isEmpty() || condition == u"0" ? QString() : QString(u'(' + condition + u')');
}

QString DatabasePath(Session& session) {
    const QString path = Peek(session, Database);
    return path.isEmpty() ? path : FromSettingsFolder(session, path);
}

QString PathAdvice(Session& session, const ovConnection& source) {
    const QString path = DatabasePath(session);
    if (path.isEmpty() || !source.ConnectionString.contains(path)) {
        return {};
    }
    return QStringLiteral("il percorso è quello della ") + KeyName(session, Database);
}

Prepare DataSource(const QString& defaultDsn) {
    const ServerKeys keys{.username = "DSN_Username", .password = "DSN_Password"};
    const auto open = [=](Session& session, ovConnection& source) {
        ReadProvider(session, source);
        source.DSN = Setting(session, DataSourceName, defaultDsn);
        if (NamesSqliteFile(source.DSN)) {
            UseSqliteFile(session, source, std::exchange(source.DSN, QString()), DataSourceName);
            return true;
        }
        source.User = Peek(session, keys.username);
        source.Password = ReadPassword(session, keys);
        ReadLine(session, source);
        return true;
    };
    return {open, Place::DataSource, keys};
}

Prepare Server(const QString& defaultDatabase, const ServerKeys& keys) {
    const auto open = [=](Session& session, ovConnection& source) {
        ReadProvider(session, source);
        source.Driver = Peek(session, keys.driver);
        source.Server = Setting(session, keys.server, "SERVER");
        source.DatabaseName = Setting(session, keys.database, defaultDatabase);
        if (!UseNamedFile(session, source, keys.database)) {
            modMain::ReadLine(session, source, SectionOfKey(session, keys.encryption), keys.encryption,
                              keys.authorities);
        }
        const auto sectionOf = [&session](const QString& key) { return SectionOfKey(session, key); };
        source.NetworkCredential = modMain::IsOne(
            modMain::GetAppConfig(session, NetworkSection(sectionOf, keys), keys.network, keys.networkDefault));
        if (!source.NetworkCredential) {
            source.User = Setting(session, keys.username, "sa");
            Setting(session, keys.password, ""); // stands in the file from then on, to be filled in
            source.Password = ReadPassword(session, keys);
        }
        return true;
    };
    return {open, Place::Server, keys};
}

Prepare FoxProFolder() {
    const auto open = [](Session& session, ovConnection& source) {
        UseFoxProFolder(source, RequiredPath(session, QString()));
        return true;
    };
    return {open, Place::Folder};
}

Prepare ChosenAccessFile(const QString& defaultDatabase) {
    const Prepare choose =
        ChosenFile("File Access da importare", "File di Access (*.mdb)|*.mdb|Tutti i file (*.*)|*.*", UseAccessFile);
    const auto open = [=](Session& session, ovConnection& source) {
        const QString file = RequiredPath(session, defaultDatabase);
        if (NamesSqliteFile(file)) {
            UseSqliteFile(session, source, file, Database);
            return true;
        }
        if (QFileInfo(file).isFile()) {
            UseAccessFile(source, file);
            return true;
        }
        return choose(session, source);
    };
    return {open, Place::File};
}

Prepare AccessFileInFolder(const QString& fileName) {
    const auto open = [=](Session& session, ovConnection& source) {
        const QString path = RequiredPath(session, ".");
        if (NamesSqliteFile(path)) {
            UseSqliteFile(session, source, path, Database);
        } else {
            UseAccessFile(source, QDir(path).filePath(fileName));
        }
        return true;
    };
    return {open, Place::Folder};
}

namespace {

/// Sheets with what a layout calls their columns; one that it calls otherwise is read in the same way.
std::vector<sources::SheetTable> CalledBy(const NameLayout* names, const std::vector<sources::SheetTable>& sheets) {
    const auto* layout = dynamic_cast<const sources::Layout*>(names);
    std::vector<sources::SheetTable> called;
    for (sources::SheetTable sheet : sheets) {
        const sources::LayoutTable* told = layout == nullptr ? nullptr : layout->Find(sheet.table);
        if (told != nullptr) {
            std::ranges::transform(sheet.end, std::back_inserter(sheet.endInFile),
                                   [told](const QString& column) { return told->InSource(column); });
            sheet.level = sheet.level.isEmpty() ? QString() : told->InSource(sheet.level);
        }
        if (told != nullptr && told->IsCalled()) {
            called.push_back(sheet);
            called.back().table = called.back().sheet = told->inSource.last();
        }
        called.push_back(sheet);
    }
    return called;
}

} // namespace

Prepare OpenFileExcel(const std::vector<sources::SheetTable>& sheets) {
    return ChosenFile("File Excel da importare", "File di Excel (*.xls)|*.xls|Tutti i file (*.*)|*.*",
                      [sheets](ovConnection& source, const QString& file) {
                          source.ConnectionString = "Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=" + file;
                          source.OpenFiles = [file, sheets, &source](const ConnectionSettings& settings) {
                              return sources::OpenWorkbookFile(file, settings, CalledBy(source.Layout.get(), sheets));
                          };
                      });
}

Prepare TextFile(const QString& title, const QString& filter) {
    return ChosenFile(title, filter, [](ovConnection& source, const QString& file) {
        UseTextFolder(source, QFileInfo(file).path());
        source.SourceTables = QStringList{QFileInfo(file).fileName()};
    });
}

Prepare CsvFileAs(const QStringList& tables, const QStringList& lookUps) {
    return ChosenFile("File CSV da importare", "File CSV (*.csv)|*.csv|Tutti i file (*.*)|*.*",
                      [tables, lookUps](ovConnection& source, const QString& file) {
                          UseTextFolder(source, QFileInfo(file).path()); // says what kind of source it is
                          source.LookupColumns = lookUps;
                          source.OpenFiles = [tables, file](const ConnectionSettings& settings) {
                              return sources::OpenTextFileAs(tables, file, settings);
                          };
                      });
}

Prepare TextFolder(const QString& defaultFolder) {
    const auto open = [=](Session& session, ovConnection& source) {
        UseTextFolder(source, RequiredPath(session, defaultFolder));
        return true;
    };
    return {open, Place::Folder};
}

namespace {

void UseFixedFiles(ovConnection& source, const QString& folder, const std::vector<sources::FixedRecord>& records) {
    UseTextFolder(source, folder); // says what kind of source it is; what is read of it is told by the records
    source.OpenFiles = [folder, records](const ConnectionSettings& settings) {
        return sources::OpenFixedFiles(folder, records, settings);
    };
}

} // namespace

Prepare FixedFolder(const QString& defaultFolder, const std::vector<sources::FixedRecord>& records) {
    const auto open = [=](Session& session, ovConnection& source) {
        UseFixedFiles(source, RequiredPath(session, defaultFolder), records);
        return true;
    };
    return {open, Place::Folder};
}

Prepare FixedFile(const QString& title, const QString& filter, const std::vector<sources::FixedRecord>& records) {
    return ChosenFile(title, filter, [records](ovConnection& source, const QString& file) {
        std::vector<sources::FixedRecord> ofFile = records;
        for (sources::FixedRecord& record : ofFile) {
            record.file = QFileInfo(file).fileName();
        }
        UseFixedFiles(source, QFileInfo(file).path(), ofFile);
    });
}

Prepare Fixed(const QString& connectionString) {
    return [=](Session& session, ovConnection& source) {
        ReadProvider(session, source);
        const QString file = Peek(session, DataSourceName);
        if (NamesSqliteFile(file)) {
            UseSqliteFile(session, source, file, DataSourceName);
            return true;
        }
        source.ConnectionString = connectionString;
        ReadLine(session, source);
        return true;
    };
}

} // namespace sourceSettings
