#include "sql/engines/odbc/odbcEngine.h"

#include "sql/engines/lineText.h"
#include "sql/engines/mysql/mySqlSignOn.h"
#include "sql/engines/odbc/mariaDbOverOdbc.h"
#include "sql/engines/odbc/odbcBounds.h"
#include "sql/engines/odbc/odbcCursor.h"
#include "sql/engines/odbc/odbcEncryption.h"
#include "sql/engines/odbc/odbcText.h"
#include "sql/text/dialect.h"
#include "sql/text/writtenParts.h"

#include <QCryptographicHash>
#include <QDir>

namespace {

/// Where the locks stand of a database that has none itself: they serve on this machine alone.
QString MachineLocks(const OdbcConnection& connection) {
    const QString database = connection.Info(SQL_SERVER_NAME) + u'\n' + connection.Info(SQL_DATABASE_NAME);
    const QByteArray hash = QCryptographicHash::hash(database.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QDir::temp().filePath(QStringLiteral("quadrix-") + QString::fromLatin1(hash));
}

} // namespace

OdbcEngine::OdbcEngine(std::shared_ptr<OdbcConnection> connection, odbc::Dbms dbms, Dialect dialect)
    : m_connection(std::move(connection)),
      m_dbms(dbms),
      m_dialect(dialect),
      m_locks(*this, odbc::LocksOf(dbms)),
      m_rowLocks(odbc::LocksOf(dbms).makeNotes),
      m_machineLocks(MachineLocks(*m_connection)) {}

qint64 OdbcEngine::Run(const QString& statement) {
    MakeReady();
    const QString identity = odbc::WordsOf(m_dbms).withInsert;
    if (!NoticeInsert(statement) || identity.isEmpty()) {
        return RunText(statement)->RowsChanged();
    }
    OdbcStatement ran(m_connection);
    ran.Run(dialect::Adapt(statement, m_dialect) + QStringLiteral("; ") + identity, statement);
    const qint64 rows = ran.RowsChanged();
    // Triggers may have given results before it.
    while (ran.NextResult()) {
        m_identity = ran.Fetch() ? ran.Value(0).toLongLong() : m_identity;
    }
    return rows;
}

/// Whether it is an INSERT, which gives another identity value or none.
bool OdbcEngine::NoticeInsert(const QString& statement) {
    const bool isInsert = StatementShape::VerbOf(statement.toUtf8()) == StatementShape::Verb::Insert;
    m_identity = isInsert ? 0 : m_identity;
    if (isInsert && m_dbms == odbc::Dbms::Oracle) {
        m_inserted = writtenParts::TableName(statement);
    }
    return isInsert;
}

std::unique_ptr<Cursor> OdbcEngine::Query(const QString& statement) {
    MakeReady();
    NoticeInsert(statement);
    return RowsOf(RunText(statement), [statement] { return statement; });
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

/// A database that cannot tell is taken to have ended it: what is done again does no harm.
bool OdbcEngine::TransactionStands(bool afterFailure) {
    if (m_connection->Lost() || !m_inTransaction) {
        return false;
    }
    const QString stands = odbc::WordsOf(m_dbms).stands;
    try {
        return !afterFailure || stands.isEmpty() || Number(stands) == 1;
    } catch (const SqlError&) {
        return false;
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

qint64 OdbcEngine::LastInsertId() {
    const odbc::DbmsWords words = odbc::WordsOf(m_dbms);
    if (!words.sequence.isEmpty()) {
        return m_inserted.isEmpty() ? 0 : CurrentOfSequence(words);
    }
    return words.withInsert.isEmpty() ? Number(words.identity) : m_identity;
}

/// Raises `SqlError` for a table that nothing numbers.
qint64 OdbcEngine::CurrentOfSequence(const odbc::DbmsWords& words) {
    QString& sequence = m_sequences[m_inserted];
    if (sequence.isEmpty()) {
        const QString query = words.sequence.arg(m_inserted);
        const auto names = Query(query);
        while (names->Next()) {
            sequence = names->Value(0).toString();
        }
        if (sequence.isEmpty()) {
            throw SqlError(query,
                           QStringLiteral("la tabella '%1' non ha una colonna che il database numera").arg(m_inserted));
        }
    }
    return Number(words.current.arg(sequence));
}

QStringList OdbcEngine::Tables() {
    m_line->Free();
    return odbc::Tables(m_connection);
}

QVector<ColumnInfo> OdbcEngine::Columns(const QString& table) {
    m_line->Free();
    return odbc::Columns(m_connection, table);
}

QVector<ColumnBounds> OdbcEngine::Bounds(const QString& table) {
    const QString query = odbc::BoundsQuery(m_dbms, table);
    return query.isEmpty() ? QVector<ColumnBounds>() : odbc::BoundsFrom(*Query(query));
}

void OdbcEngine::SetTriggersEnabled(const QString& table, bool enabled) {
    const QString statement = odbc::WordsOf(m_dbms).triggers;
    if (!statement.isEmpty()) {
        Run(statement.arg(table, enabled ? QStringLiteral("ENABLE") : QStringLiteral("DISABLE")));
    }
}

QStringList OdbcEngine::LackingRights(const QString& table, const QString& /*column*/, bool writes) {
    QStringList lacking;
    for (const odbc::RightQuery& each : odbc::RightQueries(m_dbms, table, writes)) {
        const auto answer = Query(each.query);
        if (answer->Next() && answer->Value(0) == 0) { // Null: there is no such table, which is told elsewhere
            lacking.append(QStringLiteral("diritto %1 sulla tabella '%2' (GRANT %1 ON [%2] TO l'utente del database)")
                               .arg(each.right, table));
        }
    }
    return lacking;
}

bool OdbcEngine::TakeLock(const QString& name, const QString& holder) {
    if (!m_locks.AreThere()) {
        return m_machineLocks.Take(name, holder);
    }
    try {
        return m_locks.Take(name, m_inTransaction ? QString() : holder);
    } catch (const SqlError&) {
        if (m_dbms != odbc::Dbms::Oracle) { // which gives its locks to those alone who may use DBMS_LOCK
            throw;
        }
    }
    try {
        return m_rowLocks.Take(m_connection->Another(), name, m_locks.Name(name), holder);
    } catch (const SqlError&) { // the user may make no table either
        return m_machineLocks.Take(name, holder);
    }
}

QString OdbcEngine::LockHolder(const QString& name) {
    const QString holder = m_locks.AreThere() ? m_locks.Holder(name) : QString();
    return holder.isEmpty() ? m_machineLocks.Holder(name) : holder;
}

void OdbcEngine::ReleaseLock(const QString& name) noexcept {
    m_locks.Release(name);
    m_rowLocks.Release(name);
    m_machineLocks.Release(name);
}

void OdbcEngine::MakeReady() {
    m_line->Free();
    m_connection->NoticeEnd();
    if (m_connection->Lost() && !m_inTransaction) {
        m_connection->Reopen();
        Reopened();
        m_locks.ConnectionFell();
    }
    m_locks.TakeAgain();
    m_rowLocks.Check();
    m_connection->TakeInterruption();
}

std::shared_ptr<OdbcStatement> OdbcEngine::RunText(const QString& statement) {
    auto ran = std::make_shared<OdbcStatement>(m_connection);
    ran->Run(dialect::Adapt(statement, m_dialect), statement);
    return ran;
}

std::unique_ptr<Cursor> OdbcEngine::RowsOf(std::shared_ptr<OdbcStatement> ran,
                                           const std::function<QString()>& statement) {
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
