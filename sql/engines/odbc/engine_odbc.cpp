#include "sql/engines/mysql/mySqlCatalog.h"
#include "sql/engines/mysql/mySqlSession.h"
#include "sql/engines/mysql/mySqlShape.h"
#include "sql/engines/odbc/odbcCatalog.h"
#include "sql/engines/odbc/odbcCursor.h"
#include "sql/engines/odbc/odbcPortions.h"
#include "sql/engines/odbc/odbcPrepared.h"
#include "sql/engines/odbc/odbcText.h"
#include "sql/engines/spoolingCursor.h"
#include "sql/text/dialect.h"

namespace {

class OdbcEngine final : public Engine {
public:
    OdbcEngine(const QString& text, Dialect dialect)
        : m_dialect(dialect),
          m_connection(std::make_shared<OdbcConnection>(text)),
          m_dbms(dialect == Dialect::MySql ? Dbms::MySql : odbc::DbmsOf(*m_connection)),
          m_prepared(m_connection, [this](const QString& table) { return MySqlIdentityColumn(*this, table); }) {
        SetSession();
    }

    Dialect TextDialect() const override { return m_dialect; }
    bool AdaptsText() const override { return true; }

    qint64 Run(const QString& statement) override {
        MakeReady();
        if (KeepsPrepared(statement)) {
            if (const auto rows = m_prepared.Run(statement)) {
                return *rows;
            }
        }
        return RunText(statement)->RowsChanged();
    }

    std::unique_ptr<Cursor> Query(const QString& statement) override {
        MakeReady();
        auto ran = KeepsPrepared(statement) ? m_prepared.Query(statement) : OdbcPrepared::Result();
        if (ran.isCut) {
            ran.rows->Close();
            ran.rows.reset();
            if (auto portions = InPortions(statement)) {
                return portions;
            }
        }
        if (ran.rows == nullptr) {
            ran.rows = RunText(statement);
        }
        auto rows = std::make_unique<OdbcCursor>(m_connection, std::move(ran.rows), statement);
        return std::make_unique<SpoolingCursor>(std::move(rows), m_line, statement);
    }

    void Begin() override {
        MakeReady();
        m_connection->SetTransaction(true);
        m_inTransaction = true;
    }
    void Commit() override {
        m_line->Free();
        m_connection->EndTransaction(true);
        m_inTransaction = false;
    }
    void RollBack() override {
        m_line->Free();
        m_inTransaction = false;
        if (!m_connection->Lost()) {
            m_connection->EndTransaction(false);
        }
    }
    void Interrupt() noexcept override { m_connection->Interrupt(); }

    qint64 LastInsertId() override {
        if (m_dbms != Dbms::MySql) {
            return Number(QStringLiteral("SELECT @@IDENTITY"));
        }
        const auto known = m_prepared.LastInsertId();
        return known ? *known : Number(QStringLiteral("SELECT LAST_INSERT_ID()"));
    }

    QStringList Tables() override {
        m_line->Free();
        return odbc::Tables(m_connection);
    }

    QVector<ColumnInfo> Columns(const QString& table) override {
        if (m_dbms == Dbms::MySql) {
            return MySqlColumns(*this, table);
        }
        m_line->Free();
        return odbc::Columns(m_connection, table);
    }

    void SetTriggersEnabled(const QString& table, bool enabled) override {
        const QString word = enabled ? QStringLiteral(" ENABLE ") : QStringLiteral(" DISABLE ");
        if (m_dbms == Dbms::MySql) {
            SwitchMySqlTriggers(*this, table, enabled);
        } else if (m_dbms == Dbms::SqlServer) {
            Run(QStringLiteral("ALTER TABLE ") + table + word + QStringLiteral("TRIGGER ALL"));
        } else if (m_dbms == Dbms::Oracle) {
            Run(QStringLiteral("ALTER TABLE ") + table + word + QStringLiteral("ALL TRIGGERS"));
        }
    }

private:
    using Dbms = odbc::Dbms;

    void SetSession() {
        if (m_dbms == Dbms::MySql) {
            Run(QLatin1String(MySqlSession));
            m_connection->TryUtf8(
                QStringLiteral("SELECT CONCAT('a', CHAR(0 USING utf8mb4), CHAR(0xF09F94A9 USING utf8mb4))"));
        }
    }

    /// Frees the line for the next statement. A connection that fell is opened again, unless a transaction went with
    /// it.
    void MakeReady() {
        m_line->Free();
        m_connection->NoticeEnd();
        if (m_connection->Lost() && !m_inTransaction) {
            m_prepared.Clear();
            m_connection->Reopen();
            SetSession();
        }
        m_connection->TakeInterruption();
    }

    /// Whether statements are run prepared; what is prepared is forgotten when the statement may change tables.
    bool KeepsPrepared(const QString& statement) {
        if (m_dialect != Dialect::MySql) {
            return false;
        }
        if (!mySqlShape::KeepsTables(statement)) {
            m_prepared.Clear();
        }
        return true;
    }

    /// The rows of a query that the driver should not hold whole; null when the server may not put them aside.
    std::unique_ptr<Cursor> InPortions(const QString& statement) {
        constexpr QLatin1String Interrupted("1317");
        m_prepared.SetLastInsertId(LastInsertId()); // the rows put aside are numbered too
        try {
            return std::make_unique<OdbcPortions>(m_connection, dialect::Adapt(statement, m_dialect), statement);
        } catch (const SqlError& error) {
            if (m_connection->Lost() || error.EngineCode() == Interrupted) {
                throw;
            }
            return nullptr;
        }
    }

    std::shared_ptr<OdbcStatement> RunText(const QString& statement) {
        auto ran = std::make_shared<OdbcStatement>(m_connection);
        ran->Run(dialect::Adapt(statement, m_dialect), statement);
        m_prepared.ForgetLastInsertId();
        return ran;
    }

    qint64 Number(const QString& query) {
        const auto rows = Query(query);
        return rows->Next() ? rows->Value(0).toLongLong() : 0;
    }

    Dialect m_dialect;
    std::shared_ptr<OdbcConnection> m_connection;
    Dbms m_dbms;
    OdbcPrepared m_prepared;
    std::shared_ptr<ResultLine> m_line = std::make_shared<ResultLine>();
    bool m_inTransaction = false;
};

} // namespace

std::unique_ptr<Engine> OpenOdbc(const ConnectionSettings& settings, Provider provider) {
    const bool mySql = provider == Provider::MySql;
    const bool sqlServer = provider == Provider::SqlServer;
    return std::make_unique<OdbcEngine>(odbc::ConnectionText(settings, provider), mySql       ? Dialect::MySql
                                                                                  : sqlServer ? Dialect::SqlServer
                                                                                              : Dialect::Other);
}
