#include "sql/ovConnection.h"

#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "sql/text/dialect.h"

#include <QThread>

namespace {

const QString TruncateTable = QStringLiteral("TRUNCATE TABLE ");

const QString Commit = QStringLiteral("COMMIT");
const QString Mark = QStringLiteral("SAVEPOINT QDX_ROW");

bool IsQuery(const QString& statement) { return statement.trimmed().startsWith(u"SELECT", Qt::CaseInsensitive); }

bool IsTruncate(const QString& statement) { return statement.startsWith(TruncateTable, Qt::CaseInsensitive); }

} // namespace

ovConnection::~ovConnection() = default;

/// A driver that was named for a server that is reached without one is meant for something else.
void ovConnection::RefuseDriver() const {
    if (!Driver.isEmpty()) {
        throw ImportError(
            QStringLiteral("Impostazione Driver: MariaDB e MySQL si raggiungono con la loro libreria, non "
                           "con un driver ODBC: togliere Driver ('%1'), o indicare un altro tipo di "
                           "database (Provider, ProviderType)")
                .arg(Driver));
    }
}

std::unique_ptr<Engine> ovConnection::OpenEngine() const {
    const ConnectionSettings settings{Server,           DatabaseName,      User,          Password,  DSN,
                                      ConnectionString, NetworkCredential, Driver,        Encrypted, EncryptionCA,
                                      ReadOnly,         SourceTables,      LookupColumns, CodePage,  Note};
    if (OpenFiles) {
        if (auto engine = OpenFiles(settings)) {
            return engine;
        }
    }
    if (Embedded) {
        return OpenSqlite(DatabaseName, ReadOnly);
    }
    if (ProviderType == Provider::MySql && DSN.isEmpty() && ConnectionString.isEmpty()) {
        RefuseDriver();
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
    m_locks.clear();
    EndTrans();
    m_lost = false;
    m_absent.Clear();
    m_othersChanges.reset();
    m_longest.reset();
    m_overtaken = 0;
}

QString ovConnection::LineWarning() { return m_engine == nullptr ? QString() : m_engine->LineWarning(); }

/// Not every database can be told so itself.
void ovConnection::RefuseWriting(const QString& statement) const {
    if (ReadOnly && !dialect::OnlyReads(statement)) {
        throw SqlError(statement, QStringLiteral("l'origine si legge soltanto: l'istruzione non è stata eseguita"));
    }
}

/// The same of one whose values stand apart: it is looked at once for all of them.
void ovConnection::RefuseWriting(const SqlText& statement) {
    constexpr qsizetype mostShapes = 1024;
    const QByteArray& shape = statement.Shape().shape;
    if (!ReadOnly || m_reading.contains(shape)) {
        return;
    }
    RefuseWriting(statement.Text());
    if (m_reading.size() >= mostShapes) {
        m_reading.clear();
    }
    m_reading.insert(shape);
}

Engine& ovConnection::Opened(const QString& statement) const {
    if (m_engine == nullptr) {
        throw SqlError(statement, QStringLiteral("la connessione al database non è aperta"));
    }
    if (m_lost) {
        throw SqlError(statement,
                       QStringLiteral("il database ha chiuso da sé la transazione in corso: l'istruzione non "
                                      "è stata eseguita"));
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

/// Statements that follow would commit each by itself.
void ovConnection::NoticeLoss(SqlError& error) {
    if (m_inTransaction && !m_lost && m_engine != nullptr && !m_engine->TransactionStands(true)) {
        m_lost = true;
        error.AddAdvice(QStringLiteral("il database ha annullato la transazione in corso"));
    }
}

template<class Work>
void ovConnection::NoticingLoss(const Work& work) {
    try {
        work();
    } catch (SqlError& error) {
        NoticeLoss(error);
        throw;
    }
}

template<class Work>
auto ovConnection::WithDecision(const Work& work) {
    for (int attempt = 1;; ++attempt) {
        try {
            return work();
        } catch (SqlError& error) {
            const bool mayBeDone = TellDoubt(error, error.Statement());
            NoticeLoss(error);
            if (Errors == nullptr || m_lost) {
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
    return WithDecision([&] {
        Engine& engine = Opened(statement);
        RefuseWriting(statement);
        SendBefore(statement);
        Show(Written, statement);
        NoticeWriting(statement);
        const dialect::TriggerSwitch triggers = dialect::ParseTriggerSwitch(statement);
        if (!triggers.table.isEmpty() && engine.TextDialect() != Dialect::SqlServer) {
            SetTriggersEnabled(triggers.table, triggers.enable);
            return qint64(0);
        }
        return IsTruncate(statement) ? Truncate(engine, statement) : engine.Run(TextFor(engine, statement));
    });
}

/// Rows of a table; -1 where the user may not count them.
qint64 ovConnection::RowsIn(Engine& engine, const QString& table) const {
    try {
        const auto rows = engine.Query(TextFor(engine, QStringLiteral("SELECT COUNT(*) FROM ") + table));
        return rows->Next() ? rows->Value(0).toLongLong() : -1;
    } catch (const SqlError& error) {
        if (!error.IsDenied()) {
            throw;
        }
        return -1;
    }
}

/// Some engines end the transaction at a TRUNCATE; a DELETE can be taken back on all of them. A server that is told to
/// truncate does not tell how many rows there were: they are counted before.
qint64 ovConnection::Truncate(Engine& engine, const QString& statement) {
    const QString table = statement.mid(TruncateTable.size()).trimmed();
    const QString revocable = QStringLiteral("DELETE FROM ") + table;
    const bool isCounting = m_inTransaction || engine.TextDialect() == Dialect::Sqlite;
    const qint64 there = isCounting ? 0 : RowsIn(engine, table);
    try {
        const qint64 rows = engine.Run(TextFor(engine, m_inTransaction ? revocable : statement));
        RestartNumbers(engine, table);
        return isCounting ? rows : there;
    } catch (const SqlError& error) {
        if (!error.IsDenied() || m_inTransaction) {
            throw;
        }
    }
    const qint64 rows = engine.Run(TextFor(engine, revocable));
    Show(Note, QStringLiteral("SVUOTATA CON DELETE: tabella '%1', manca il diritto a TRUNCATE; i nuovi RECORD_ID non "
                              "ripartono da 1")
                   .arg(table));
    return rows;
}

void ovConnection::RestartNumbers(Engine& engine, const QString& table) const {
    const QString restart = engine.RestartStatement(table);
    if (!restart.isEmpty()) {
        Show(Trace, restart);
        engine.Run(restart);
    }
}

Recordset ovConnection::ExecuteWC(const QString& query) {
    // A source file is asked the same for many rows: its words are looked at once.
    const bool isOfFile =
        ReadOnly && !Layout && !Await && m_engine != nullptr && m_engine->TextDialect() == Dialect::Sqlite;
    if ((m_isAhead || isOfFile) && IsQuery(query)) {
        return ExecuteWC(SqlText::Of(query, ProviderType));
    }
    return WithDecision([&] {
        Engine& engine = Opened(query);
        RefuseWriting(query);
        SendBefore(query);
        Show(Written, query);
        NoticeWriting(query);
        const auto run = [&](const QString& text) { return engine.Query(TextFor(engine, text)); };
        std::optional<Recordset> rows;
        const auto read = [&] { rows.emplace(Layout ? Layout->Query(query, engine, run) : run(query), query); };
        Await ? Await(read) : read();
        return std::move(*rows);
    });
}

/// Runs a statement whose values stand apart. Nobody but observers and errors needs its text.
/// @param row that it inserts; null for any other
template<class Run>
auto ovConnection::Apart(const SqlText& statement, const Run& run, const ovQueryConstructor* row) {
    if (m_engine == nullptr || m_lost) {
        Opened(statement.Text()); // which raises
    }
    if (m_isAhead) {
        SendBefore(statement.Shape().shape, statement.Shape().verb == StatementShape::Verb::Select);
    }
    RefuseWriting(statement);
    if (Written || Trace) {
        const QString text = statement.Text();
        Show(Written, text);
        if (Trace) {
            Trace(dialect::Adapt(text, m_engine->TextDialect()));
        }
    }
    row != nullptr ? m_absent.Inserts(*row, statement.Shape()) : m_absent.Runs(statement.Shape());
    return run(*m_engine);
}

/// The answer that is known from before, or the server's.
std::unique_ptr<Cursor> ovConnection::QueryAhead(const SqlText& query) {
    const bool isLookUp = query.Shape().verb == StatementShape::Verb::Select && query.Shape().isCommon;
    auto answer = isLookUp ? m_answers.Find(query.Shape()) : nullptr;
    if (answer == nullptr) {
        answer = Apart(query, [&](Engine& engine) { return engine.QueryApart(query); });
        return isLookUp ? m_answers.Keep(query.Shape(), std::move(answer)) : std::move(answer);
    }
    return answer;
}

qint64 ovConnection::Execute(const SqlText& statement) { return ExecuteApart(statement, nullptr); }

qint64 ovConnection::ExecuteApart(const SqlText& statement, const ovQueryConstructor* row) {
    return WithDecision([&] {
        return Apart(
            statement, [&](Engine& engine) { return engine.RunApart(statement); }, row);
    });
}

Recordset ovConnection::ExecuteWC(const SqlText& query) {
    if (Layout && m_engine != nullptr && !Layout->LeavesAsItIs(query, *m_engine)) {
        return ExecuteWC(query.Text());
    }
    return WithDecision([&] {
        if (m_isAhead && !m_lost && m_keepsAnswers) {
            return Recordset(QueryAhead(query), query);
        }
        return Apart(query, [&](Engine& engine) { return Recordset(engine.QueryApart(query), query); });
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

void ovConnection::BeginTrans(bool mayGoAhead) {
    const QString statement = QStringLiteral("BEGIN TRANSACTION");
    Engine& engine = Opened(statement);
    const bool goesAhead = mayGoAhead && CanGoAhead();
    Show(Trace, engine.TextDialect() == Dialect::MySql ? QStringLiteral("BEGIN") : statement);
    engine.Begin();
    m_inTransaction = true;
    m_lost = false;
    m_isAhead = goesAhead;
    if (const auto changes = engine.ChangesOfOthers(); changes && changes != m_othersChanges) {
        m_absent.Clear();
        m_othersChanges = changes;
    }
    m_absent.ForgetHighest();
    if (m_isAhead) {
        m_absent.BeginAssuming();
    }
    m_begin = m_absent.Now();
    m_mark = m_begin;
}

/// Whether what is known of the values of columns can be told: others have not changed them, or it is made sure of in
/// the end. Whoever writes beside waits for the end of the transaction, and is noticed at the beginning of the next
/// one. What a trigger writes is noticed at once.
bool ovConnection::KnowsValues() {
    if (!m_inTransaction || m_lost) {
        return false;
    }
    if (m_isAhead) {
        constexpr int mostOvertaken = 3; // somebody writes all the time
        return m_overtaken < mostOvertaken;
    }
    if (m_othersChanges && m_engine->ChangesOfOthers() != m_othersChanges) {
        m_absent.Clear();
        m_othersChanges = m_engine->ChangesOfOthers();
    }
    return m_othersChanges.has_value();
}

bool ovConnection::IsAbsent(const QString& table, const QString& column, const QString& value) {
    return KnowsValues() &&
           m_absent.IsAbsent(GetFullTableName(table), column, value,
                             [this](const QString& name, const QString& of, const auto& take) {
                                 if (!m_isAhead && !m_engine->KeepsTexts(name, of)) {
                                     return false;
                                 }
                                 SqlText query(ProviderType);
                                 query += u"SELECT ";
                                 query += of;
                                 query += u" FROM ";
                                 query += name;
                                 for (Recordset rows = ExecuteWC(query); !rows.Eof(); rows.MoveNext()) {
                                     take(rows.Fields(0).Value());
                                 }
                                 return true;
                             });
}

QVariant ovConnection::GetMaxValue(const QString& table, const QString& column, const QString& where,
                                   const QVariant& defaultValue) {
    if (!where.isEmpty() || !KnowsValues()) {
        return ovDatabase::GetMaxValue(table, column, where, defaultValue);
    }
    const QString name = GetFullTableName(table);
    if (const auto highest = m_absent.Highest(name, column)) {
        return *highest;
    }
    const QVariant highest = ovDatabase::GetMaxValue(table, column, {}, {});
    m_absent.SetHighest(name, column, highest);
    return highest.isNull() ? defaultValue : highest;
}

void ovConnection::NoticeWriting(const QString& statement) {
    if (!m_absent.IsEmpty() && !IsQuery(statement)) {
        m_absent.Runs(StatementShape::Of(statement.toUtf8()));
    }
}

void ovConnection::SetMark() {
    Opened(Mark);
    m_pendingMark = m_pending.Count();
    m_mark = m_absent.Now();
    if (!m_isAhead) {
        SendMark();
    }
}

/// Sets the mark that waits.
void ovConnection::SendMark() {
    if (m_pendingMark) {
        m_pendingMark.reset();
        Show(Trace, Mark);
        NoticingLoss([this] { m_engine->SetMark(); });
    }
}

void ovConnection::RollbackToMark() {
    const QString statement = QStringLiteral("ROLLBACK TO SAVEPOINT QDX_ROW");
    Engine& engine = Opened(statement);
    m_absent.TakenBack(m_mark);
    m_answers.Clear();
    ForgetNewTexts();
    if (m_pendingMark) {
        m_pending.Drop(*m_pendingMark);
        return;
    }
    m_pending.Clear();
    Show(Trace, statement);
    NoticingLoss([&] { engine.RollBackToMark(); });
}

void ovConnection::CommitTrans() {
    if (m_inTransaction) {
        Engine& engine = Opened(Commit);
        if (m_isAhead) {
            m_pendingMark.reset();
            SendPending();
            MakeSure();
        }
        Show(Trace, Commit);
        try {
            if (!engine.TransactionStands(false)) {
                throw SqlError(Commit, QStringLiteral("la transazione non è più aperta"));
            }
            engine.Commit();
        } catch (SqlError& error) {
            TellDoubt(error, Commit);
            NoticeLoss(error);
            throw;
        }
        EndTrans();
    }
}

void ovConnection::RollbackTrans() {
    if (m_inTransaction) {
        EndTrans();
        m_lost = false;
        m_absent.TakenBack(m_begin);
        Show(Trace, QStringLiteral("ROLLBACK"));
        Opened(QStringLiteral("ROLLBACK")).RollBack();
    }
}

void ovConnection::EndTrans() {
    m_inTransaction = false;
    m_isAhead = false;
    m_aheadFailure.clear();
    m_absent.EndAssuming();
    m_pending.Clear();
    m_pendingMark.reset();
    m_answers.Clear();
    ForgetNewTexts();
}

qint64 ovConnection::LastInsertId() { return Opened({}).LastInsertId(); }

void ovConnection::Interrupt() noexcept {
    if (m_engine != nullptr) {
        m_engine->Interrupt();
    }
}
