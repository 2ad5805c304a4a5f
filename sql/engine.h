#pragma once

#include "sql/nameMap.h"
#include "sql/SqlText.h"

#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>

struct sqlite3;

/// Remembers where the columns of a result stand, by the spelling they were asked with.
class ColumnPositions {
public:
    /// Position of the first column of that name, in any case; -1 when there is none.
    int Of(QAnyStringView name, const QStringList& columns) {
        if (const int* known = m_known.Find(name)) {
            return *known;
        }
        const QString text = name.toString();
        const auto found = std::find_if(columns.begin(), columns.end(), [&text](const QString& column) {
            return column.compare(text, Qt::CaseInsensitive) == 0;
        });
        return m_known.Insert(text, found == columns.end() ? -1 : static_cast<int>(found - columns.begin()));
    }
    void Clear() { m_known.Clear(); }

private:
    NameMap<int> m_known;
};

/// The rows of a query, read forward one at a time: memory does not grow with the rows read.
class Cursor {
public:
    virtual ~Cursor() = default;
    /// Steps to the next row (the first call steps to the first row); false after the last one.
    /// Raises `SqlError`.
    virtual bool Next() = 0;
    /// Names of the columns, in the order of the result.
    virtual const QStringList& Columns() const = 0;
    /// Position of the first column of that name (case does not matter); -1 when there is none.
    virtual int IndexOf(QAnyStringView name) const { return m_positions.Of(name, Columns()); }
    /// Value of a column (from 0) of the row under the cursor; a null variant is the database's Null.
    virtual QVariant Value(int column) const = 0;
    /// Whether there are columns that the database does not have, which are Null for that reason.
    virtual bool HasMissing() const { return false; }
    /// Whether a column (from 0) is one of them.
    virtual bool IsMissing(int /*column*/) const { return false; }

private:
    mutable ColumnPositions m_positions;
};

/// A column as the database itself describes it.
struct ColumnInfo {
    QString name;
    QString type; ///< declared type in the database's own words, e.g. "NVARCHAR(35)"
};

/// What a column of a table takes, as far as its database enforces it.
struct ColumnBounds {
    QString name;
    QString type;            ///< in the database's own words, e.g. "decimal(12,2)"
    int length = 0;          ///< characters of a text at the most; 0: nothing is known of that
    bool isRounding = false; ///< a number keeps fewer digits than a double has
    int decimals = -1;       ///< of a number that keeps a fixed number of them; -1: of another
    double largest = 0;      ///< the largest whole number; 0: nothing is known of that
    bool isDemanded = false; ///< no row goes without it: it may not be Null, and nothing but the INSERT gives a value
};

/// One kind of database under `ovConnection`: takes text that is in its own dialect, unless it adapts it.
/// Every operation raises `SqlError` with the statement and the engine's own message and code.
class Engine {
public:
    virtual ~Engine() = default;

    virtual Dialect TextDialect() const = 0;
    /// Whether it turns SQL Server's words into its own by itself, as one does that does so once for many texts.
    virtual bool AdaptsText() const { return false; }
    /// Runs a statement that returns no rows; returns the number of rows changed.
    virtual qint64 Run(const QString& statement) = 0;
    /// Runs a query and returns its cursor. A statement without a result is run and gives an empty cursor.
    virtual std::unique_ptr<Cursor> Query(const QString& statement) = 0;
    /// The same for statements whose values stand apart. They are run as texts where none are kept prepared.
    virtual qint64 RunApart(const SqlText& statement) { return Run(statement.Text()); }
    virtual std::unique_ptr<Cursor> QueryApart(const SqlText& statement) { return Query(statement.Text()); }
    virtual void Begin() = 0;
    virtual void Commit() = 0;
    virtual void RollBack() = 0;
    /// Whether the transaction that was begun is still open at the database. Engines end one by themselves: on a full
    /// disk, as the victim of a deadlock, with the connection. The database is asked where only it knows.
    /// @param afterFailure a statement has just failed: what was known before it may be true no longer
    virtual bool TransactionStands(bool afterFailure) = 0;
    /// Marks the point of the open transaction that `RollBackToMark` goes back to, in place of the last one.
    virtual void SetMark() = 0;
    virtual void RollBackToMark() = 0;
    /// Stops the statement under way, from another thread or a signal; it then fails with `SqlError`.
    virtual void Interrupt() noexcept = 0;
    /// Identity value given by the last INSERT of this connection; 0 when there was none.
    virtual qint64 LastInsertId() = 0;
    /// A number that is another one once rows may have changed in any way but by the statements of this connection
    /// themselves: by another connection, by a trigger. Within a transaction others change nothing. Nothing where the
    /// database cannot tell.
    virtual std::optional<qint64> ChangesOfOthers() { return std::nullopt; }
    /// How long an INSERT of several rows, VALUES (..), (..), may be, in bytes, that takes the word DEFAULT for a value
    /// and gives back the identity values of all rows, in their order, when RETURNING and the column stand behind it;
    /// 0: there is none.
    virtual qsizetype LongestInsert() { return 0; }
    /// Tells of an index of a table that is still empty how many rows will stand under one value of its first column,
    /// of its first two and so on, of a million: a planner that knows nothing takes the first that fits. Nothing where
    /// the database keeps account of that by itself.
    virtual void Expect(const QString& /*table*/, const QString& /*index*/, const QList<int>& /*rows*/) {}
    /// Whether what a transaction reads stays as it was until its end, but for what its own statements write: it sees
    /// nothing of others, and there are no triggers.
    virtual bool KeepsItsView() { return false; }
    /// Whether a column holds each text as it is written, and Null in rows whose INSERT does not name it; false where
    /// the database cannot tell.
    virtual bool KeepsTexts(const QString& /*table*/, const QString& /*column*/) { return false; }
    /// Names of the tables and views the connection sees.
    virtual QStringList Tables() = 0;
    /// Columns of a table, in their order; empty when the table does not exist.
    virtual QVector<ColumnInfo> Columns(const QString& table) = 0;
    /// What the columns of a table take; empty when the table does not exist, or the database cannot tell.
    virtual QVector<ColumnBounds> Bounds(const QString& /*table*/) { return {}; }
    /// Switches every trigger of a table off or on again, with lasting effect. Where the database has no switch for
    /// them they are taken away and made again, but not while `TriggerObstacles` names any: that raises `SqlError`.
    virtual void SetTriggersEnabled(const QString& table, bool enabled) = 0;
    /// Why the triggers of a table, were they switched off, could not be switched on again, each with what would help;
    /// empty when they can, or there are none.
    virtual QStringList TriggerObstacles(const QString& /*table*/) { return {}; }
    /// Whether the triggers of a table can be seen: a server may hide them from a user without the right to make some.
    virtual bool SeesTriggers(const QString& /*table*/) { return true; }
    /// Rights on the rows of a table that this user lacks, each with the statement that gives it; empty when none does,
    /// or the database cannot be asked without a trace. Nothing is changed.
    /// @param column one that the table has @param writes reading, inserting, changing and deleting; else reading alone
    virtual QStringList LackingRights(const QString& /*table*/, const QString& /*column*/, bool /*writes*/) {
        return {};
    }
    /// Takes a lock that no other connection to the same database can have at the same time. It needs no transaction
    /// and goes with the connection or the program, whichever way that ends. A connection that has fallen takes its
    /// locks again when it is opened anew; until it has them, every statement raises `SqlError`.
    /// @param name what is locked, such as the code of a company
    /// @param holder who takes it and for what, in words for the operator to whom it is refused
    /// @return false when another connection has it. Raises `SqlError` or `ImportError` when it cannot be asked for
    virtual bool TakeLock(const QString& name, const QString& holder) = 0;
    /// Who has a lock, as far as it can be known; empty when nothing is.
    virtual QString LockHolder(const QString& name) = 0;
    /// Lets a lock go; one that this connection does not have is nothing to let go.
    virtual void ReleaseLock(const QString& name) noexcept = 0;
    /// What is to be told of the line to the database, in Italian, when others may read along on its way; empty when
    /// it is encrypted, does not leave this machine, or when nothing is known of it.
    virtual QString LineWarning() { return {}; }
    /// Statement after which the rows of a table that was just emptied are numbered from 1 again; empty where TRUNCATE
    /// sees to it.
    virtual QString RestartStatement(const QString& /*table*/) { return {}; }
};

/// How a database is reached.
struct ConnectionSettings {
    QString server;
    QString databaseName;
    QString user;
    QString password;
    QString dsn;
    QString connectionString;
    bool networkCredential = false; ///< integrated sign-on: user and password are not used
    QString driver;                 ///< ODBC driver; empty for the usual one of the provider
    Encryption encryption = Encryption::DriversOwn;
    QString encryptionCA;  ///< file of the authorities whose certificates count; empty for those of the system
    bool readOnly = false; ///< nothing is to be written, whatever it is asked
    // Of sources that this program reads from files itself:
    QStringList tables;                            ///< tables that are read; empty for all
    QStringList lookupColumns;                     ///< "table.column" of each column that rows are looked up by
    QString codePage;                              ///< code page of files that do not tell theirs; empty for cp1252
    std::function<void(const QString& note)> note; ///< is told what was taken for granted when a file was read; or null
};

/// Sets the library of SQLite up for this program: before its first database is opened, later calls do nothing.
void PrepareSqlite();

/// Opens a SQLite file, creating it when missing unless readOnly; ":memory:" and "" (a private temporary file) work
/// as SQLite has them. One that is only read may stand in a folder that may only be read, too. Raises `SqlError`.
std::unique_ptr<Engine> OpenSqlite(const QString& file, bool readOnly = false);
/// An engine over a SQLite database that is open already, and that it closes: for a private database that its maker
/// has filled.
std::unique_ptr<Engine> AdoptSqlite(sqlite3* database);
/// Opens a MySQL or MariaDB database over the server's own client library. Raises `SqlError`, and `ImportError` for
/// settings that mean nothing.
std::unique_ptr<Engine> OpenMySql(const ConnectionSettings& settings);
/// Opens an ODBC data source, by connection string, DSN, or driver, server and database; `provider` is
/// that of the database behind it. Raises `SqlError`, and `ImportError` for what the driver cannot be asked.
std::unique_ptr<Engine> OpenOdbc(const ConnectionSettings& settings, Provider provider);
