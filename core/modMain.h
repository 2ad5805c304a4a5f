#pragma once

#include "core/Session.h"

class ovQueryConstructor;

/// Settings and small services that every floor calls. But for the settings of yes or no none of them raises: an error
/// is reported through the error collector under "modMain" and gives the result named with each.
namespace modMain {

/// What the file system tells about a file or folder.
struct FileInfo {
    QString fileName;
    QString path;      ///< the folder part of the path that was asked for
    QString shortName; ///< the 8.3 name; empty where the system has none
    qint32 size = 0;   ///< the low 32 bits of the size
    QDateTime created; ///< local times; invalid where the file system does not keep them
    QDateTime accessed;
    QDateTime written;
    qint32 attributes = 0; ///< 1 read-only, 2 hidden, 16 folder, 128 none of these
};

/// A setting of "Quadrix.ini", at most 127 characters. A missing or empty one is written into the file with its
/// default, and the default is returned, as it is after an error; a file that cannot be read is reported once.
QString GetAppConfig(Session& session, const QString& section, const QString& key, const QString& defaultValue);

/// Whether a text is the number 1 ("1", "1.0"); whatever else it says is no.
bool IsOne(const QString& text);
/// Whether a setting of yes or no, read as `GetAppConfig` does, is on: 1; a blank one is off. Raises `ImportError` naming
/// key, section and file for what is neither 1 nor 0: nobody knows what was meant by it.
bool IsAppConfigOn(Session& session, const QString& section, const QString& key, const QString& defaultValue);

/// Writes a setting into "Quadrix.ini".
void SetAppConfig(Session& session, const QString& section, const QString& key, const QString& value);

/// Makes a connection one of the kind of database that a setting `Provider` names, in any case: "MSSQL", "ACCESS",
/// "SYBASE", "MYSQL", "ORACLE", "SQLITE" (an embedded file, in the text of SQL Server).
/// @return false for a name that is not known, which leaves the kind as it is
bool SetProvider(ovConnection& connection, const QString& name);

/// Text of the call of a stored procedure for the Quadrix database: "EXEC ", the name and a carriage return, then the
/// fields of `parameters` (null for none), one a line. Empty after an error.
QString GetSP(Session& session, const QString& name, const ovQueryConstructor* parameters);

/// Looks up a file or folder; false, and `info` as it was, when there is none.
bool GetFileInfo(const QString& path, FileInfo& info);

} // namespace modMain
