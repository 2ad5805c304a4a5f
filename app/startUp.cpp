#include "app/startUp.h"

#include "core/passwordScrambling.h"
#include "sql/mod_ovTools.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTemporaryFile>

namespace modMain {

namespace {

const QString Section = QStringLiteral("DATABASE");
const QString LogName = QStringLiteral("import.log");

/// Whether a file can be made in a folder; the attributes of a folder alone do not tell.
bool IsWritable(const QString& folder) {
    QTemporaryFile probe(QDir(folder).filePath(QStringLiteral("QuadrixXXXXXX.tmp")));
    return probe.open();
}

/// The log stands beside the program; where nothing can be written there, beside the settings.
QString LogPath(const QString& settingsFolder) {
    const QString folder = QCoreApplication::applicationDirPath();
    return QDir(IsWritable(folder) ? folder : settingsFolder).filePath(LogName);
}

void Wire(Session& session, const QString& settingsFile) {
    const QString folder = QFileInfo(settingsFile).absolutePath();
    QDir().mkpath(folder);
    session.Config.SetConfigFile(settingsFile);
    session.LogFile = LogPath(folder);
}

/// @param name the setting, in any case; one that is not known leaves the connection as it is
void SetProvider(ovConnection& connection, const QString& name) {
    static const QMap<QString, Provider> providers{{"MSSQL", Provider::SqlServer},
                                                   {"ACCESS", Provider::Access},
                                                   {"SYBASE", Provider::Sybase},
                                                   {"MYSQL", Provider::MySql},
                                                   {"ORACLE", Provider::Oracle}};
    const QString key = name.trimmed().toUpper();
    connection.ProviderType = providers.value(key, connection.ProviderType);
    connection.Embedded = key == u"SQLITE";
}

/// The password as the connection needs it; a clear one in the file is replaced by its scrambled form.
QString ReadPassword(ovConfig& config) {
    const QString stored = config.GetAppConfig(Section, "Password", "");
    if (stored.trimmed().isEmpty()) {
        return stored;
    }
    const QString form = config.GetAppConfig(Section, "PasswordEncryption", "0");
    if (form == u"1") {
        return ScramblePassword(stored, Scrambling::Unscramble, true);
    }
    if (form == u"0") {
        config.SetAppConfig(Section, "Password", ScramblePassword(stored, Scrambling::Scramble, true));
        config.SetAppConfig(Section, "PasswordEncryption", "1");
    }
    return stored;
}

void ReadConnection(Session& session) {
    ovConfig& config = session.Config;
    ovConnection& connection = session.Quadrix;
    SetProvider(connection, config.GetAppConfig(Section, "Provider", "MSSQL"));
    connection.Server = config.GetAppConfig(Section, "ServerName", QSysInfo::machineHostName().toUpper());
    connection.DatabaseName = config.GetAppConfig(Section, "DatabaseName", "QUADRIX");
    const QString network = config.GetAppConfig(Section, "NetworkCredential", "1");
    connection.NetworkCredential = mod_ovTools::ReadNumber(network).value_or(0) == 1;
    if (!connection.NetworkCredential) {
        connection.User = config.GetAppConfig(Section, "Username", mod_ovTools::GetUserName());
        connection.Password = ReadPassword(config);
    }
}

/// Makes sure that the file of an embedded database can be written, before the first statement stumbles over it.
void CheckDatabaseFile(const QString& path, MissingDatabase missing) {
    const QFileInfo file(path);
    const auto fail = [&path](const QString& what) {
        throw ImportError(QStringLiteral("Database '%1': %2").arg(QDir::toNativeSeparators(path), what));
    };
    if (!file.exists()) {
        if (missing == MissingDatabase::Fail) {
            fail(QStringLiteral("il file non esiste (controllare DatabaseName nelle impostazioni, oppure crearlo con "
                                "quadrix-import-cli create-database)"));
        }
        QDir().mkpath(file.path());
    } else if (file.isDir()) {
        fail(QStringLiteral("è una cartella, non un file"));
    } else if (!file.isWritable()) {
        fail(QStringLiteral("il file è di sola lettura"));
    }
    if (!IsWritable(file.path())) {
        fail(QStringLiteral("nella sua cartella non si può scrivere"));
    }
}

} // namespace

QString SettingsFilePath(const QString& folder) {
    QString path = folder.isEmpty() ? qEnvironmentVariable("QUADRIX_CONFIG") : folder;
    if (path.isEmpty()) {
        const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        path = QDir(data).filePath(QStringLiteral("Orvane Quadrix/Config"));
    }
    return QDir(QDir::cleanPath(path)).absoluteFilePath(QStringLiteral("Quadrix.ini"));
}

bool ConnectQuadrix(Session& session, const QString& settingsFile, MissingDatabase missing) {
    const Operator::Busy busy(session.Person);
    return Guarded(session.Errors, QStringLiteral("modMain"), QStringLiteral("ConnectQuadrix"), false, [&] {
        Wire(session, settingsFile);
        ReadConnection(session);
        if (session.Quadrix.Embedded) {
            const QDir folder = QFileInfo(settingsFile).absoluteDir();
            session.Quadrix.DatabaseName = QDir::cleanPath(folder.absoluteFilePath(session.Quadrix.DatabaseName));
            CheckDatabaseFile(session.Quadrix.DatabaseName, missing);
        }
        session.Quadrix.OpenConnection();
        session.Config.LoadConfig();
        return true;
    });
}

void Main(Session& session, const QString& settingsFile, const std::function<void()>& showWindow) {
    const Operator::Busy busy(session.Person);
    Guarded(session.Errors, QStringLiteral("modMain"), QStringLiteral("Main"), false, [&] {
        session.Errors.ClearError();
        ConnectQuadrix(session, settingsFile);
        showWindow();
        return true;
    });
}

QVector<Company> GetCompanies(Session& session) {
    QVector<Company> companies;
    try {
        Recordset rows = session.Quadrix.ExecuteWC("SELECT * FROM SYS_AZI ORDER BY CDAZI");
        for (; !rows.Eof(); rows.MoveNext()) {
            companies.append({mod_ovTools::ToText(rows.Value("CDAZI")), mod_ovTools::ToText(rows.Value("AZRAS"))});
        }
    } catch (SqlError& error) {
        error.AddContext(QStringLiteral("Elenco delle aziende (tabella SYS_AZI del database '%1')")
                             .arg(session.Quadrix.DatabaseName));
        throw;
    }
    return companies;
}

} // namespace modMain
