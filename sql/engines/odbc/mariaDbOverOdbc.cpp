#include "sql/engines/odbc/mariaDbOverOdbc.h"

#include "sql/engines/lineText.h"
#include "sql/engines/mysql/mySqlCatalog.h"
#include "sql/engines/mysql/mySqlRights.h"
#include "sql/engines/mysql/mySqlSession.h"
#include "sql/engines/mysql/mySqlShape.h"
#include "sql/engines/mysql/mySqlTriggers.h"
#include "sql/engines/odbc/odbcEncryption.h"
#include "sql/engines/odbc/odbcPortions.h"
#include "sql/engines/odbc/odbcText.h"
#include "sql/text/dialect.h"

MariaDbOverOdbc::MariaDbOverOdbc(std::shared_ptr<OdbcConnection> connection, Dialect dialect)
    : OdbcEngine(std::move(connection), odbc::Dbms::MySql, dialect),
      m_prepared(Connection(), [this](const QString& table) { return MySqlIdentityColumn(*this, table); }) {
    SetSession();
}

/// A server that cannot tell is one without.
bool MariaDbOverOdbc::IsEncrypted() {
    try {
        const auto status = OdbcEngine::Query(QStringLiteral("SHOW SESSION STATUS LIKE 'Ssl_cipher'"));
        return status->Next() && !status->Value(1).toString().isEmpty();
    } catch (const SqlError&) {
        return false;
    }
}

QString MariaDbOverOdbc::LineWarning() {
    const QString server = ServerName();
    return line::StaysHere(server) || IsEncrypted() ? QString() : line::NotEncrypted(server);
}

/// The driver goes on without encryption where the server offers none, unless it is to verify the server.
void MariaDbOverOdbc::SetSession() {
    if (odbc::AsksMySqlForEncryption(odbc::ReadParts(Connection()->ConnectionText())) && !IsEncrypted()) {
        SqlError error({}, QString::fromUtf8(line::OffersNoEncryption));
        error.AddContext(odbc::PlaceOf(Connection()->ConnectionText()));
        throw error;
    }
    Run(QLatin1String(MySqlSession));
    if (Connection()->IsReadOnly()) {
        Run(QLatin1String(MySqlReadOnly));
    }
    Connection()->TryUtf8(QStringLiteral("SELECT CONCAT('a', CHAR(0 USING utf8mb4), CHAR(0xF09F94A9 USING utf8mb4))"));
}

void MariaDbOverOdbc::Reopened() {
    m_prepared.Clear();
    SetSession();
}

qint64 MariaDbOverOdbc::Run(const StatementShape& statement) {
    MakeReady();
    if (KeepsPrepared(statement)) {
        if (const auto rows = m_prepared.Run(statement)) {
            return *rows;
        }
    }
    return RunUnprepared(statement.Text())->RowsChanged();
}

/// A result that the driver has cut is closed before the server puts its rows aside: the line carries one at a time.
std::unique_ptr<Cursor> MariaDbOverOdbc::Query(const StatementShape& statement) {
    MakeReady();
    const auto text = [statement] { return statement.Text(); };
    auto ran = KeepsPrepared(statement) ? m_prepared.Query(statement) : OdbcPrepared::Result();
    if (ran.isCut) {
        ran.rows->Close();
        ran.rows.reset();
        if (auto portions = InPortions(text())) {
            return portions;
        }
    }
    return RowsOf(ran.rows != nullptr ? std::move(ran.rows) : RunUnprepared(text()), text);
}

qint64 MariaDbOverOdbc::LastInsertId() {
    const auto known = m_prepared.LastInsertId();
    return known ? *known : Number(odbc::WordsOf(odbc::Dbms::MySql).identity);
}

/// The driver does not look for what an INSERT of 32 KiB or more returns, and falls out of step with the server.
qsizetype MariaDbOverOdbc::LongestInsert() {
    constexpr qsizetype longest = qsizetype(30) * 1024;
    return TextDialect() == Dialect::MySql && IsMySqlReturning(*this) ? longest : 0;
}

bool MariaDbOverOdbc::KeepsItsView() { return KeepsMySqlView(*this); }

QVector<ColumnInfo> MariaDbOverOdbc::Columns(const QString& table) { return MySqlColumns(*this, table); }

QVector<ColumnBounds> MariaDbOverOdbc::Bounds(const QString& table) { return MySqlBounds(*this, table); }

void MariaDbOverOdbc::SetTriggersEnabled(const QString& table, bool enabled) {
    SwitchMySqlTriggers(*this, table, enabled, InTransaction());
}

QStringList MariaDbOverOdbc::TriggerObstacles(const QString& table) {
    return MySqlTriggerObstacles(*this, table, InTransaction());
}

bool MariaDbOverOdbc::SeesTriggers(const QString& table) { return SeesMySqlTriggers(*this, table); }

QStringList MariaDbOverOdbc::LackingRights(const QString& table, const QString& column, bool writes) {
    return mySqlRights::Lacking(*this, table, column, writes);
}

/// Whether statements are run prepared; what is prepared is forgotten when the statement may change tables.
bool MariaDbOverOdbc::KeepsPrepared(const StatementShape& statement) {
    if (TextDialect() != Dialect::MySql) {
        return false;
    }
    if (statement.verb == StatementShape::Verb::Other && !mySqlShape::KeepsTables(statement.Text())) {
        m_prepared.Clear();
    }
    return true;
}

/// The server has to be asked for the identity value of what runs as a text.
std::shared_ptr<OdbcStatement> MariaDbOverOdbc::RunUnprepared(const QString& statement) {
    auto ran = RunText(statement);
    m_prepared.ForgetLastInsertId();
    return ran;
}

/// The rows of a query that the driver should not hold whole; null when the server may not put them aside. They are
/// numbered there, which would be the identity value given last: it is asked for before.
std::unique_ptr<Cursor> MariaDbOverOdbc::InPortions(const QString& statement) {
    constexpr QLatin1String Interrupted("1317");
    m_prepared.SetLastInsertId(LastInsertId());
    try {
        return std::make_unique<OdbcPortions>(Connection(), dialect::Adapt(statement, TextDialect()), statement);
    } catch (const SqlError& error) {
        if (Connection()->Lost() || error.EngineCode() == Interrupted) {
            throw;
        }
        return nullptr;
    }
}
