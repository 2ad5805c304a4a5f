#include "sql/engine.h"
#include "sql/engines/fileLocks.h"
#include "sql/engines/sqlite/sqliteCursor.h"
#include "sql/engines/sqlite/sqliteError.h"
#include "sql/engines/sqlite/sqliteFile.h"
#include "sql/errors.h"
#include "sql/text/catalogLiteral.h"
#include "sql/text/triggerText.h"

#include <QRegularExpression>

#include <sqlite3.h>

#include <algorithm>
#include <optional>

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

    qint64 Run(const QString& statement) override { return Run(m_statements->Prepare(statement)); }
    qint64 RunApart(const SqlText& statement) override { return Run(m_statements->Prepare(statement.Shape())); }

    std::unique_ptr<Cursor> Query(const QString& statement) override { return Rows(m_statements->Prepare(statement)); }
    std::unique_ptr<Cursor> QueryApart(const SqlText& statement) override {
        return Rows(m_statements->Prepare(statement.Shape()));
    }

    void Begin() override {
        Run(QStringLiteral("BEGIN IMMEDIATE"));
        const auto version = Query(QStringLiteral("PRAGMA data_version"));
        m_version = version->Next() ? version->Value(0).toLongLong() : m_version + 1;
        m_marked = false;
    }
    void Commit() override { Run(QStringLiteral("COMMIT")); }
    void RollBack() override {
        if (TransactionStands(false)) {
            Run(QStringLiteral("ROLLBACK"));
        }
    }
    bool TransactionStands(bool /*afterFailure*/) override { return sqlite3_get_autocommit(m_database.get()) == 0; }
    void SetMark() override {
        static const SqlText release = SqlText::Of(QStringLiteral("RELEASE QDX_ROW"));
        static const SqlText mark = SqlText::Of(QStringLiteral("SAVEPOINT QDX_ROW"));
        if (m_marked) { // marks of the same name would stand one within the other
            RunApart(release);
        }
        m_marked = false;
        RunApart(mark);
        m_marked = true;
    }
    void RollBackToMark() override { Run(QStringLiteral("ROLLBACK TO QDX_ROW")); }
    void Interrupt() noexcept override { sqlite3_interrupt(m_database.get()); }
    /// While a transaction writes, others wait: their part is asked for when it begins.
    std::optional<qint64> ChangesOfOthers() override {
        const qint64 byOthers = sqlite3_total_changes64(m_database.get()) - m_ownChanges;
        return TransactionStands(false) ? std::optional(m_version + byOthers) : std::nullopt;
    }
    /// A declared type makes numbers of texts ("07" in an INT), unless it is one of texts.
    bool KeepsTexts(const QString& table, const QString& column) override {
        const auto found = Query(QStringLiteral("SELECT type FROM pragma_table_info(%1) WHERE name = %2 COLLATE NOCASE "
                                                "AND dflt_value IS NULL AND EXISTS (SELECT 1 FROM sqlite_master "
                                                "WHERE type = 'table' AND name = %1 COLLATE NOCASE)")
                                     .arg(CatalogLiteral(table), CatalogLiteral(column)));
        const QString type = found->Next() ? found->Value(0).toString() : QString();
        static const QRegularExpression ofTexts(QStringLiteral("CHAR|CLOB|TEXT"),
                                                QRegularExpression::CaseInsensitiveOption);
        return type.contains(ofTexts) && !type.contains(u"INT", Qt::CaseInsensitive);
    }
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

    /// Declared types do not bind; the number of a row comes by itself.
    QVector<ColumnBounds> Bounds(const QString& table) override {
        QVector<ColumnBounds> bounds;
        const auto cursor = Query(QStringLiteral("PRAGMA table_info(%1)").arg(Quoted(table)));
        while (cursor->Next()) {
            ColumnBounds column;
            column.name = cursor->Value(1).toString();
            column.type = cursor->Value(2).toString();
            const bool isNumbered =
                cursor->Value(5).toInt() > 0 && column.type.compare(u"INTEGER", Qt::CaseInsensitive) == 0;
            column.isDemanded = cursor->Value(3).toInt() != 0 && cursor->Value(4).isNull() && !isNumbered;
            bounds.append(column);
        }
        return bounds;
    }

    void Expect(const QString& table, const QString& index, const QList<int>& rows) override {
        QString statistics = QStringLiteral("1000000");
        for (const int each : rows) {
            statistics += u' ' + QString::number(each);
        }
        if (Texts(QStringLiteral("SELECT name FROM sqlite_master WHERE name = 'sqlite_stat1'")).isEmpty()) {
            Run(u"ANALYZE " + Quoted(table)); // makes the table of statistics
        }
        Run(u"INSERT INTO sqlite_stat1 (tbl, idx, stat) VALUES (" + CatalogLiteral(table) + u", " +
            CatalogLiteral(index) + u", " + CatalogLiteral(statistics) + u')');
        Run(QStringLiteral("ANALYZE sqlite_schema")); // reads it
    }

    /// SQLite has no switch for triggers: their text waits in a table of its own while they are off, so that it is
    /// not lost when the program ends in between.
    void SetTriggersEnabled(const QString& table, bool enabled) override {
        const bool isPart = sqlite3_get_autocommit(m_database.get()) == 0;
        Run(isPart ? QStringLiteral("SAVEPOINT triggers") : QStringLiteral("BEGIN IMMEDIATE"));
        try {
            enabled ? RestoreTriggers(table) : StoreTriggers(table);
            Run(isPart ? QStringLiteral("RELEASE triggers") : QStringLiteral("COMMIT"));
        } catch (const SqlError&) {
            if (sqlite3_get_autocommit(m_database.get()) == 0) { // else the engine has taken it back by itself
                Run(isPart ? QStringLiteral("ROLLBACK TO triggers") : QStringLiteral("ROLLBACK"));
                Run(isPart ? QStringLiteral("RELEASE triggers") : QString());
            }
            throw;
        }
    }

    bool TakeLock(const QString& name, const QString& holder) override { return Locks().Take(name, holder); }
    QString LockHolder(const QString& name) override { return Locks().Holder(name); }
    void ReleaseLock(const QString& name) noexcept override { Locks().Release(name); }

    QString RestartStatement(const QString& table) override {
        const QString numbers = QStringLiteral("sqlite_sequence"); // there once a table has an identity column
        return Texts(QStringLiteral("SELECT name FROM sqlite_master WHERE name = ") + CatalogLiteral(numbers)).isEmpty()
                   ? QString()
                   : QString("DELETE FROM " + numbers + " WHERE name = " + CatalogLiteral(table) + " COLLATE NOCASE");
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
            // Pages that many rows write, those of indexes above all, are carried over into the file less often.
            Run(QStringLiteral("PRAGMA wal_autocheckpoint = 4000"));
        }
    }

    /// Beside the database; a lock that SQLite itself keeps would end with each transaction.
    FileLocks& Locks() {
        if (!m_locks) {
            m_locks.emplace(QString::fromUtf8(sqlite3_db_filename(m_database.get(), "main")));
        }
        return *m_locks;
    }

    std::unique_ptr<Cursor> Rows(SqliteStatement statement) {
        return std::make_unique<SqliteCursor>(m_database.get(), std::move(statement));
    }

    qint64 Run(const SqliteStatement& prepared) {
        if (prepared == nullptr) {
            return 0;
        }
        const qint64 before = sqlite3_total_changes64(m_database.get());
        int code = sqlite3_step(prepared->handle);
        while (code == SQLITE_ROW) {
            code = sqlite3_step(prepared->handle);
        }
        if (code != SQLITE_DONE) {
            throw SqliteErrorOf(m_database.get(), prepared->source.Text());
        }
        if (sqlite3_stmt_readonly(prepared->handle) != 0) {
            return 0;
        }
        const qint64 all = sqlite3_total_changes64(m_database.get()) - before;
        const qint64 rows = sqlite3_changes64(m_database.get());
        m_ownChanges += std::min(all, rows); // what is no INSERT, UPDATE or DELETE leaves `rows` as it was
        return rows;
    }

    QStringList Texts(const QString& query) {
        QStringList texts;
        const auto cursor = Query(query);
        while (cursor->Next()) {
            texts.append(cursor->Value(0).toString());
        }
        return texts;
    }

    void StoreTriggers(const QString& table) {
        const QString where =
            QStringLiteral(" FROM sqlite_master WHERE type = 'trigger' AND tbl_name = %1 COLLATE NOCASE")
                .arg(CatalogLiteral(table));
        const QStringList names = Texts(QStringLiteral("SELECT name") + where);
        if (names.isEmpty()) {
            return;
        }
        Run(QStringLiteral("CREATE TABLE IF NOT EXISTS QDX_TRIGGERS_OFF (NAME TEXT PRIMARY KEY, TBL TEXT COLLATE "
                           "NOCASE, DDL TEXT)"));
        Run(QStringLiteral("INSERT OR REPLACE INTO QDX_TRIGGERS_OFF SELECT name, tbl_name, sql") + where);
        for (const QString& name : names) {
            Run(QStringLiteral("DROP TRIGGER ") + Quoted(name));
        }
    }

    /// Whoever may write the table may write any text there: what makes no trigger of that name on that table is not
    /// run.
    void RestoreTriggers(const QString& table) {
        if (Columns(QStringLiteral("QDX_TRIGGERS_OFF")).isEmpty()) {
            return;
        }
        const QString where = QStringLiteral(" FROM QDX_TRIGGERS_OFF WHERE TBL = %1").arg(CatalogLiteral(table));
        const QStringList names = Texts(QStringLiteral("SELECT NAME") + where + QStringLiteral(" ORDER BY rowid"));
        const QStringList texts = Texts(QStringLiteral("SELECT DDL") + where + QStringLiteral(" ORDER BY rowid"));
        for (qsizetype i = 0; i < names.size(); ++i) {
            if (!IsTriggerText(texts.at(i), names.at(i), table)) {
                throw SqlError({}, QStringLiteral("tabella QDX_TRIGGERS_OFF, NAME '%1': il testo non crea quel trigger "
                                                  "su '%2' e non viene eseguito; verificare la riga e toglierla")
                                       .arg(names.at(i), table));
            }
            Run(texts.at(i));
        }
        Run(QStringLiteral("DELETE") + where);
        DropEmptyTable();
    }

    /// While a query is being read no table can be dropped: the next time will do.
    void DropEmptyTable() {
        if (Texts(QStringLiteral("SELECT NAME FROM QDX_TRIGGERS_OFF LIMIT 1")).isEmpty()) {
            try {
                Run(QStringLiteral("DROP TABLE QDX_TRIGGERS_OFF"));
            } catch (const SqlError&) {
                return;
            }
        }
    }

    Database m_database;
    std::shared_ptr<SqliteStatements> m_statements; ///< goes before the database
    bool m_marked = false;
    qint64 m_version = 0; ///< of the data, as the transaction under way found it: changes with what others write
    /// Rows that statements themselves have changed; others are changed by triggers and foreign keys, and by a
    /// statement that fails half-way or gives rows.
    qint64 m_ownChanges = 0;
    std::optional<FileLocks> m_locks;
};

} // namespace

std::unique_ptr<Engine> OpenSqlite(const QString& file, bool readOnly) {
    return std::make_unique<SqliteEngine>(file, readOnly);
}

std::unique_ptr<Engine> AdoptSqlite(sqlite3* database) { return std::make_unique<SqliteEngine>(Database(database)); }
