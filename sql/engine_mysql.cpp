#include "sql/engine.h"
#include "sql/errors.h"
#include "sql/mySqlCatalog.h"
#include "sql/mySqlCursor.h"
#include "sql/spoolingCursor.h"

namespace {

class MySqlEngine final : public Engine {
public:
    explicit MySqlEngine(const ConnectionSettings& settings)
        : m_connection(std::make_shared<MySqlConnection>(settings)) {
        m_connection->Open();
    }

    Dialect TextDialect() const override { return Dialect::MySql; }

    qint64 Run(const QString& statement) override {
        Send(statement);
        MySqlCursor rows(m_connection, m_connection->Result(statement), statement);
        while (rows.Next()) {
        }
        return m_rows;
    }

    std::unique_ptr<Cursor> Query(const QString& statement) override {
        Send(statement);
        auto rows = std::make_unique<MySqlCursor>(m_connection, m_connection->Result(statement), statement);
        return std::make_unique<SpoolingCursor>(std::move(rows), m_line, statement);
    }

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
    void Interrupt() noexcept override { m_connection->Kill(); }
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

    void SetTriggersEnabled(const QString& table, bool enabled) override { SwitchMySqlTriggers(*this, table, enabled); }

private:
    /// A connection that fell is opened again, unless a transaction went with it.
    void Send(const QString& statement) {
        m_line->Free();
        if (m_connection->Lost() && !m_inTransaction) {
            m_connection->Open();
        }
        m_connection->Send(statement);
        m_rows = m_connection->RowsChanged();
        if (const qint64 id = m_connection->InsertId(); id != 0) {
            m_lastInsertId = id;
        }
    }

    std::shared_ptr<MySqlConnection> m_connection;
    std::shared_ptr<ResultLine> m_line = std::make_shared<ResultLine>();
    qint64 m_rows = 0;
    qint64 m_lastInsertId = 0;
    bool m_inTransaction = false;
};

} // namespace

std::unique_ptr<Engine> OpenMySql(const ConnectionSettings& settings) {
    return std::make_unique<MySqlEngine>(settings);
}
