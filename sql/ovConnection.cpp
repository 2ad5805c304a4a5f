#include "sql/ovConnection.h"

#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "sql/text/dialect.h"

#include <QThread>

namespace {

const QString TruncateTable = QStringLiteral("TRUNCATE TABLE ");

const QString Commit = QStringLiteral("COMMIT");

bool IsQuery(const QString& statement) { return statement.trimmed().startsWith(u"SELECT", Qt::CaseInsensitive); }

bool IsTruncate(const QString& statement) { return statement.startsWith(TruncateTable, Qt::CaseInsensitive); }

/// Some engines end the transaction at a TRUNCATE; a DELETE can be taken back on all of them.
QString Revocable(const QString& statement) {
    return IsTruncate(statement) ? QString("DELETE FROM " + statement.mid(TruncateTable.size())) : statement;
}

} // namespace

ovConnection::~ovConnection() = default;

std::unique_ptr<Engine> ovConnection::OpenEngine() const {
    const ConnectionSettings settings{
        Server, DatabaseName, User,          Password, DSN, ConnectionString, NetworkCredential,
        Driver, SourceTables, LookupColumns, CodePage, Note};
    if (OpenFiles) {
        if (auto engine = OpenFiles(settings)) {
            return engine;
        }
    }
    if (Embedded) {
        return OpenSqlite(DatabaseName);
    }
    if (ProviderType == Provider::MySql && DSN.isEmpty() && ConnectionString.isEmpty()) {
        return OpenMySql(settings);
    }
    return OpenOdbc(settings, ProviderType);
}

void ovConnection::OpenConnection() {
    CloseConnection();
    m_engine = OpenEngine();
}

void ovConnection::CloseConnection() {
    m_engine.reset();
    m_inTransaction = false;
}

Engine& ovConnection::Opened(const QString& statement) const {
    if (m_engine == nullptr) {
        throw SqlError(statement, QStringLiteral("la connessione al database non è aperta"));
    }
    return *m_engine;
}

/// Whether a statement that failed may have been carried out, which the message then says. What only reads does no
/// harm, and a transaction that was open when the connection fell has been taken back by the server.
bool ovConnection::TellDoubt(SqlError& error, const QString& statement) const {
    const bool mayBeDone = error.AnswerLost() && !IsQuery(statement) && (!m_inTransaction || statement == Commit);
    if (mayBeDone) {
        error.AddAdvice(
            QStringLiteral("l'istruzione può essere stata eseguita lo stesso: verificare prima di ripeterla"));
    }
    return mayBeDone;
}

template<class Work>
auto ovConnection::WithDecision(const QString& statement, const Work& work) {
    for (int attempt = 1;; ++attempt) {
        try {
            return work();
        } catch (SqlError& error) {
            const bool mayBeDone = TellDoubt(error, statement);
            if (Errors == nullptr) {
                throw;
            }
            Errors->Decide(error, attempt, mayBeDone);
            WaitToPass(error, attempt);
        }
    }
}

/// Retries that follow each other at once use up the tries before a lock is let go or a server is back. An operator who
/// was asked has waited already.
void ovConnection::WaitToPass(const SqlError& error, int attempt) const {
    if (!error.MayPass() || Errors->Action != ErrorAction::Retry) {
        return;
    }
    constexpr int Growth = 3;
    int pause = RetryPause;
    for (int before = 1; before < attempt; ++before) {
        pause *= Growth;
    }
    QThread::msleep(static_cast<unsigned long>(pause));
}

qint64 ovConnection::Execute(const QString& statement) {
    return WithDecision(statement, [&] {
        Engine& engine = Opened(statement);
        Show(Written, statement);
        const dialect::TriggerSwitch triggers = dialect::ParseTriggerSwitch(statement);
        if (!triggers.table.isEmpty() && engine.TextDialect() != Dialect::SqlServer) {
            SetTriggersEnabled(triggers.table, triggers.enable);
            return qint64(0);
        }
        const qint64 rows = engine.Run(TextFor(engine, m_inTransaction ? Revocable(statement) : statement));
        if (IsTruncate(statement)) {
            RestartNumbers(engine, statement.mid(TruncateTable.size()).trimmed());
        }
        return rows;
    });
}

void ovConnection::RestartNumbers(Engine& engine, const QString& table) const {
    const QString restart = engine.RestartStatement(table);
    if (!restart.isEmpty()) {
        Show(Trace, restart);
        engine.Run(restart);
    }
}

Recordset ovConnection::ExecuteWC(const QString& query) {
    return WithDecision(query, [&] {
        Engine& engine = Opened(query);
        Show(Written, query);
        const auto run = [&](const QString& text) { return engine.Query(TextFor(engine, text)); };
        return Recordset(Layout ? Layout->Query(query, engine, run) : run(query), query);
    });
}

qint64 ovConnection::ExecuteCommand(const QString& query) {
    const Recordset rows = ExecuteWC(query);
    return rows.Eof() ? 0 : rows.Fields(0).Value().toLongLong();
}

void ovConnection::ExecuteScript(const QString& script) {
    for (const QString& statement : dialect::SplitScript(script)) {
        Execute(statement);
    }
}

QString ovConnection::TextFor(const Engine& engine, const QString& statement) const {
    if (!Trace && engine.AdaptsText()) {
        return statement;
    }
    QString text = dialect::Adapt(statement, engine.TextDialect());
    Show(Trace, text);
    return text;
}

void ovConnection::Show(const StatementObserver& observer, const QString& statement) {
    if (observer) {
        observer(statement);
    }
}

void ovConnection::BeginTrans() {
    const QString statement = QStringLiteral("BEGIN TRANSACTION");
    Engine& engine = Opened(statement);
    Show(Trace, engine.TextDialect() == Dialect::MySql ? QStringLiteral("BEGIN") : statement);
    engine.Begin();
    m_inTransaction = true;
}

void ovConnection::CommitTrans() {
    if (m_inTransaction) {
        Show(Trace, Commit);
        try {
            Opened(Commit).Commit();
        } catch (SqlError& error) {
            TellDoubt(error, Commit);
            throw;
        }
        m_inTransaction = false;
    }
}

void ovConnection::RollbackTrans() {
    if (m_inTransaction) {
        m_inTransaction = false;
        Show(Trace, QStringLiteral("ROLLBACK"));
        Opened(QStringLiteral("ROLLBACK")).RollBack();
    }
}

qint64 ovConnection::LastInsertId() { return Opened({}).LastInsertId(); }

void ovConnection::Interrupt() noexcept {
    if (m_engine != nullptr) {
        m_engine->Interrupt();
    }
}

QString ovConnection::GetFullTableName(const QString& table) const {
    static const QStringList shared{QStringLiteral("TAB_"), QStringLiteral("SYS_"), QStringLiteral("GEN_")};
    const QString prefix = m_company + u'_';
    const bool isShared = shared.contains(table.left(4).toUpper());
    // A bare name that only begins like the company ("CON_TRO" of a company CON) holds no second "_" behind it.
    const bool carriesCompany = table.startsWith(prefix, Qt::CaseInsensitive) && table.indexOf(u'_', prefix.size()) > 0;
    if (m_company.isEmpty() || isShared || carriesCompany) {
        return table;
    }
    return prefix + table;
}

QVector<ColumnInfo> ovConnection::GetColumns(const QString& table) {
    Engine& engine = Opened({});
    return Layout ? Layout->Columns(table, engine) : engine.Columns(table);
}

QStringList ovConnection::GetTables() {
    Engine& engine = Opened({});
    return Layout ? Layout->Tables(engine) : engine.Tables();
}

void ovConnection::SetTriggersEnabled(const QString& table, bool enabled) {
    if (m_inTransaction && Opened({}).TextDialect() == Dialect::MySql) {
        throw SqlError(QStringLiteral("ALTER TABLE ") + table,
                       QStringLiteral("i trigger di '%1' non si possono cambiare dentro una transazione").arg(table));
    }
    Opened(QStringLiteral("ALTER TABLE ") + table).SetTriggersEnabled(table, enabled);
}
