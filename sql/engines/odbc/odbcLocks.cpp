#include "sql/engines/odbc/odbcLocks.h"

#include "sql/engines/mysql/mySqlLocks.h"

namespace odbc {

namespace {

/// Of the session, so that no transaction ends them; they belong to the database.
LockWords SqlServerLocks() {
    constexpr qsizetype LongestName = 255;
    LockWords words;
    words.take = QStringLiteral("SET NOCOUNT ON; DECLARE @taken INT, @wait INT; SET @wait = %2 * 1000; "
                                "EXEC @taken = sp_getapplock @Resource = N%1, @LockMode = 'Exclusive', "
                                "@LockOwner = 'Session', @LockTimeout = @wait; SELECT @taken");
    words.taken = {0, 1};
    words.refused = -1;
    words.release = QStringLiteral("EXEC sp_releaseapplock @Resource = N%1, @LockOwner = 'Session'");
    words.ownNumber = QStringLiteral("SELECT @@SPID");
    words.makeNotes =
        QStringLiteral("IF OBJECT_ID(N'QDX_LOCKS') IS NULL CREATE TABLE QDX_LOCKS (NAME NVARCHAR(255) NOT "
                       "NULL PRIMARY KEY, OWNER NVARCHAR(40), HOLDER NVARCHAR(400))");
    words.longestName = LongestName;
    return words;
}

/// The number of a lock is made of its name: a handle would be given by what commits.
LockWords OracleLocks() {
    constexpr qsizetype LongestName = 128;
    LockWords words;
    words.take = QStringLiteral("SELECT DBMS_LOCK.REQUEST(ORA_HASH(%1, 1073741823), 6, %2) FROM DUAL");
    words.taken = {0, 4};
    words.refused = 1;
    words.release = QStringLiteral("SELECT DBMS_LOCK.RELEASE(ORA_HASH(%1, 1073741823)) FROM DUAL");
    words.ownNumber = QStringLiteral("SELECT SYS_CONTEXT('USERENV', 'SID') FROM DUAL");
    words.makeNotes = QStringLiteral("CREATE TABLE QDX_LOCKS (NAME VARCHAR2(128) PRIMARY KEY, OWNER VARCHAR2(40), "
                                     "HOLDER VARCHAR2(400))");
    words.place = QStringLiteral("SELECT SYS_CONTEXT('USERENV', 'CURRENT_SCHEMA') FROM DUAL");
    words.longestName = LongestName;
    return words;
}

} // namespace

LockWords LocksOf(Dbms dbms) {
    switch (dbms) {
    case Dbms::SqlServer:
        return SqlServerLocks();
    case Dbms::MySql:
        return MySqlLocks();
    case Dbms::Oracle:
        return OracleLocks();
    case Dbms::Other:
        break;
    }
    return {};
}

} // namespace odbc
