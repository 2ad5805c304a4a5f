#include "sql/engines/sqlite/sqliteFile.h"

#include "sql/engine.h"
#include "sql/engines/sqlite/sqliteError.h"
#include "sql/errors.h"

#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

#include <array>

/// Nobody asks how much memory the library has: counting it takes a lock for each piece.
void PrepareSqlite() {
    // What a row changes stands aside until it is done, so that it can be taken back: in memory, for a file behind each
    // row takes a tenth of an import. What is more goes into a file in one piece, of which SQLite writes 128 KiB at the
    // most: beyond that it would take the disk for full.
    constexpr int mostAside = 124 * 1024;
    [[maybe_unused]] static const std::array once{sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0),
                                                  sqlite3_config(SQLITE_CONFIG_STMTJRNL_SPILL, mostAside)};
}

namespace sqliteFile {

namespace {

[[noreturn]] void Fail(const Handle& database, const QString& file, const QString& advice = {}) {
    SqlError error = SqliteErrorOf(database.get(), {});
    if (!advice.isEmpty()) {
        error.AddAdvice(advice);
    }
    error.AddContext(QStringLiteral("Database '%1'").arg(file));
    throw error;
}

Handle Open(const QString& name, int flags, const QString& file) {
    PrepareSqlite();
    sqlite3* opened = nullptr;
    // A connection works on one thread at a time.
    const int code = sqlite3_open_v2(name.toUtf8().constData(), &opened,
                                     flags | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX, nullptr);
    Handle database(opened);
    if (code != SQLITE_OK) {
        Fail(database, file);
    }
    return database;
}

/// Whether it can be read: opening alone does not look.
bool IsReadable(const Handle& database) {
    return sqlite3_exec(database.get(), "SELECT COUNT(*) FROM sqlite_master", nullptr, nullptr, nullptr) == SQLITE_OK;
}

/// Whether reading failed because SQLite could not make the files it wants beside a file with a write-ahead log.
bool LacksFilesBeside(const Handle& database) {
    const int code = sqlite3_extended_errcode(database.get());
    return (code & 0xff) == SQLITE_CANTOPEN || (code & 0xff) == SQLITE_READONLY;
}

} // namespace

void Close::operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }

Handle OpenToWrite(const QString& file) { return Open(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, file); }

Handle OpenToRead(const QString& file) {
    Handle database = Open(file, SQLITE_OPEN_READONLY, file);
    if (IsReadable(database) || !LacksFilesBeside(database)) {
        return database; // what else is wrong with it is told by the first statement
    }
    if (QFileInfo(file + QStringLiteral("-wal")).size() > 0) {
        Fail(database, file,
             QStringLiteral(
                 "nel file '%1-wal' ci sono modifiche che da qui non si possono leggere: chiudere il programma "
                 "che le ha scritte, oppure copiare i due file in una cartella dove si possa scrivere")
                 .arg(file));
    }
    const QString name = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()).toString(QUrl::FullyEncoded);
    return Open(name + QStringLiteral("?immutable=1"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, file);
}

} // namespace sqliteFile
