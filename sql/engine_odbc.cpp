#include "sql/mySqlCatalog.h"
#include "sql/odbcConnection.h"
#include "sql/odbcCursor.h"
#include "sql/odbcText.h"
#include "sql/spoolingCursor.h"

#include <QSqlDriver>
#include <QSqlField>
#include <QSqlRecord>

namespace {

class OdbcEngine final : public Engine {
public:
    OdbcEngine(const QString& text, Dialect dialect)
        : m_dialect(dialect),
          m_connection(std::make_shared<OdbcConnection>(text)) {
        // A driver may call its server by a name that Qt does not know, as MariaDB's does.
        m_dbms = dialect == Dialect::MySql ? QSqlDriver::MySqlServer : m_connection->Database().driver()->dbmsType();
        SetSession();
    }

    Dialect TextDialect() const override { return m_dialect; }

    qint64 Run(const QString& statement) override {
        const QSqlQuery query = Executed(statement);
        return query.isSelect() ? 0 : qMax(0, query.numRowsAffected());
    }

    std::unique_ptr<Cursor> Query(const QString& statement) override {
        auto rows = std::make_unique<OdbcCursor>(m_connection, Executed(statement), statement);
        return std::make_unique<SpoolingCursor>(std::move(rows), m_line, statement);
    }

    void Begin() override {
        m_line->Free();
        ReopenLost();
        Check(m_connection->Database().transaction(), "BEGIN TRANSACTION");
        m_inTransaction = true;
    }
    void Commit() override {
        m_line->Free();
        Check(m_connection->Database().commit(), "COMMIT");
        m_inTransaction = false;
    }
    void RollBack() override {
        m_line->Free();
        m_inTransaction = false;
        Check(m_lost || m_connection->Database().rollback(), "ROLLBACK");
    }
    /// The rows under way end; a statement that the driver is running is not taken back from it.
    void Interrupt() noexcept override { m_connection->Interrupted = true; }

    qint64 LastInsertId() override {
        const bool mySql = m_dbms == QSqlDriver::MySqlServer;
        return Number(mySql ? QStringLiteral("SELECT LAST_INSERT_ID()") : QStringLiteral("SELECT @@IDENTITY"));
    }

    QStringList Tables() override {
        m_line->Free();
        return m_connection->Database().tables(QSql::Tables) + m_connection->Database().tables(QSql::Views);
    }

    QVector<ColumnInfo> Columns(const QString& table) override {
        if (m_dbms == QSqlDriver::MySqlServer) {
            return MySqlColumns(*this, table);
        }
        m_line->Free();
        QVector<ColumnInfo> columns;
        const QSqlRecord record = m_connection->Database().record(table);
        for (int column = 0; column < record.count(); ++column) {
            columns.append({record.fieldName(column), TypeText(record.field(column))});
        }
        return columns;
    }

    void SetTriggersEnabled(const QString& table, bool enabled) override {
        const QString word = enabled ? QStringLiteral(" ENABLE ") : QStringLiteral(" DISABLE ");
        if (m_dbms == QSqlDriver::MySqlServer) {
            SwitchMySqlTriggers(*this, table, enabled);
        } else if (m_dbms == QSqlDriver::MSSqlServer) {
            Run(QStringLiteral("ALTER TABLE ") + table + word + QStringLiteral("TRIGGER ALL"));
        } else if (m_dbms == QSqlDriver::Oracle) {
            Run(QStringLiteral("ALTER TABLE ") + table + word + QStringLiteral("ALL TRIGGERS"));
        }
    }

private:
    void SetSession() {
        if (m_dbms == QSqlDriver::MySqlServer) {
            Run(QStringLiteral("SET SESSION sql_mode = 'STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,ANSI_QUOTES'"));
        }
    }

    /// A connection that fell is opened again, unless a transaction went with it.
    void ReopenLost() {
        if (m_lost && !m_inTransaction) {
            m_connection->Reopen();
            m_lost = false;
            SetSession();
        }
    }

    void Check(bool done, const char* statement) const {
        if (!done) {
            throw OdbcError(m_connection->Database().lastError(), QString::fromLatin1(statement));
        }
    }

    QSqlQuery Executed(const QString& statement) {
        m_line->Free();
        ReopenLost();
        m_connection->Interrupted = false;
        QSqlQuery query(m_connection->Database());
        query.setForwardOnly(true);
        if (!query.exec(statement)) {
            m_lost = m_lost || IsLost(query.lastError());
            throw OdbcError(query.lastError(), statement);
        }
        return query;
    }

    qint64 Number(const QString& query) {
        const auto rows = Query(query);
        return rows->Next() ? rows->Value(0).toLongLong() : 0;
    }

    /// The type in the words of SQL Server: ODBC gives its kind, not the database's own text.
    static QString TypeText(const QSqlField& field) {
        switch (field.metaType().id()) {
        case QMetaType::Bool:
            return QStringLiteral("BIT");
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Short:
            return QStringLiteral("INT");
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
            return QStringLiteral("BIGINT");
        case QMetaType::Double:
            return QStringLiteral("FLOAT");
        case QMetaType::QDate:
        case QMetaType::QDateTime:
            return QStringLiteral("DATETIME");
        case QMetaType::QByteArray:
            return QStringLiteral("IMAGE");
        default:
            return QStringLiteral("NVARCHAR(%1)").arg(field.length());
        }
    }

    Dialect m_dialect;
    std::shared_ptr<OdbcConnection> m_connection;
    std::shared_ptr<ResultLine> m_line = std::make_shared<ResultLine>();
    bool m_lost = false;
    bool m_inTransaction = false;
    QSqlDriver::DbmsType m_dbms = QSqlDriver::UnknownDbms;
};

} // namespace

std::unique_ptr<Engine> OpenOdbc(const ConnectionSettings& settings, Provider provider) {
    const bool mySql = provider == Provider::MySql;
    const bool sqlServer = provider == Provider::SqlServer;
    return std::make_unique<OdbcEngine>(odbc::ConnectionText(settings, provider), mySql       ? Dialect::MySql
                                                                                  : sqlServer ? Dialect::SqlServer
                                                                                              : Dialect::Other);
}
