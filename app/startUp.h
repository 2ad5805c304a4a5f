#pragma once

#include "core/Session.h"

namespace modMain {

/// What happens when the embedded database file is not there.
enum class MissingDatabase {
    Fail,
    Create, ///< an empty one is made
};

/// Path of "Quadrix.ini".
/// @param folder where it stands; empty for the folder of the environment variable QUADRIX_CONFIG, and without that
/// for "Orvane Quadrix/Config" in the user's local application data
QString SettingsFilePath(const QString& folder = {});

/// Paths at which the program keeps, or will keep, something of its own under these settings, and those of its
/// databases and of the source: nothing else may be written there. Raises `ImportError` when the settings cannot be
/// read.
QStringList OwnFiles(Session& session, const QString& settingsFile);

/// Connects the session with its settings file and opens the Quadrix database that the file describes. The folder of
/// the file is made when missing, and settings that are missing are written with their defaults. A clear password in
/// the file is replaced by its scrambled form.
/// Provider "SQLITE" opens the file DatabaseName, counted from the folder of the settings, with the text of SQL Server.
/// @return whether it ran to its end; an error is reported under "modMain", "ConnectQuadrix"
bool ConnectQuadrix(Session& session, const QString& settingsFile, MissingDatabase missing = MissingDatabase::Fail);

/// The program's entry: clears the error collector, connects and shows the main window, under the hourglass. The
/// window is shown after a failed connection too, so that the operator sees what was reported.
void Main(Session& session, const QString& settingsFile, const std::function<void()>& showWindow);

/// One company of the Quadrix database.
struct Company {
    QString code; ///< CDAZI
    QString name; ///< AZRAS
};

/// The companies, by code. Raises `SqlError`, also when the database holds no Quadrix tables.
QVector<Company> GetCompanies(Session& session);

/// The names of companies as lists show them: those of one name bear their code too.
QStringList NamesInList(const QVector<Company>& companies);

} // namespace modMain
