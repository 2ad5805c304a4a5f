#include "app/startUp.h"

#include "app/presence.h"
#include "core/lineSettings.h"
#include "core/modMain.h"
#include "core/passwordScrambling.h"
#include "core/storedPassword.h"
#include "core/wholeSettings.h"
#include "sql/mod_ovTools.h"
#include "sql/ownFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTemporaryFile>

namespace modMain {

namespace {

const QString Section = QStringLiteral("DATABASE");
const QString LogName = QStringLiteral("import.log");
const QString WrongPassword = QStringLiteral("utente o password errati"); ///< as the databases' refusals are told

/// Whether a file can be made in a folder; the attributes of a folder alone do not tell.
bool IsWritable(const QString& folder) {
    QTemporaryFile probe(QDir(folder).filePath(QStringLiteral("QuadrixXXXXXX.tmp")));
    return probe.open();
}

/// The log stands beside the program; where nothing can be written there, or what stands there is a link or another
/// user's log, beside the settings.
QString LogPath(const QString& settingsFolder) {
    const QString folder = QCoreApplication::applicationDirPath();
    const QString path = QDir(folder).filePath(LogName);
    const bool isOurs = ownFile::Obstacle(path).isEmpty() && IsWritable(folder);
    return isOurs ? path : QDir(settingsFolder).filePath(LogName);
}

/// Without a file and a place for one, the settings are the defaults, at each start anew.
void TellWhatIsNotSaved(Session& session, const QString& settingsFile, const QString& folder) {
    if (!QFileInfo::exists(settingsFile) && !IsWritable(folder)) {
        session.Person.Message(QStringLiteral("Le impostazioni non si possono salvare: nella cartella '%1' non si può "
                                              "scrivere. Indicarne un'altra con la variabile d'ambiente QUADRIX_CONFIG")
                                   .arg(QDir::toNativeSeparators(folder)),
                               Icon::Exclamation);
    }
}

void Wire(Session& session, const QString& settingsFile) {
    const QString folder = QFileInfo(settingsFile).absolutePath();
    QDir().mkpath(folder);
    TellWhatIsNotSaved(session, settingsFile, folder);
    session.Config.SetConfigFile(settingsFile);
    session.LogFile = LogPath(folder);
    AnnouncePresence(session, settingsFile);
}

/// Replaces the clear password in the file by its scrambled form. A file that may only be read serves as well: the
/// operator is told that the password stays legible.
void HidePassword(Session& session, const QString& password) {
    try {
        const QString scrambled = ScramblePassword(password, Scrambling::Scramble, true);
        if (scrambled.size() > ovConfig::LongestValue) {
            throw ImportError(QStringLiteral("la password è troppo lunga per essere mascherata"));
        }
        // At once: a scrambled text that passes for a clear one would be scrambled again.
        session.Config.File().Write(Section, {{"Password", scrambled}, {"PasswordEncryption", "1"}});
    } catch (const ImportError& error) {
        storedPassword::TellLegible(session, session.Config.File(), Section, "Password", error.Message());
    }
}

/// The password as the connection needs it; a clear one in the file is replaced by its scrambled form. That of the
/// environment goes before it.
QString ReadPassword(Session& session) {
    ovConfig& config = session.Config;
    if (const auto given = storedPassword::FromEnvironment(config.File(), Section, "Password")) {
        return *given;
    }
    const QString stored = config.GetAppConfig(Section, "Password", "");
    if (stored.trimmed().isEmpty()) {
        return stored;
    }
    const QString form = config.GetAppConfig(Section, "PasswordEncryption", "0");
    if (form == u"1") {
        return ScramblePassword(stored, Scrambling::Unscramble, true);
    }
    if (form == u"0") {
        HidePassword(session, stored);
    }
    return stored;
}

/// Opens the database. A clear password that was written over a hidden one is not what it says.
void Open(Session& session) {
    try {
        session.Quadrix.OpenConnection();
    } catch (Error& error) {
        const bool isHidden = !session.Quadrix.NetworkCredential &&
                              !storedPassword::FromEnvironment(session.Config.File(), Section, "Password") &&
                              session.Config.PeekAppConfig(Section, "PasswordEncryption") == u"1";
        if (isHidden && error.Message().contains(WrongPassword)) {
            error.AddContext(QStringLiteral("La password di [%1] in '%2' è nascosta (PasswordEncryption=1); se è stata "
                                            "riscritta in chiaro, mettere PasswordEncryption=0")
                                 .arg(Section, QDir::toNativeSeparators(session.Config.ConfigFile())));
        }
        throw;
    }
}

/// A line that means nothing is one that somebody meant something by.
void TellBrokenLines(Session& session) {
    const QStringList broken = session.Config.BrokenLines();
    if (!broken.isEmpty()) {
        session.Person.Message(QStringLiteral("File delle impostazioni '%1': ci sono righe che non sono né una sezione "
                                              "né un valore\n%2")
                                   .arg(QDir::toNativeSeparators(session.Config.ConfigFile()), broken.join(u'\n')),
                               Icon::Exclamation);
    }
}

void TellOthersAtWork(Session& session, const QString& settingsFile) {
    const QStringList others = OthersAtWork(settingsFile);
    if (!others.isEmpty()) {
        session.Person.Message(
            QStringLiteral(
                "Con le stesse impostazioni è già al lavoro:\n%1\n\nChi cambia un'impostazione la cambia per "
                "tutti. Di due importazioni nella stessa azienda la seconda viene rifiutata.")
                .arg(others.join(u'\n')),
            Icon::Exclamation);
    }
}

void ReadConnection(Session& session) {
    ovConfig& config = session.Config;
    ovConnection& connection = session.Quadrix;
    const QString provider = config.GetAppConfig(Section, "Provider", "MSSQL");
    if (!SetProvider(connection, provider)) {
        session.Person.Message(QStringLiteral("Provider '%1', sezione [%2] di '%3': non è tra MSSQL, ACCESS, SYBASE, "
                                              "MYSQL, ORACLE e SQLITE; si usa SQL Server")
                                   .arg(provider, Section, QDir::toNativeSeparators(config.ConfigFile())),
                               Icon::Exclamation);
    }
    for (const char* key : {"ServerName", "DatabaseName", "Username"}) {
        RequireWhole(session, Section, QLatin1String(key));
    }
    connection.Driver = config.PeekAppConfig(Section, "Driver");
    ReadLine(session, connection, Section, "Encryption", "EncryptionCA");
    connection.Server = config.GetAppConfig(Section, "ServerName", QSysInfo::machineHostName().toUpper());
    connection.DatabaseName = config.GetAppConfig(Section, "DatabaseName", "QUADRIX");
    const QString network = config.GetAppConfig(Section, "NetworkCredential", "1");
    connection.NetworkCredential = IsOne(network);
    if (!connection.NetworkCredential) {
        connection.User = config.GetAppConfig(Section, "Username", mod_ovTools::GetUserName());
        connection.Password = ReadPassword(session);
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

QStringList OwnFiles(Session& session, const QString& settingsFile) {
    const QDir folder = QFileInfo(settingsFile).absoluteDir();
    session.Config.SetConfigFile(settingsFile);
    QStringList files;
    for (const char* name : {"Quadrix.ini", "Sequence.ini", "Solution.ini", "Finestra.ini"}) {
        files.append(folder.filePath(name));
    }
    const QString log = LogPath(folder.path());
    const QDir logs = QFileInfo(log).dir();
    files += QStringList{log, logs.filePath("fusione.log"), folder.filePath("sequence.log")};
    for (const QString& section : {Section, QStringLiteral("IMPORT")}) {
        const QString database = session.Config.PeekAppConfig(section, "DatabaseName");
        for (const QString& ending : database.isEmpty() ? QStringList() : QStringList{"", "-wal", "-shm", "-journal"}) {
            files.append(QDir::cleanPath(folder.absoluteFilePath(database + ending)));
        }
    }
    return files;
}

bool ConnectQuadrix(Session& session, const QString& settingsFile, MissingDatabase missing) {
    const Operator::Busy busy(session.Person);
    return Guarded(session.Errors, QStringLiteral("modMain"), QStringLiteral("ConnectQuadrix"), false, [&] {
        Wire(session, settingsFile);
        TellBrokenLines(session);
        ReadConnection(session);
        if (session.Quadrix.Embedded) {
            const QDir folder = QFileInfo(settingsFile).absoluteDir();
            session.Quadrix.DatabaseName = QDir::cleanPath(folder.absoluteFilePath(session.Quadrix.DatabaseName));
            CheckDatabaseFile(session.Quadrix.DatabaseName, missing);
        }
        Open(session);
        TellLine(session, session.Quadrix);
        session.Config.LoadConfig();
        return true;
    });
}

void Main(Session& session, const QString& settingsFile, const std::function<void()>& showWindow) {
    const Operator::Busy busy(session.Person);
    Guarded(session.Errors, QStringLiteral("modMain"), QStringLiteral("Main"), false, [&] {
        session.Errors.ClearError();
        ConnectQuadrix(session, settingsFile);
        TellOthersAtWork(session, settingsFile);
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

QStringList NamesInList(const QVector<Company>& companies) {
    QStringList names;
    for (const Company& company : companies) {
        const auto isOfName = [&company](const Company& other) {
            return other.name.compare(company.name, Qt::CaseInsensitive) == 0;
        };
        const bool isAlone = std::count_if(companies.cbegin(), companies.cend(), isOfName) == 1;
        names.append(isAlone ? company.name : QStringLiteral("%1 (%2)").arg(company.name, company.code));
    }
    return names;
}

} // namespace modMain
