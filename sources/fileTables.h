#pragma once

#include "sources/privateDatabase.h"

#include <QDir>
#include <QMap>

namespace sources {

/// A table that a file source offers.
struct FileTable {
    QString name;
    /// Makes and fills the table. Raises `ImportError` naming file, row and column.
    std::function<void(PrivateDatabase& database)> load;
    bool isListed = true; ///< false: a second name of a table that is listed under another
};

/// Opens the tables of a file source as a private database. A table is read from its file when a query first names it
/// (or its columns are asked for), so that no procedure waits for, or fails on, a file that it does not read.
/// @param where the source in words for the errors, e.g. "la cartella 'C:\DATI'"
/// @param settings its `tables` are offered; when there are none of them the source is the wrong one, which raises
/// `ImportError`; a query that names a single missing one raises it as well.
std::unique_ptr<Engine> OpenFileTables(const QString& where, std::vector<FileTable> tables,
                                       const ConnectionSettings& settings);

/// The files of a folder, by name. Raises `ImportError` when it is not there.
/// @param what what it is the folder of, for the error, e.g. "delle tabelle FoxPro"
QFileInfoList FilesOf(const QString& folder, const QString& what);

/// Reads a file into a table of that name.
using FileLoader = std::function<void(PrivateDatabase& database, const QString& name, const QString& path)>;

/// Opens a folder as `OpenFileTables` does. A table of several files raises `ImportError` when it is read.
/// @param files the paths of each table, by its name
std::unique_ptr<Engine> OpenFolderTables(const QString& folder, const QMap<QString, QStringList>& files,
                                         const FileLoader& load, const ConnectionSettings& settings);

/// Indexes the columns of a table that the settings' `lookupColumns` name.
void AddLookupIndexes(PrivateDatabase& database, const QString& table, const QVector<ColumnInfo>& columns,
                      const QStringList& lookupColumns);

} // namespace sources
