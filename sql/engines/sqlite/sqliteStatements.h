#pragma once

#include "sql/engine.h"
#include "sql/text/statementShape.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

/// A statement that SQLite has compiled, with the values that it runs with.
struct PreparedStatement {
    sqlite3_stmt* handle = nullptr;
    StatementShape source; ///< owns the bytes of the bound texts
    bool isKept = false;
    bool isTaken = false;
    quint64 lastUse = 0;

    /// What is known of a column of the result: dates are texts in the file, bits are numbers.
    enum class Kind { Plain, Date, DateTime, Bit };
    QStringList columns;
    QVector<Kind> kinds;
    ColumnPositions positions;
    int describedCompilation = -1; ///< SQLite compiles anew when the schema has changed, with other columns perhaps

    /// Brings names and kinds of the columns up to date.
    void Describe();
};

class SqliteStatements;

/// Gives a prepared statement back to where it came from, to be used again.
struct GiveBackStatement {
    std::shared_ptr<SqliteStatements> home;
    void operator()(PreparedStatement* statement) const noexcept;
};
using SqliteStatement = std::unique_ptr<PreparedStatement, GiveBackStatement>;

/// The prepared statements of a SQLite database, kept by their shape: an import runs few shapes with ever new values,
/// and adapting and compiling each text anew would take longer than running it.
class SqliteStatements : public std::enable_shared_from_this<SqliteStatements> {
public:
    explicit SqliteStatements(sqlite3* database)
        : m_database(database) {}
    ~SqliteStatements() { Clear(); }
    SqliteStatements(const SqliteStatements&) = delete;
    SqliteStatements& operator=(const SqliteStatements&) = delete;

    /// The statement, in SQL Server's words or SQLite's own, ready to run with its values; null for a text without a
    /// statement. A statement that is running is not given out a second time. Raises `SqlError`, also for a text that
    /// holds several statements.
    SqliteStatement Prepare(const QString& statement);
    /// The same of a statement taken apart.
    SqliteStatement Prepare(StatementShape source);
    /// Takes a statement back.
    static void GiveBack(PreparedStatement* statement) noexcept;

private:
    sqlite3_stmt* Compile(const StatementShape& source);
    PreparedStatement* New(const StatementShape& source, bool isKept);
    void ForgetOldest() noexcept;
    bool HasMore(const char* rest) const;
    /// Forgets the statements that are not running; those are kept no longer.
    void Clear() noexcept;

    sqlite3* m_database;
    QHash<QByteArray, PreparedStatement*> m_kept;
    quint64 m_uses = 0;
};
