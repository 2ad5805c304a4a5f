#include "sql/engines/mysql/mySqlLocks.h"

LockWords MySqlLocks() {
    constexpr qsizetype LongestName = 64;
    LockWords words;
    words.take = QStringLiteral("SELECT GET_LOCK(%1, %2)");
    words.taken = {1};
    words.refused = 0;
    words.release = QStringLiteral("SELECT RELEASE_LOCK(%1)");
    words.owner = QStringLiteral("SELECT IS_USED_LOCK(%1)");
    words.ownNumber = QStringLiteral("SELECT CONNECTION_ID()");
    words.end = QStringLiteral("KILL %1");
    words.aboutOwner = QStringLiteral("SELECT CONCAT('dell''utente ', USER, ' da ', HOST) FROM "
                                      "information_schema.PROCESSLIST WHERE ID = %1");
    words.isStale = QStringLiteral("IS_USED_LOCK(NAME) IS NULL");
    words.makeNotes = QStringLiteral("CREATE TABLE IF NOT EXISTS QDX_LOCKS (NAME VARCHAR(64) PRIMARY KEY, "
                                     "OWNER VARCHAR(40), HOLDER VARCHAR(400)) CHARACTER SET utf8mb4");
    words.place = QStringLiteral("SELECT DATABASE()");
    words.longestName = LongestName;
    return words;
}
