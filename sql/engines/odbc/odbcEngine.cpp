#include "sql/engines/odbc/odbcEngine.h"

#include "sql/engines/lineText.h"
#include "sql/engines/mysql/mySqlSignOn.h"
#include "sql/engines/odbc/mariaDbOverOdbc.h"
#include "sql/engines/odbc/odbcCursor.h"
#include "sql/engines/odbc/odbcEncryption.h"
#include "sql/engines/odbc/odbcText.h"
#include "sql/text/dialect.h"

qint64 OdbcEngine::Run(const QString& statement) {
    MakeReady();
    return RunText(statement)->RowsChanged();
}

std::unique_ptr<Cursor> OdbcEngine::Query(const QString& statement) {
    MakeReady();
    return RowsOf(RunText(statement), statement);
}

void OdbcEngine::Begin() {
    MakeReady();
    m_connection->SetTransaction(true);
    m_inTransaction = true;
}

void OdbcEngine::Commit() {
    m_line->Free();
    m_connection->EndTransaction(true);
    m_inTransaction = false;
}

void OdbcEngine::RollBack() {
    m_line->Free();
    m_inTransaction = false;
    if (!m_connection->Lost()) {
        m_connection->EndTransaction(false);
    }
}

QString OdbcEngine::ServerName() const {
    const QString written =
        odbc::Find(odbc::ReadParts(m_connection->ConnectionText()), QLatin1String("SERVER")).value_or(QString());
    return written.isEmpty() ? m_connection->Info(SQL_SERVER_NAME) : written;
}

QString OdbcEngine::LineWarning() {
    const odbc::Parts parts = odbc::ReadParts(m_connection->ConnectionText());
    const QString driver = odbc::DriverOf(parts);
    const QString server = ServerName();
    const bool isSafe = line::StaysHere(server) || odbc::AsksForEncryption(parts, driver);
    return m_dbms != odbc::Dbms::SqlServer || isSafe ? QString() : line::NotAskedFor(server);
}

qint64 OdbcEngine::LastInsertId() { return Number(odbc::WordsOf(m_dbms).identity); }

QStringList OdbcEngine::Tables() {
    m_line->Free();
    return odbc::Tables(m_connection);
}

QVector<ColumnInfo> OdbcEngine::Columns(const QString& table) {
    m_line->Free();
    return odbc::Columns(m_connection, table);
}

void OdbcEngine::SetTriggersEnabled(const QString& table, bool enabled) {
    const QString statement = odbc::WordsOf(m_dbms).triggers;
    if (!statement.isEmpty()) {
        Run(statement.arg(table, enabled ? QStringLiteral("ENABLE") : QStringLiteral("DISABLE")));
    }
}

void OdbcEngine::MakeReady() {
    m_line->Free();
    m_connection->NoticeEnd();
    if (m_connection->Lost() && !m_inTransaction) {
        m_connection->Reopen();
        Reopened();
    }
    m_connection->TakeInterruption();
}

std::shared_ptr<OdbcStatement> OdbcEngine::RunText(const QString& statement) {
    auto ran = std::make_shared<OdbcStatement>(m_connection);
    ran->Run(dialect::Adapt(statement, m_dialect), statement);
    return ran;
}

std::unique_ptr<Cursor> OdbcEngine::RowsOf(std::shared_ptr<OdbcStatement> ran, const QString& statement) {
    auto rows = std::make_unique<OdbcCursor>(m_connection, std::move(ran), statement);
    return std::make_unique<SpoolingCursor>(std::move(rows), m_line, statement);
}

qint64 OdbcEngine::Number(const QString& query) {
    const auto rows = Query(query);
    return rows->Next() ? rows->Value(0).toLongLong() : 0;
}

std::unique_ptr<Engine> OpenOdbc(const ConnectionSettings& settings, Provider provider) {
    GuardMySqlPasswords();
    const bool sqlServer = provider == Provider::SqlServer;
    const Dialect dialect = provider == Provider::MySql ? Dialect::MySql
                            : sqlServer                 ? Dialect::SqlServer
                                                        : Dialect::Other;
    auto connection = std::make_shared<OdbcConnection>(odbc::ConnectionText(settings, provider), settings.readOnly);
    const odbc::Dbms dbms = dialect == Dialect::MySql ? odbc::Dbms::MySql : odbc::DbmsOf(*connection);
    if (dbms == odbc::Dbms::MySql) {
        return std::make_unique<MariaDbOverOdbc>(std::move(connection), dialect);
    }
    return std::make_unique<OdbcEngine>(std::move(connection), dbms, dialect);
}
