#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

/// A statement text taken apart: its shape, with "?" for each literal value, and the values.
struct StatementShape {
    struct Value {
        bool isText;
        QByteArray bytes; ///< the text in UTF-8, or the digits of the number
    };
    QByteArray shape;
    QVector<Value> values;

    /// Takes texts, and the numbers of a VALUES list or behind "=", out of a SELECT, INSERT, UPDATE or DELETE. Nothing
    /// inside quoted names and comments is touched; any other statement stays as it is, without values.
    static StatementShape Of(const QByteArray& statement);
};

class SqliteStatements;

/// Gives a prepared statement back to where it came from, to be used again.
struct GiveBackStatement {
    std::shared_ptr<SqliteStatements> home;
    QByteArray shape;
    void operator()(sqlite3_stmt* statement) const noexcept;
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, GiveBackStatement>;

/// The prepared statements of a SQLite database, kept by their shape: an import runs few shapes with ever new values,
/// and preparing them anew would take longer than running them.
class SqliteStatements : public std::enable_shared_from_this<SqliteStatements> {
public:
    explicit SqliteStatements(sqlite3* database)
        : m_database(database) {}
    ~SqliteStatements() { Clear(); }
    SqliteStatements(const SqliteStatements&) = delete;
    SqliteStatements& operator=(const SqliteStatements&) = delete;

    /// The statement, ready to run with its values; null for a text without a statement. A statement that is running
    /// is not given out a second time. Raises `SqlError`, also for a text that holds several statements.
    SqliteStatement Prepare(const QString& statement);
    /// Takes a statement back.
    void GiveBack(const QByteArray& shape, sqlite3_stmt* statement) noexcept;

private:
    sqlite3_stmt* Compile(const QByteArray& text, const QString& statement);
    bool HasMore(const char* rest) const;
    void Clear() noexcept;

    sqlite3* m_database;
    QHash<QByteArray, sqlite3_stmt*> m_idle;
};
