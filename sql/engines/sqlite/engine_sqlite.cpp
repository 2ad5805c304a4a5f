#include "sql/engine.h"
#include "sql/engines/sqlite/sqliteCursor.h"
#include "sql/engines/sqlite/sqliteError.h"
#include "sql/engines/sqlite/sqliteFile.h"
#include "sql/errors.h"

#include <sqlite3.h>

namespace {

using Database = sqliteFile::Handle;

/// A name as a quoted identifier.
QString Quoted(const QString& name) {
    QString text = name;
    return u'"' + text.replace(u'"', QLatin1String("\"\"")) + u'"';
}

class SqliteEngine final : public Engine {
public:
    SqliteEngine(const QString& file, bool readOnly)
        : m_database(readOnly ? sqliteFile::OpenToRead(file) : sqliteFile::OpenToWrite(file)),
          m_statements(std::make_shared<SqliteStatements>(m_database.get())) {
        sqlite3_busy_timeout(m_database.get(), BusyMilliseconds);
        try {
            Configure(readOnly);
        } catch (SqlError& error) {
            error.AddContext(QStringLiteral("Database '%1'").arg(file));
            throw;
        }
    }

    explicit SqliteEngine(Database database)
        : m_database(std::move(database)),
          m_statements(std::make_shared<SqliteStatements>(m_database.get())) {}

    Dialect TextDialect() const override { return Dialect::Sqlite; }
    bool AdaptsText() const override { return true; }

    qint64 Run(const QString& statement) override {
        const auto prepared = Prepare(statement);
        if (prepared == nullptr) {
            return 0;
        }
        int code = sqlite3_step(prepared->handle);
        while (code == SQLITE_ROW) {
            code = sqlite3_step(prepared->handle);
        }
        if (code != SQLITE_DONE) {
            throw SqliteErrorOf(m_database.get(), statement);
        }
        return sqlite3_stmt_readonly(prepared->handle) != 0 ? 0 : sqlite3_changes64(m_database.get());
    }

    std::unique_ptr<Cursor> Query(const QString& statement) override {
        return std::make_unique<SqliteCursor>(m_database.get(), Prepare(statement), statement);
    }

    void Begin() override { Run(QStringLiteral("BEGIN IMMEDIATE")); }
    void Commit() override { Run(QStringLiteral("COMMIT")); }
    void RollBack() override { Run(QStringLiteral("ROLLBACK")); }
    void Interrupt() noexcept override { sqlite3_interrupt(m_database.get()); }
    qint64 LastInsertId() override { return sqlite3_last_insert_rowid(m_database.get()); }

    QStringList Tables() override {
        return Texts(QStringLiteral("SELECT name FROM sqlite_master WHERE type IN ('table', 'view') AND "
                                    "name NOT LIKE 'sqlite_%' ORDER BY name"));
    }

    QVector<ColumnInfo> Columns(const QString& table) override {
        QVector<ColumnInfo> columns;
        const auto cursor = Query(QStringLiteral("PRAGMA table_info(%1)").arg(Quoted(table)));
        while (cursor->Next()) {
            columns.append({cursor->Value(1).toString(), cursor->Value(2).toString()});
        }
        return columns;
    }

    /// SQLite has no switch for triggers: their text waits in a table of its own while they are off, so that it is
    /// not lost when the program ends in between.
    void SetTriggersEnabled(const QString& table, bool enabled) override {
        Run(QStringLiteral("CREATE TABLE IF NOT EXISTS QDX_TRIGGERS_OFF (NAME TEXT PRIMARY KEY, TBL TEXT COLLATE "
                           "NOCASE, DDL TEXT)"));
        Run(QStringLiteral("SAVEPOINT triggers"));
        try {
            enabled ? RestoreTriggers(table) : StoreTriggers(table);
        } catch (const SqlError&) {
            Run(QStringLiteral("ROLLBACK TO triggers"));
            Run(QStringLiteral("RELEASE triggers"));
            throw;
        }
        Run(QStringLiteral("RELEASE triggers"));
    }

    QString RestartStatement(const QString& table) override {
        const QString numbers = QStringLiteral("sqlite_sequence"); // there once a table has an identity column
        return Texts(QStringLiteral("SELECT name FROM sqlite_master WHERE name = ") + Literal(numbers)).isEmpty()
                   ? QString()
                   : QString("DELETE FROM " + numbers + " WHERE name = " + Literal(table) + " COLLATE NOCASE");
    }

private:
    static constexpr int BusyMilliseconds = 5000;

    /// Each statement is on disk for the operating system when it returns (write-ahead log): the death of the program
    /// loses nothing.
    void Configure(bool readOnly) {
        Run(QStringLiteral("PRAGMA foreign_keys = ON"));
        Run(QStringLiteral("PRAGMA cache_size = -16384"));
        if (!readOnly) {
            Run(QStringLiteral("PRAGMA journal_mode = WAL"));
            Run(QStringLiteral("PRAGMA synchronous = NORMAL"));
        }
    }

    SqliteStatement Prepare(const QString& statement) { return m_statements->Prepare(statement); }

    QStringList Texts(const QString& query) {
        QStringList texts;
        const auto cursor = Query(query);
        while (cursor->Next()) {
            texts.append(cursor->Value(0).toString());
        }
        return texts;
    }

    static QString Literal(QString text) { return u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\''; }

    void StoreTriggers(const QString& table) {
        const QString where =
            QStringLiteral(" FROM sqlite_master WHERE type = 'trigger' AND tbl_name = %1 COLLATE NOCASE")
                .arg(Literal(table));
        const QStringList names = Texts(QStringLiteral("SELECT name") + where);
        Run(QStringLiteral("INSERT OR REPLACE INTO QDX_TRIGGERS_OFF SELECT name, tbl_name, sql") + where);
        for (const QString& name : names) {
            Run(QStringLiteral("DROP TRIGGER ") + Quoted(name));
        }
    }

    void RestoreTriggers(const QString& table) {
        const QString where = QStringLiteral(" FROM QDX_TRIGGERS_OFF WHERE TBL = %1").arg(Literal(table));
        for (const QString& ddl : Texts(QStringLiteral("SELECT DDL") + where)) {
            Run(ddl);
        }
        Run(QStringLiteral("DELETE") + where);
    }

    Database m_database;
    std::shared_ptr<SqliteStatements> m_statements; ///< goes before the database
};

} // namespace

std::unique_ptr<Engine> OpenSqlite(const QString& file, bool readOnly) {
    return std::make_unique<SqliteEngine>(file, readOnly);
}

std::unique_ptr<Engine> AdoptSqlite(sqlite3* database) { return std::make_unique<SqliteEngine>(Database(database)); }
