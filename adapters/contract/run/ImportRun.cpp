#include "adapters/contract/run/ImportRun.h"

#include "adapters/contract/run/SourceMemory.h"
#include "core/runEnding.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

constexpr qsizetype KeptReasons = 1000; ///< rows given up that the result lists; the log names them all

/// What tells rows that belong together from others.
QString GroupOf(const ImportRun::Loop& loop, const SourceRow& row) {
    QStringList values;
    for (const QString& column : loop.group) {
        values.append(row.Text(column));
    }
    return values.join(QChar(u'\x1f'));
}

const QString WasTrial = QStringLiteral("Era una prova: il database resta com'era");

/// Raised where the operator gives a question up, past everything that reports errors.
struct GivenUpByOperator {};

} // namespace

ImportRun::ImportRun(Session& session, const QString& module, const QString& procedure, const QString& singleCode)
    : m_session(session),
      m_case(modImport::ReadFieldCase(session)),
      m_single(!singleCode.isEmpty()),
      m_untranslatedBefore(session.Untranslated.size()),
      m_start(session.Person.WorkedSeconds()) {
    m_result.module = module;
    m_result.procedure = procedure;
    m_session.Notes = {};
    m_session.FailedLookUps = {};
}

void ImportRun::Guard(const std::function<void()>& body) {
    const Operator::Busy busy(m_session.Person);
    try {
        body();
    } catch (const GivenUpByOperator&) {
        m_result.outcome = RunResult::Outcome::Cancelled;
    } catch (...) {
        m_failed = true;
        m_session.Errors.Monitoring(m_result.module, m_result.procedure);
        m_result.errors.append(m_session.Errors.Entries().last().message);
        LogError();
    }
    Finish();
}

void ImportRun::LogError() {
    if (!m_errorText.isEmpty()) {
        LogOrReport(m_errorText + m_result.errors.last());
    }
}

void ImportRun::LogOrReport(const QString& message) {
    try {
        AppendToLog(message);
    } catch (Error& error) {
        error.AddContext(message);
        m_session.Errors.Monitoring(m_result.module, m_result.procedure);
    }
}

void ImportRun::SwitchTriggersOn(const QString& table) noexcept {
    const auto switchOn = [&] { m_session.Quadrix.AlterTriggersStatus(FullName(table), true); };
    try {
        try {
            switchOn();
        } catch (const Error&) {
            switchOn();
        }
    } catch (Error& error) {
        error.AddContext(QStringLiteral("I trigger di %1 sono rimasti disattivati").arg(FullName(table)));
        m_session.Errors.Monitoring(m_result.module, m_result.procedure);
        LogOrReport(error.Message());
    }
}

void ImportRun::Finish() {
    m_underWay.reset();
    m_result.notReached = std::max<qint64>(0, m_result.sourceRows - m_result.inserted - m_result.updated -
                                                  m_result.skipped - m_result.givenUpCount);
    if (m_failed) {
        m_result.outcome = RunResult::Outcome::Failed;
    }
    m_result.untranslated = m_session.Untranslated.mid(m_untranslatedBefore);
    m_result.seconds = m_session.Person.WorkedSeconds() - m_start;
    m_result.notes = std::exchange(m_session.Notes, {});
    const LookUpFailures failed = std::exchange(m_session.FailedLookUps, {});
    m_result.failedLookUps = failed.count;
    LogEnding();
    m_result.errors += failed.messages; // these stand in the log, each with its row
    m_session.Results.append(m_result);
}

/// Without it nothing but the box, once it is closed, would tell how a run ended.
void ImportRun::LogEnding() {
    if (m_single) {
        return;
    }
    QStringList parts{QStringLiteral("Fine %1: %2").arg(m_result.procedure, EndingText(EndingOf(m_result)))};
    if (m_errorText.isEmpty()) { // else the error stands in the log already
        parts += m_result.errors;
    }
    parts.append(RowsLine(m_result));
    if (m_session.Quadrix.InTransaction()) {
        parts.append(WasTrial);
    }
    const QString line = parts.join(QStringLiteral(". ")).replace(u'\n', QLatin1String(" "));
    try {
        AppendToLog(line);
    } catch (Error& error) {
        if (!m_failed) {
            error.AddContext(line);
            m_session.Errors.Monitoring(m_result.module, m_result.procedure);
        }
    }
}

void ImportRun::Announce(const QString& announcement) {
    if (!m_single) {
        modImport::WriteImportLog(m_session, announcement, true);
    }
}

void ImportRun::AnnounceAppending(const QString& announcement) {
    if (!m_single) {
        AppendToLog(announcement);
    }
}

void ImportRun::Preflight(const Needs& needs) {
    const Lacks lacks = LacksOf(m_session, needs);
    if (!lacks.necessary.isEmpty()) {
        throw ImportError(QStringLiteral("Non è stato scritto nulla. Mancano:\n") + lacks.Text());
    }
    if (const QString leftOut = LeaveOut(m_session, needs, lacks); !leftOut.isEmpty()) {
        Log(leftOut);
    }
    for (const QString& change : ChangesOfSource(m_session, m_result.module, needs)) {
        Log(change);
    }
}

void ImportRun::Truncate(bool reset, const QStringList& tables) {
    if (!reset) {
        return;
    }
    for (const QString& table : tables) {
        const QString name = FullName(table);
        // A server that is told to truncate does not tell how many rows there were.
        const qint64 before = m_session.Quadrix.Embedded
                                  ? -1
                                  : m_session.Quadrix.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM ") + name);
        const qint64 rows = m_session.Quadrix.Execute(QStringLiteral("TRUNCATE TABLE ") + name);
        const qint64 deleted = std::max(before, rows);
        TellEmptied(name, deleted, EmptiedLine(name, deleted));
    }
}

void ImportRun::Delete(const QString& table, const QString& statement) {
    const qint64 rows = m_session.Quadrix.Execute(statement);
    TellEmptied(table, rows, QStringLiteral("Tabella %1: %2").arg(table, DeletedText(rows)));
}

void ImportRun::TellEmptied(const QString& table, qint64 rows, const QString& line) {
    m_result.emptied.append({table, rows});
    if (rows > 0) {
        AppendToLog(line);
    }
}

bool ImportRun::Ask(const QString& question) {
    const Answer answer = m_session.Person.Ask(question);
    if (answer == Answer::GivenUp) {
        throw GivenUpByOperator();
    }
    return answer == Answer::Yes;
}

QString ImportRun::Input(const QString& prompt, const QString& title, const QString& defaultText) {
    const auto typed = m_session.Person.Input(prompt, title, defaultText);
    if (!typed) {
        throw GivenUpByOperator();
    }
    return *typed;
}

bool ImportRun::Rows(const Loop& loop, const RowWork& row, const std::function<void()>& groupEnd) {
    const qint64 count = DatabaseOf(loop).ExecuteCommand(loop.count);
    m_result.sourceRows += count;
    TellInterrupted();
    std::unique_ptr<Progress> progress;
    if (!m_single) {
        progress = m_session.Person.ShowProgress();
        progress->SetStep(loop.step);
        progress->SetMax(static_cast<float>(count));
    }
    try {
        ReadRows(loop, count, progress.get(), row, groupEnd);
    } catch (const Error& error) {
        // When the source breaks off, the rest of what belongs together has not been read.
        if (!loop.group.isEmpty() && !m_group.keys.isEmpty() && !m_group.givenUp) {
            const QString key = m_group.keys.last();
            GiveUpFor(error, key);
        }
        throw;
    }
    return m_result.outcome != RunResult::Outcome::Cancelled;
}

ovConnection& ImportRun::DatabaseOf(const Loop& loop) const {
    return loop.database != nullptr ? *loop.database : m_session.SourceConnection();
}

void ImportRun::ReadRows(const Loop& loop, qint64 count, Progress* progress, const RowWork& row,
                         const std::function<void()>& groupEnd) {
    m_group = {};
    qint64 read = 0;
    Recordset rows = DatabaseOf(loop).ExecuteWC(loop.select);
    for (const SourceRow current(rows); !rows.Eof(); rows.MoveNext()) {
        const QString group = GroupOf(loop, current);
        if (loop.group.isEmpty() || group != m_group.value || read == 0) {
            EndGroup(groupEnd);
            if (progress != nullptr && progress->Cancel()) {
                m_result.outcome = RunResult::Outcome::Cancelled;
                return;
            }
            m_group.value = group;
        }
        if (++read > count) {
            ++m_result.sourceRows; // the source has grown since the count
        }
        ProcessRow(NameOf(current, loop.table, loop.keyColumn), [&] { return row(current); });
        if (progress != nullptr) {
            progress->SetValue(static_cast<float>(read));
        }
    }
    EndGroup(groupEnd);
}

/// Told by the first run that follows, whatever it imports: the log that it begins is the one that is read.
void ImportRun::TellInterrupted() {
    if (m_underWay || m_session.Quadrix.InTransaction()) {
        return;
    }
    if (const QString interrupted = RowUnderWay::Interrupted(m_session); !interrupted.isEmpty()) {
        Log(interrupted);
    }
    m_underWay.emplace(m_session, m_result.module + u'.' + m_result.procedure);
}

void ImportRun::NoteUnderWay(const QString& key) {
    if (!m_underWay) {
        return;
    }
    try {
        m_underWay->Begin(key);
    } catch (const Error& error) {
        m_underWay.reset();
        Log(QStringLiteral("RIGA IN CORSO NON ANNOTATA: ") + error.Message());
    }
}

void ImportRun::ProcessRow(const QString& key, const std::function<RowOutcome()>& row) {
    if (m_group.givenUp) {
        AppendToLog(CountGivenUp(key, QStringLiteral("appartiene a ") + m_group.culprit));
        return;
    }
    m_group.keys.append(key);
    NoteUnderWay(key);
    Attempt(key, [&] { Account(row()); });
}

void ImportRun::EndGroup(const std::function<void()>& groupEnd) {
    if (groupEnd && !m_group.keys.isEmpty() && !m_group.givenUp) {
        const QString key = m_group.keys.last(); // the list goes when the rows are given up
        Attempt(key, groupEnd);
    }
    m_group = {};
    KeepWritten();
}

void ImportRun::Attempt(const QString& key, const std::function<void()>& work) {
    const ovErrors::Row underWay(m_session.Errors, key);
    const size_t before = m_written.size();
    for (int attempt = 1;; ++attempt) {
        m_rule.clear();
        try {
            work();
            return;
        } catch (const RowGivenUp& error) {
            GiveUp(key, error.Message());
            return;
        } catch (ImportError& error) {
            for (const QString& line : TakeBack(before)) {
                LogOrReport(line);
            }
            try {
                m_session.Errors.Decide(error, attempt);
            } catch (const RowGivenUp&) {
                GiveUp(key, error.Message());
                return;
            } catch (...) {
                GiveUpFor(error, key);
                throw;
            }
        } catch (const Error& error) {
            GiveUpFor(error, key);
            throw;
        }
    }
}

void ImportRun::Account(RowOutcome outcome) {
    switch (outcome) {
    case RowOutcome::Inserted:
        ++m_result.inserted;
        ++m_group.inserted;
        break;
    case RowOutcome::Updated:
        ++m_result.updated;
        ++m_group.updated;
        break;
    case RowOutcome::Skipped:
        ++m_result.skipped;
        ++m_group.skipped;
        ++m_result.skippedBy[m_rule];
        ++m_group.skippedBy[m_rule];
        break;
    }
}

/// The account is complete before the log is written, which may fail too.
void ImportRun::GiveUp(const QString& key, const QString& reason) {
    const QStringList left = TakeBack(0);
    QStringList lines = left;
    m_result.inserted -= m_group.inserted;
    m_result.updated -= m_group.updated;
    m_result.skipped -= m_group.skipped;
    for (const auto& [rule, rows] : m_group.skippedBy.asKeyValueRange()) {
        m_result.skippedBy[rule] -= rows;
    }
    m_result.skippedBy.removeIf([](QMap<QString, qint64>::iterator rule) { return rule.value() == 0; });
    for (const QString& other : std::as_const(m_group.keys)) {
        lines += CountGivenUp(other, other == key ? reason : QString(QStringLiteral("appartiene a ") + key));
    }
    for (const QString& table : std::exchange(m_changed, {})) {
        lines += QStringLiteral("Rimane aggiornata una riga di %1: %2").arg(FullName(table), key);
        m_session.Notes.Add(lines.last());
    }
    m_group = {.value = m_group.value, .givenUp = true, .culprit = key};
    try {
        for (const QString& line : std::as_const(lines)) {
            AppendToLog(line);
        }
    } catch (Error& error) {
        const QStringList what{QStringLiteral("Riga abbandonata: %1: %2").arg(key, reason)};
        error.AddContext((what + left).join(QStringLiteral("; ")));
        throw;
    }
}

/// Gives a row up for an error that goes on rising: a log that cannot be written must not take its place.
void ImportRun::GiveUpFor(const Error& error, const QString& key) noexcept {
    try {
        GiveUp(key, error.Message());
    } catch (...) {
        m_session.Errors.Monitoring(m_result.module, m_result.procedure);
    }
}

/// Returns the line that tells it in the log.
QString ImportRun::CountGivenUp(const QString& key, const QString& reason) {
    ++m_result.givenUpCount;
    if (m_result.givenUp.size() < KeptReasons) {
        m_result.givenUp.append({key, reason});
    }
    return QStringLiteral("Riga abbandonata: %1: %2").arg(key, reason);
}

/// Children go before their parents; when one cannot go, its parent stays with it: the code of a parent that is gone is
/// given to another one, which would find the child as its own. Returns what is to be told of those that stay.
QStringList ImportRun::TakeBack(size_t from) {
    while (m_written.size() > from) {
        const Written& row = m_written.back();
        if (row.id != 0) {
            try {
                m_session.Quadrix.Execute(
                    QStringLiteral("DELETE FROM %1 WHERE RECORD_ID = %2").arg(FullName(row.table)).arg(row.id));
            } catch (const Error& error) {
                return LeaveWritten(from, error.Message());
            }
            ++m_result.tables[row.table].takenBack;
        }
        if (row.forget) {
            row.forget();
        }
        m_written.pop_back();
    }
    return {};
}

QStringList ImportRun::LeaveWritten(size_t from, const QString& reason) {
    QStringList lines;
    for (; m_written.size() > from; m_written.pop_back()) {
        const Written& row = m_written.back();
        if (row.id == 0) {
            continue;
        }
        lines += QStringLiteral("Rimane in %1 la riga %2 di una riga abbandonata: %3")
                     .arg(FullName(row.table))
                     .arg(row.id)
                     .arg(reason);
        m_session.Notes.Add(lines.last());
    }
    return lines;
}

qint64 ImportRun::WrittenRows(const QString& table) const {
    const RunResult::TableCount count = m_result.tables.value(table);
    return count.inserted + count.updated - count.takenBack;
}

void ImportRun::WhenTakenBack(std::function<void()> forget) {
    if (m_insertedLast && !m_written.empty() && !m_written.back().forget) {
        m_written.back().forget = std::move(forget);
    } else {
        m_written.push_back({{}, 0, std::move(forget)});
    }
}

void ImportRun::Inserted(const QString& table) {
    m_insertedLast = true;
    ++m_result.tables[table].inserted;
    m_written.push_back({table, m_session.Quadrix.LastInsertId()});
}

void ImportRun::Updated(const QString& table) {
    m_insertedLast = false;
    ++m_result.tables[table].updated;
    m_changed.append(table);
}

void ImportRun::KeepWritten() {
    m_written.clear();
    m_changed.clear();
}

void ImportRun::Complete(const QString& message) {
    if (m_single || m_result.outcome != RunResult::Outcome::Done) {
        return;
    }
    QStringList lines{message};
    const QString losses = LossesText(m_result);
    if (!losses.isEmpty()) {
        lines.append(losses + QStringLiteral(". Il risultato e il log le elencano."));
    }
    if (m_session.Quadrix.InTransaction()) {
        lines.append(WasTrial + u'.');
    }
    m_session.Person.Message(lines.join(u'\n'), losses.isEmpty() ? Icon::Information : Icon::Exclamation);
}

void ImportRun::Log(const QString& message) { modImport::LogNote(m_session, message); }

void ImportRun::AppendToLog(const QString& line) { modImport::WriteImportLog(m_session, line, false); }

QString ImportRun::Quoted(const QString& text) const {
    return mod_ovTools::FormatSqlValue(text, DataType::NVarChar, m_session.Quadrix.ProviderType);
}

QString ImportRun::OnlyCode(const QString& lead, const QString& column, const QString& code) const {
    return code.isEmpty() ? QString() : QString(lead + u' ' + column + u" = " + Quoted(code));
}

} // namespace contract
