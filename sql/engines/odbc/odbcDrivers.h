#pragma once

#include <QString>
#include <QStringList>

/// The ODBC drivers of this machine, and what is known of them.
namespace odbc {

/// Drivers that are spoken to in the same words.
enum class DriverKind {
    Other,
    Files,        ///< databases that are files: no line leads to them
    FreeTds,      ///< SQL Server and Sybase from Unix
    SqlServer,    ///< Microsoft's, from the Native Client on ("ODBC Driver 18 for SQL Server")
    OldSqlServer, ///< the one that is part of Windows ("SQL Server")
    MariaDb,
    MySql,
    Oracle,
};

/// Kind of a driver by the name it is registered with, or by the file of its library.
DriverKind KindOf(const QString& driver);
/// Version of Microsoft's driver by its name: 18 of "ODBC Driver 18 for SQL Server"; 0 when the name tells none.
int VersionOf(const QString& driver);

/// Names of the drivers that the driver manager knows.
QStringList InstalledDrivers();
/// Driver of a data source, by its name or the file of its library; empty when the driver manager does not know the
/// data source.
QString DriverOfDsn(const QString& dsn);

/// The driver for SQL Server among those installed: the newest of Microsoft's on Windows, FreeTDS before these
/// elsewhere. Without any the one that belongs to the system, so that the error names it.
QString SqlServerDriver(const QStringList& installed, bool onWindows);

} // namespace odbc
