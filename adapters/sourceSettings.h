#pragma once

#include "adapters/contract/run/Origin.h"
#include "sources/fixedFiles.h"
#include "sources/workbookFile.h"

/// How the sources of the origins open: each function makes the preparation of one kind of source, for the entry of an
/// origin. The settings are those of section IMPORT, or of the origin's own (`OfOrigin`); a missing one is written into
/// IMPORT with the default given here, as reading a setting does everywhere.
namespace sourceSettings {

using Prepare = contract::Opening;
using ServerKeys = contract::SourceKeys;

/// The section that holds a setting of an origin: the one with the origin's name where it has the key, else IMPORT.
QString SectionOf(Session& session, const QString& origin, const QString& key);

/// The section that holds whether an origin's source signs on by itself, and the one of the password: that of the user,
/// where an origin names one of its own, for no other password is his.
QString NetworkSectionOf(Session& session, const QString& origin, const ServerKeys& keys);
QString PasswordSectionOf(Session& session, const QString& origin, const ServerKeys& keys);

/// Whether the name of a database is that of a SQLite file.
bool NamesSqliteFile(const QString& database);
/// Where the database of a server that a connection names is a SQLite file, as the examples are, has it opened in the
/// server's place, and returns true; a path counts from the folder of the settings. Raises `ImportError` when there is
/// no such file. @param key of the setting that names it, for the message; empty for a name that was asked for
bool UseNamedFile(Session& session, ovConnection& source, const QString& key = QStringLiteral("Databasename"));
/// A path of the settings, counted from their folder.
QString FromSettingsFolder(const Session& session, const QString& path);

/// While it lives, the settings of a session that name a source are those of an origin: a key of the section with its
/// name goes before that of IMPORT. One inside of another is of no account: who has written the keys of IMPORT for what
/// he opens, as a sequence does, holds one without a name around it.
class OfOrigin {
public:
    OfOrigin(Session& session, const QString& origin);
    ~OfOrigin();
    OfOrigin(const OfOrigin&) = delete;
    OfOrigin& operator=(const OfOrigin&) = delete;

private:
    Session* m_session; ///< null inside of another
};

/// Reads the settings Encryption and EncryptionCA of section IMPORT into a connection; raises as `modMain::ReadLine`.
void ReadLine(Session& session, ovConnection& source);
/// The operator's own condition on the articles that are read, in brackets: setting WhereArticoli of section IMPORT.
/// Empty where it is not set or 0.
QString ArticleCondition(Session& session);
/// The path of the setting Databasename, counted from the folder of the settings; empty when it is not set.
QString DatabasePath(Session& session);
/// What an error says of the path of a file source: which setting it stands in, and whether only its beginning was
/// read. Empty for a source whose path comes from elsewhere.
QString PathAdvice(Session& session, const ovConnection& source);

/// An ODBC data source: setting DSN, which may name a SQLite file in its place, with the user and password of
/// DSN_Username and DSN_Password where they are set. The user of the server origins is not that of a data source, which
/// keeps its own.
Prepare DataSource(const QString& defaultDsn);

/// A database server: settings ProviderType, Servername, Databasename, NetworkCredential and, without integrated
/// sign-on, Username and Password; Encryption and EncryptionCA tell how the line is protected. A Databasename that ends
/// in ".sqlite" or ".db" names a SQLite file with the server's tables, such as the examples are; it is counted from the
/// folder of the settings. Setting Driver names the ODBC driver, where it is not the usual one.
Prepare Server(const QString& defaultDatabase, const ServerKeys& keys = {});

// A path of Databasename is counted from the folder of the settings; without one, and without a default, preparing
// raises `ImportError` naming the setting.

/// A folder of FoxPro tables: setting Databasename.
Prepare FoxProFolder();

/// An Access file that the operator chooses, after the one of the setting Databasename, which may name a SQLite file in
/// its place.
Prepare ChosenAccessFile(const QString& defaultDatabase);
/// The Access file of that name in the folder of the setting Databasename, or the SQLite file that it names.
Prepare AccessFileInFolder(const QString& fileName);
/// A workbook of Excel that the operator chooses; it is read, whatever program has it open, and never written.
/// @param sheets tables that are read otherwise than a sheet under its own name with its first row as header; the first
/// sheet is "#1"
Prepare OpenFileExcel(const std::vector<sources::SheetTable>& sheets = {});
/// A text file that the operator chooses, in columns with a separator between them.
/// @param title,filter of the file dialog
Prepare TextFile(const QString& title, const QString& filter);
/// A CSV file that the operator chooses, which is each of these tables: the one that a procedure reads is the kind of
/// file that it wants. @param lookUps "table.column" of each column that rows are looked up by
Prepare CsvFileAs(const QStringList& tables, const QStringList& lookUps = {});
/// A folder of text files: setting Databasename.
Prepare TextFolder(const QString& defaultFolder);
/// A folder of files of fixed width: setting Databasename. @param records the kinds of records in them
Prepare FixedFolder(const QString& defaultFolder, const std::vector<sources::FixedRecord>& records);
/// A file of fixed width that the operator chooses. @param records the kinds of records in it, whose `file` is not read
/// @param title,filter of the file dialog
Prepare FixedFile(const QString& title, const QString& filter, const std::vector<sources::FixedRecord>& records);
/// A connection string that is always the same, unless the setting DSN names a SQLite file in its place.
Prepare Fixed(const QString& connectionString);

} // namespace sourceSettings
