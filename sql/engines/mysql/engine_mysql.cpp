#include "sql/engine.h"
#include "sql/engines/keptStatements.h"
#include "sql/engines/mysql/mySqlCatalog.h"
#include "sql/engines/mysql/mySqlCursor.h"
#include "sql/engines/mysql/mySqlLocks.h"
#include "sql/engines/mysql/mySqlPreparedCursor.h"
#include "sql/engines/mysql/mySqlRights.h"
#include "sql/engines/mysql/mySqlShape.h"
#include "sql/engines/mysql/mySqlTriggers.h"
#include "sql/engines/spoolingCursor.h"
#include "sql/errors.h"
#include "sql/text/dialect.h"

namespace {

class MySqlEngine final : public Engine {
public:
    explicit MySqlEngine(const ConnectionSettings& settings)
        : m_connection(std::make_shared<MySqlConnection>(settings)) {
        m_connection->Open();
    }

    Dialect TextDialect() const override { return Dialect::MySql; }
    bool AdaptsText() const override { return true; }

    qint64 Run(const QString& statement) override { return Run(StatementShape::Of(statement.toUtf8())); }
    qint64 RunApart(const SqlText& statement) override { return Run(statement.Shape()); }

    std::unique_ptr<Cursor> Query(const QString& statement) override {
        return Query(StatementShape::Of(statement.toUtf8()));
    }
    std::unique_ptr<Cursor> QueryApart(const SqlText& statement) override { return Query(statement.Shape()); }

    void Begin() override {
        Run(QStringLiteral("START TRANSACTION"));
        m_inTransaction = true;
    }
    void Commit() override {
        Run(QStringLiteral("COMMIT"));
        m_inTransaction = false;
    }
    void RollBack() override {
        m_inTransaction = false;
        if (!m_connection->Lost()) {
            Run(QStringLiteral("ROLLBACK"));
        }
    }
    bool TransactionStands(bool afterFailure) override {
        m_line->Free();
        return m_connection->HasTransaction(afterFailure);
    }
    void SetMark() override { Run(QStringLiteral("SAVEPOINT QDX_ROW")); }
    void RollBackToMark() override { Run(QStringLiteral("ROLLBACK TO SAVEPOINT QDX_ROW")); }
    void Interrupt() noexcept override { m_connection->Kill(); }
    QString LineWarning() override { return m_connection->LineWarning(); }
    qint64 LastInsertId() override { return m_lastInsertId; }

    QStringList Tables() override {
        QStringList names;
        const auto rows = Query(QStringLiteral("SHOW TABLES"));
        while (rows->Next()) {
            names.append(rows->Value(0).toString());
        }
        return names;
    }

    QVector<ColumnInfo> Columns(const QString& table) override { return MySqlColumns(*this, table); }
    QVector<ColumnBounds> Bounds(const QString& table) override { return MySqlBounds(*this, table); }
    /// A quarter of what the oldest servers take unless they are set to less.
    qsizetype LongestInsert() override { return IsMySqlReturning(*this) ? 256 * 1024 : 0; }
    bool KeepsItsView() override { return KeepsMySqlView(*this); }

    void SetTriggersEnabled(const QString& table, bool enabled) override {
        SwitchMySqlTriggers(*this, table, enabled, m_inTransaction);
    }
    QStringList TriggerObstacles(const QString& table) override {
        return MySqlTriggerObstacles(*this, table, m_inTransaction);
    }
    bool SeesTriggers(const QString& table) override { return SeesMySqlTriggers(*this, table); }
    QStringList LackingRights(const QString& table, const QString& column, bool writes) override {
        return mySqlRights::Lacking(*this, table, column, writes);
    }

    bool TakeLock(const QString& name, const QString& holder) override {
        return m_locks.Take(name, m_inTransaction ? QString() : holder);
    }
    QString LockHolder(const QString& name) override { return m_locks.Holder(name); }
    void ReleaseLock(const QString& name) noexcept override { m_locks.Release(name); }

private:
    qint64 Run(const StatementShape& statement) {
        if (const auto prepared = RunPrepared(statement)) {
            prepared->Close();
            return m_rows;
        }
        const QString text = statement.Text();
        Send(text);
        MySqlCursor rows(m_connection, m_connection->Result(text), text);
        while (rows.Next()) {
        }
        return m_rows;
    }

    std::unique_ptr<Cursor> Query(const StatementShape& statement) {
        std::unique_ptr<Cursor> rows;
        if (auto prepared = RunPrepared(statement)) {
            rows = std::make_unique<MySqlPreparedCursor>(std::move(prepared));
        } else {
            const QString text = statement.Text();
            Send(text);
            rows = std::make_unique<MySqlCursor>(m_connection, m_connection->Result(text), text);
        }
        return std::make_unique<SpoolingCursor>(std::move(rows), m_line, [statement] { return statement.Text(); });
    }

    /// Frees the line for the next statement. A connection that fell is opened again, unless a transaction went with
    /// it.
    void MakeReady(const StatementShape& statement) {
        m_line->Free();
        m_connection->NoticeEnd();
        if (m_connection->Lost()) {
            if (m_inTransaction) {
                throw m_connection->GoneError(statement.Text());
            }
            m_prepared.Clear();
            m_connection->Open();
            m_locks.ConnectionFell();
        }
        m_locks.TakeAgain();
    }

    void Send(const QString& statement) {
        m_connection->Send(dialect::Adapt(statement, Dialect::MySql));
        SetResult(m_connection->RowsChanged(), m_connection->InsertId());
    }

    void SetResult(qint64 rows, qint64 id) {
        m_rows = rows;
        if (id != 0) {
            m_lastInsertId = id;
        }
    }

    /// Runs a statement that may come again with other values; null when it is none, and has not run.
    std::shared_ptr<MySqlStatement> RunPrepared(const StatementShape& statement) {
        MakeReady(statement);
        if (statement.verb == StatementShape::Verb::Other && !mySqlShape::KeepsTables(statement.Text())) {
            m_prepared.Clear(); // the columns of results may change
        }
        const StatementShape source = mySqlShape::Of(statement);
        auto prepared =
            source.isCommon ? m_prepared.Take(source.shape, [&] { return Prepared(source, statement); }) : nullptr;
        if (prepared == nullptr) {
            return nullptr;
        }
        if (!prepared->Run(source.values, statement)) {
            m_prepared.Clear();
            return nullptr;
        }
        SetResult(prepared->RowsChanged(), prepared->InsertId());
        return prepared;
    }

    std::shared_ptr<MySqlStatement> Prepared(const StatementShape& source, const StatementShape& written) {
        auto statement = std::make_shared<MySqlStatement>(m_connection);
        const bool isPrepared =
            statement->Prepare(mySqlShape::Text(source).toUtf8(), source.values.size(), written.Text());
        return isPrepared ? statement : nullptr;
    }

    std::shared_ptr<MySqlConnection> m_connection;
    KeptStatements<MySqlStatement> m_prepared;
    std::shared_ptr<ResultLine> m_line = std::make_shared<ResultLine>();
    ServerLocks m_locks{*this, MySqlLocks()};
    qint64 m_rows = 0;
    qint64 m_lastInsertId = 0;
    bool m_inTransaction = false;
};

} // namespace

std::unique_ptr<Engine> OpenMySql(const ConnectionSettings& settings) {
    return std::make_unique<MySqlEngine>(settings);
}
