#pragma once

#include <QString>

#include <memory>

struct sqlite3;

/// The opening of SQLite's files.
namespace sqliteFile {

/// Closes a database handle.
struct Close {
    void operator()(sqlite3* database) const noexcept;
};
using Handle = std::unique_ptr<sqlite3, Close>;

/// Opens a file to read and write it; it is made when it is not there. Raises `SqlError` naming it.
Handle OpenToWrite(const QString& file);

/// Opens a file to read it only; it is not changed. A file with a write-ahead log ("-wal") asks for files beside it,
/// which SQLite makes where it may; where it may not, and nothing waits in a log, it is read without. Raises `SqlError`
/// naming the file, also when what waits in its log could not be read.
Handle OpenToRead(const QString& file);

} // namespace sqliteFile
