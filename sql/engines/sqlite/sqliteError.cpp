#include "sql/engines/sqlite/sqliteError.h"

#include <sqlite3.h>

namespace {

/// The engine's extended code by name for the cases an operator can act on, else its number.
QString CodeName(int code) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
        return QStringLiteral("SQLITE_BUSY");
    case SQLITE_LOCKED:
        return QStringLiteral("SQLITE_LOCKED");
    case SQLITE_READONLY:
        return QStringLiteral("SQLITE_READONLY");
    case SQLITE_FULL:
        return QStringLiteral("SQLITE_FULL");
    case SQLITE_CANTOPEN:
        return QStringLiteral("SQLITE_CANTOPEN");
    case SQLITE_CONSTRAINT:
        return QStringLiteral("SQLITE_CONSTRAINT");
    case SQLITE_INTERRUPT:
        return QStringLiteral("SQLITE_INTERRUPT");
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return QStringLiteral("SQLITE_CORRUPT");
    default:
        return QString::number(code);
    }
}

/// What the operator can do about a code, after the engine's own words; empty when they say it all.
QString Advice(int code) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return QStringLiteral(" (il database è in uso da un altro programma: chiuderlo e riprovare)");
    case SQLITE_READONLY:
        return QStringLiteral(" (il file o la sua cartella sono di sola lettura)");
    case SQLITE_FULL:
        return QStringLiteral(" (il disco è pieno)");
    case SQLITE_CANTOPEN:
        return QStringLiteral(" (il file non esiste o non si può aprire)");
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return QStringLiteral(" (il file non è un database valido)");
    default:
        return {};
    }
}

} // namespace

SqlError SqliteErrorOf(sqlite3* database, const QString& statement) {
    const int code = sqlite3_extended_errcode(database);
    return {statement, QString::fromUtf8(sqlite3_errmsg(database)) + Advice(code), CodeName(code)};
}
