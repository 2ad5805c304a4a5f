#include "sql/engines/sqlite/sqliteError.h"

#include "sql/engines/meaning.h"

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

constexpr QLatin1String Constraint("SQLITE_CONSTRAINT");
constexpr QLatin1String General("1");
constexpr const char* InUse = "il database è in uso da un altro programma: chiuderlo e riprovare";

constexpr meaning::Refusal SqliteRefusals[] = {
    {Constraint, QLatin1String("^UNIQUE constraint failed: (\\w+)\\.(\\w+)$"),
     "%V2 è già presente nella colonna '%2' della tabella '%1', che non ammette doppioni"},
    {Constraint, QLatin1String("^UNIQUE constraint failed: (.+)$"),
     "c'è già una riga con gli stessi valori in %1, che insieme non ammettono doppioni"},
    {Constraint, QLatin1String("^NOT NULL constraint failed: (\\w+)\\.(\\w+)$"),
     "la colonna '%2' della tabella '%1' deve avere un valore"},
    {Constraint, QLatin1String("^FOREIGN KEY constraint failed$"),
     "la riga%T rimanda a un'altra che non c'è, oppure altre righe rimandano a essa"},
    {Constraint, QLatin1String("^CHECK constraint failed: (.+)$"),
     "la riga%T non rispetta la regola '%1' del database"},
    {General, QLatin1String("^no such table: (.+)$"), "la tabella '%1' non c'è nel database"},
    {General, QLatin1String("^table (.+) has no column named (.+)$"), "la colonna '%2' non c'è nella tabella '%1'"},
    {General, QLatin1String("^no such column: (.+)$"), "la colonna '%1' non c'è"},
    {QLatin1String("SQLITE_BUSY"), {}, InUse, true},
    {QLatin1String("SQLITE_LOCKED"), {}, InUse, true},
    {QLatin1String("SQLITE_READONLY"), {}, "il file o la sua cartella sono di sola lettura"},
    {QLatin1String("SQLITE_FULL"), {}, "il disco è pieno"},
    {QLatin1String("SQLITE_CANTOPEN"), {}, "il file non esiste o non si può aprire"},
    {QLatin1String("SQLITE_CORRUPT"), {}, "il file non è un database valido"},
};

} // namespace

SqlError SqliteErrorOf(sqlite3* database, const QString& statement) {
    SqlError error(statement, QString::fromUtf8(sqlite3_errmsg(database)),
                   CodeName(sqlite3_extended_errcode(database)));
    meaning::Explain(error, SqliteRefusals);
    return error;
}
