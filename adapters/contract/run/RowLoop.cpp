#include "adapters/contract/run/RowLoop.h"

#include "core/modImport.h"
#include "core/modMain.h"

namespace contract {

namespace {

constexpr int MostRedone = 3; ///< times that rows are done again whose transaction the database has ended

/// Rows that are committed together at the most; 0 where the database takes none back, too.
int RowsOf(ImportRun& run) {
    const int rows = RowsTogether(run.GetSession());
    return run.TakesRowsBack() ? rows : 0;
}

/// The error that some work ends with; null when it does not.
template<class Work>
std::exception_ptr FailureOf(const Work& work) noexcept {
    try {
        work();
    } catch (...) {
        return std::current_exception();
    }
    return nullptr;
}

/// Raises an error with another that came before it as its context.
[[noreturn]] void RaiseBehind(const std::exception_ptr& further, const QString& before) {
    try {
        std::rethrow_exception(further);
    } catch (Error& error) {
        error.AddContext(before);
        throw;
    }
}

} // namespace

RowLoop::RowLoop(ImportRun& run, const ImportRun::Loop& loop, const ImportRun::RowWork& row,
                 const std::function<void()>& groupEnd)
    : m_run(run),
      m_session(run.GetSession()),
      m_loop(loop),
      m_row(row),
      m_groupEnd(groupEnd),
      m_transaction(m_session, RowsOf(run)) {}

ovConnection& RowLoop::Database() const {
    return m_loop.database != nullptr ? *m_loop.database : m_session.SourceConnection();
}

bool RowLoop::Run() {
    if (!m_run.IsSingle()) {
        m_progress = m_session.Person.ShowProgress();
        m_progress->SetMax(0);
        m_progress->SetStep(m_loop.step);
    }
    m_loopNumber = m_run.m_loops++;
    CountRows();
    FindPlace();
    try {
        Read();
        Commit();
    } catch (const Error& error) {
        Leave();
        // When the source breaks off, the rest of what belongs together has not been read.
        if (!m_loop.group.isEmpty() && !m_unit.keys.isEmpty()) {
            m_key = m_unit.keys.last();
            GiveUpFor(m_unit, error);
        }
        throw;
    } catch (...) { // the operator has given up, or the memory is used up
        if (std::exchange(m_isWorking, false) && !m_transaction.TakeBackRow()) {
            ForgetDone();
        }
        m_run.m_account.TakeBackRow();
        Leave();
        throw;
    }
    return m_run.m_account.Result.outcome != RunResult::Outcome::Cancelled;
}

void RowLoop::CountRows() {
    const auto reads = Cancellable();
    m_count = Database().ExecuteCommand(m_loop.count);
    m_run.m_account.Result.sourceRows += IsSelective() ? 0 : m_count;
    m_run.CommitAccount();
    TellLeftOut();
    if (m_progress != nullptr) {
        m_progress->SetMax(static_cast<float>(m_count));
    }
}

/// A run for some rows alone leaves all others out anyway; one for a code tells why it does not find it.
void RowLoop::TellLeftOut() {
    if (m_loop.countAll.isEmpty() || IsSelective()) {
        return;
    }
    const qint64 leftOut = Database().ExecuteCommand(m_loop.countAll) - m_count;
    if (leftOut > 0 || !m_run.IsSingle()) {
        m_run.Tell(QStringLiteral("%1: %2").arg(m_loop.leftOut, QString::number(leftOut)));
    }
}

/// What a query of its rows is told to wait with; nothing for a run that cannot be cancelled.
std::unique_ptr<CancellableReads> RowLoop::Cancellable() const {
    return m_progress == nullptr ? nullptr : std::make_unique<CancellableReads>(Database(), *m_progress);
}

Recordset RowLoop::Open() const {
    const auto reads = Cancellable();
    return Database().ExecuteWC(m_loop.select);
}

void RowLoop::Read() {
    Recordset rows = Open();
    m_held.emplace(rows);
    const SourceRow current(rows);
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString value = m_loop.groupOf ? m_loop.groupOf(current) : GroupText(current, m_loop.group);
        if (!m_unit.rows.empty() && value != m_unit.value) {
            Take(std::exchange(m_unit, {}));
        }
        if (m_unit.rows.empty() && IsCancelled()) {
            m_run.m_account.Result.outcome = RunResult::Outcome::Cancelled;
            return;
        }
        m_unit.value = value;
        Add(current, rows);
        if (m_loop.group.isEmpty()) {
            Take(std::exchange(m_unit, {}));
        }
        if (m_progress != nullptr) { // at most half a second ahead of the commit; the window lives on between rows
            m_progress->SetValue(static_cast<float>(m_read));
        }
    }
    if (!m_unit.rows.empty()) {
        Take(std::exchange(m_unit, {}));
    }
    CheckCameBehind();
}

/// Adds the row that the source stands on to those that belong together.
void RowLoop::Add(const SourceRow& current, const Recordset& rows) {
    m_unit.keys.append(NameOf(current, m_loop.table, m_loop.keyColumn));
    m_unit.rows.push_back(m_held->Take(rows));
    m_unit.end = ++m_read;
    if (m_read > m_count && !IsSelective()) {
        ++m_run.m_account.Result.sourceRows; // the source has grown since the count
    }
}

bool RowLoop::IsCancelled() const { return m_progress != nullptr && m_progress->Cancel(); }

void RowLoop::Do(const Unit& unit) {
    for (int attempt = 1;; ++attempt) {
        try {
            Work(unit);
            break;
        } catch (Error& error) {
            if (IsOfGoingAhead(error)) {
                if (m_transaction.IsPart()) { // whoever began it does its work again
                    throw;
                }
                DoAgain(&unit);
                return;
            }
            if (const QString called =
                    m_session.Layout ? m_session.Layout->OwnNames(m_key, error.Message()) : QString();
                !called.isEmpty()) {
                error.AddAdvice(QStringLiteral("nella sorgente ") + called);
            }
            try {
                m_transaction.IsAtomic() ? Failed(unit, error, attempt) : FailedInPart(unit, error, attempt);
            } catch (const RowGivenUp& givenUp) {
                GiveUp(unit, givenUp.Message());
                StopAtLimit();
                return;
            }
        }
    }
    m_isWorking = false;
    if (m_session.Errors.Action == ErrorAction::Retry) { // the next row's look-ups are tried again
        m_session.FailedLookUps.wasAborted = false;
    }
    m_run.m_account.EndRow();
    m_done.push_back(unit);
    if (m_transaction.IsFull(static_cast<qsizetype>(m_done.size()))) {
        Commit();
    }
}

void RowLoop::Work(const Unit& unit) {
    m_key = unit.keys.first();
    std::optional<ovErrors::Row> underWay(std::in_place, m_session.Errors, m_key);
    m_transaction.BeginRow();
    m_isWorking = true;
    std::optional<ovErrors::AsWhole> whole;
    if (m_transaction.IsAtomic()) {
        whole.emplace(m_session.Errors);
    }
    for (size_t i = 0; i < unit.rows.size(); ++i) {
        m_key = unit.keys.at(static_cast<qsizetype>(i));
        underWay.reset();
        underWay.emplace(m_session.Errors, m_key);
        m_run.m_rule.clear();
        const RowOutcome outcome = m_row(SourceRow(m_held->Show(unit.rows[i])));
        m_run.m_account.Count(outcome, m_run.m_rule);
    }
    if (m_groupEnd) {
        m_groupEnd();
    }
}

/// Called inside the catch block of the error. Returns when the rows are to be done again; raises `RowGivenUp` when
/// they are given up, or the error.
void RowLoop::Failed(const Unit& unit, Error& error, int attempt) {
    const bool othersStand = m_transaction.TakeBackRow();
    m_isWorking = false;
    m_run.m_account.TakeBackRow();
    if (!othersStand && m_transaction.IsPart()) { // the whole trial is gone
        ForgetDone();
        error.SetRowKey(m_key);
        throw;
    }
    // What came before stays, whatever is answered, and nothing is locked meanwhile.
    std::exception_ptr further;
    if (othersStand) {
        bool holds = true;
        further = FailureOf([&] { holds = Commit(); });
        if (!further && !holds) {
            return; // the row may not fail once the database is asked about each step
        }
    } else {
        m_run.m_account.TakeBack();
    }
    try {
        Decide(error, attempt);
    } catch (const RowGivenUp&) {
        further = further ? further : FailureOf([this] { Redo(); });
        if (further) {
            GiveUpFor(unit, error);
            RaiseBehind(further, QStringLiteral("Riga abbandonata: %1: %2").arg(m_key, error.Message()));
        }
        throw;
    } catch (...) {
        further = further ? further : FailureOf([this] { Redo(); });
        GiveUpFor(unit, error);
        Report(further);
        throw;
    }
    further = further ? further : FailureOf([this] { Redo(); });
    if (further) {
        std::rethrow_exception(further);
    }
}

/// The same where nothing can be taken back: a failing statement has been decided about, and is done again alone.
void RowLoop::FailedInPart(const Unit& unit, Error& error, int attempt) {
    if (dynamic_cast<const RowGivenUp*>(&error) != nullptr) {
        throw;
    }
    if (dynamic_cast<const ImportError*>(&error) == nullptr) {
        GiveUpFor(unit, error);
        throw;
    }
    const bool hasWritten = !m_run.m_account.RowText([](const QString& table) { return table; }).isEmpty();
    const ovErrors::Row underWay(m_session.Errors, m_key);
    try {
        m_session.Errors.Decide(error, attempt, hasWritten);
    } catch (const RowGivenUp&) {
        throw;
    } catch (...) {
        GiveUpFor(unit, error);
        throw;
    }
    m_run.m_account.DropClasses(); // its rows are counted again
}

/// Whether a row that goes ahead has failed with what may come from that: of any other error it is known once the rows
/// before it, with which it has found what it took for true, are committed.
bool RowLoop::IsOfGoingAhead(const Error& error) const {
    const bool isAlone = m_done.empty() && !m_transaction.IsPart();
    return m_session.Quadrix.IsAhead() && (isAlone || dynamic_cast<const ImportError*>(&error) == nullptr);
}

/// Does rows again that went ahead in what does not hold.
/// @param last the one under way; null: it is done
void RowLoop::DoAgain(const Unit* last) {
    m_transaction.TakeBack();
    m_isWorking = false;
    m_run.m_account.TakeBack();
    std::vector<Unit> gone = std::exchange(m_done, {});
    if (last != nullptr) {
        gone.push_back(*last);
    }
    m_transaction.Slow(static_cast<qsizetype>(gone.size()));
    for (const Unit& unit : gone) {
        Do(unit);
    }
}

/// Called inside the catch block of the error.
void RowLoop::Decide(Error& error, int attempt) {
    const ovErrors::Row underWay(m_session.Errors, m_key);
    try {
        m_session.Errors.Decide(error, attempt);
    } catch (const RowGivenUp&) {
        throw;
    } catch (const Error&) {
        if (!error.IsOfLookUp() || m_session.Quadrix.TransactionLost()) {
            throw;
        }
        m_session.FailedLookUps.wasAborted = true; // the row goes on without what it looked for
    }
    if (const auto* sql = dynamic_cast<const SqlError*>(&error)) {
        m_session.Quadrix.WaitToPass(*sql, attempt);
    }
}

/// Does the rows again that went with their transaction.
void RowLoop::Redo() {
    const std::vector<Unit> gone = std::exchange(m_done, {});
    if (gone.empty()) {
        return;
    }
    if (++m_redone > MostRedone) {
        throw ImportError(QStringLiteral("il database ha annullato %1 volte le righe da %2 a %3, che non sono scritte")
                              .arg(QString::number(m_redone), gone.front().keys.first(), gone.back().keys.last()));
    }
    const QString key = m_key;
    for (const Unit& unit : gone) {
        Do(unit);
    }
    Commit();
    m_key = key;
}

/// Reports an error that ends the run beside the one under way.
void RowLoop::Report(const std::exception_ptr& further) noexcept {
    try {
        if (further) {
            std::rethrow_exception(further);
        }
    } catch (...) {
        m_session.Errors.Monitoring(m_run.m_account.Result.module, m_run.m_account.Result.procedure);
    }
}

/// The account is complete before the log is written, which may fail too.
void RowLoop::GiveUp(const Unit& unit, const QString& reason) {
    QStringList lines;
    const QString left = m_run.m_account.RowText([this](const QString& table) { return m_run.FullName(table); });
    if (!left.isEmpty()) { // nothing can be taken back
        lines += QStringLiteral("Rimane scritto di una riga abbandonata: %1: %2").arg(m_key, left);
        m_session.Notes.Add(lines.last());
    }
    const QString culprit = m_key;
    for (size_t row = 0; row < unit.rows.size(); ++row) {
        const QString& key = unit.keys.at(static_cast<qsizetype>(row));
        const QString why = key == culprit ? reason : QString("appartiene a " + culprit);
        lines += m_run.m_account.GiveUp(key, why);
        TellGivenUp(unit, row, why);
    }
    m_run.m_account.DropClasses();
    m_run.CommitAccount();
    try {
        for (const QString& line : std::as_const(lines)) {
            m_run.AppendToLog(line);
        }
    } catch (Error& error) {
        const QString what = QStringLiteral("Riga abbandonata: %1: %2").arg(culprit, reason);
        error.AddContext(left.isEmpty() ? what : QString(what + QStringLiteral("; ") + lines.first()));
        throw;
    }
}

/// Raises `ImportError` where no more rows may be given up.
void RowLoop::StopAtLimit() const {
    const RunResult& result = m_run.m_account.Result;
    const qint64 done = result.inserted + result.updated + result.skipped + result.givenUpCount;
    if (m_session.MostGivenUp.IsReached(result.givenUpCount, done)) {
        throw ImportError(
            QStringLiteral("righe abbandonate %1 su %2, il limite è %3: l'importazione si ferma qui, ciò "
                           "che è scritto resta; controllare l'origine e la sua struttura")
                .arg(QString::number(result.givenUpCount), QString::number(done), m_session.MostGivenUp.Text()));
    }
}

/// Gives rows up for an error that goes on rising: a log that cannot be written must not take its place.
void RowLoop::GiveUpFor(const Unit& unit, const Error& error) noexcept {
    try {
        GiveUp(unit, error.Message());
    } catch (...) {
        m_session.Errors.Monitoring(m_run.m_account.Result.module, m_run.m_account.Result.procedure);
    }
}

/// Commits what is done. Where the database has ended the transaction instead, the rows are done again when the errors
/// are to be retried; else they count as not reached, and the error names them.
/// @return false when they had to be done again, as they had gone ahead in what does not hold
bool RowLoop::Commit() {
    const auto takeBack = [this](Error& error, const QString& how) {
        m_run.m_account.TakeBack();
        error.AddContext(
            QStringLiteral("Righe da %1 a %2, %3").arg(m_done.front().keys.first(), m_done.back().keys.last(), how));
    };
    const QString notWritten = QStringLiteral("che non sono scritte");
    try {
        m_transaction.Commit();
    } catch (const AheadError&) {
        DoAgain(nullptr);
        Commit();
        return false;
    } catch (SqlError& error) {
        const bool inDoubt = error.AnswerLost();
        takeBack(error, inDoubt ? QStringLiteral("che possono essere scritte o no") : notWritten);
        try {
            m_session.Errors.Decide(error, m_redone + 1, inDoubt);
        } catch (...) {
            m_done.clear();
            throw;
        }
        m_session.Quadrix.WaitToPass(error, m_redone + 1);
        Redo();
        return true;
    } catch (Error& error) { // not of the database: the trace of its statements, for one, cannot be written
        takeBack(error, notWritten);
        m_done.clear();
        throw;
    }
    m_redone = m_done.empty() ? m_redone : 0;
    const Unit last = m_done.empty() ? Unit() : m_done.back();
    for (const Unit& unit : m_done) {
        if (!unit.wanted.isEmpty()) {
            m_session.Selection->Done(unit.wanted);
        }
    }
    m_done.clear();
    m_run.CommitAccount();
    m_session.Errors.ShowWaiting();
    modImport::WriteHeldLines(m_session);
    if (m_session.Observer != nullptr && !last.keys.isEmpty()) {
        m_session.Observer->RowsStand(m_loopNumber, last.end, last.keys.last());
    }
    return true;
}

/// What was done is gone with its transaction, and is not done again.
void RowLoop::ForgetDone() {
    m_done.clear();
    m_run.m_account.TakeBack();
}

/// Commits what is done before an error goes on rising.
void RowLoop::Leave() noexcept {
    if (!m_done.empty()) {
        Report(FailureOf([this] { Commit(); }));
    }
}

} // namespace contract
