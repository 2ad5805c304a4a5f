#include "adapters/contract/run/ImportRun.h"

#include "adapters/contract/run/RowLoop.h"
#include "adapters/contract/run/RowSelection.h"
#include "adapters/contract/run/SourceLayout.h"
#include "adapters/contract/run/SourceMemory.h"
#include "adapters/contract/run/targetBounds.h"
#include "core/lineSettings.h"
#include "core/runEnding.h"
#include "core/Trial.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

namespace contract {

ImportRun::ImportRun(Session& session, const QString& module, const QString& procedure, const QString& singleCode)
    : m_session(session),
      m_case(modImport::ReadFieldCase(session)),
      m_single(!singleCode.isEmpty()),
      m_start(session.Person.WorkedSeconds()) {
    m_account.Result.module = module;
    m_account.Result.procedure = procedure;
    m_session.Notes = {};
    m_session.Untranslated.Begin();
    m_session.FailedLookUps = {};
    if (m_session.Observer != nullptr) {
        m_session.Observer->ProcedureBegins(module, procedure);
    }
}

void ImportRun::Guard(const std::function<void()>& body) {
    const Operator::Busy busy(m_session.Person);
    try {
        body();
    } catch (const GivenUpByOperator&) {
        m_account.Result.outcome = RunResult::Outcome::Cancelled;
    } catch (...) {
        m_failed = true;
        m_session.Errors.Monitoring(m_account.Result.module, m_account.Result.procedure);
        m_account.Result.errors.append(m_session.Errors.Entries().last().message);
        LogError();
    }
    Finish();
}

void ImportRun::LogError() {
    if (!m_errorText.isEmpty()) {
        LogOrReport(m_errorText + m_account.Result.errors.last());
    }
}

void ImportRun::LogOrReport(const QString& message) {
    try {
        AppendToLog(message);
    } catch (Error& error) {
        error.AddContext(message);
        m_session.Errors.Monitoring(m_account.Result.module, m_account.Result.procedure);
    }
}

namespace {

/// What is left to be done about triggers that an error has left off; empty where its message tells that.
QString LeftToDo(const Error& error, const QString& table, const std::optional<QStringList>& waiting) {
    const auto* refused = dynamic_cast<const SqlError*>(&error);
    const QString statement = refused == nullptr ? QString() : refused->Statement();
    const auto begins = [&statement](QLatin1String word) { return statement.startsWith(word, Qt::CaseInsensitive); };
    if (!waiting) {
        return QStringLiteral("da eseguire a mano: ") +
               (statement.isEmpty() ? QStringLiteral("ALTER TABLE %1 ENABLE TRIGGER ALL").arg(table) : statement);
    }
    if (begins(QLatin1String("CREATE")) || begins(QLatin1String("DELETE"))) {
        return QStringLiteral("da eseguire a mano: ") + statement;
    }
    const bool isTold = statement.isEmpty() && refused != nullptr && !refused->MayPass();
    return isTold || waiting->isEmpty()
               ? QString()
               : QStringLiteral("i trigger '%1' attendono nella tabella QDX_TRIGGERS_OFF: la prossima importazione di "
                                "questi dati li riattiva")
                     .arg(waiting->join(QStringLiteral("', '")));
}

} // namespace

void ImportRun::SwitchTriggersOn(const QString& table, const std::optional<QStringList>& waiting) noexcept {
    const auto switchOn = [&] { m_session.Quadrix.AlterTriggersStatus(FullName(table), true); };
    try {
        try {
            switchOn();
        } catch (const Error&) {
            switchOn();
        }
    } catch (Error& error) {
        const bool isSure = waiting && !waiting->isEmpty();
        error.AddContext(QStringLiteral("I trigger di %1 %2 rimasti disattivati")
                             .arg(FullName(table), isSure ? QStringLiteral("sono") : QStringLiteral("possono essere")));
        if (const QString advice = LeftToDo(error, FullName(table), waiting); !advice.isEmpty()) {
            error.AddAdvice(advice);
        }
        m_failed = true;
        m_account.Result.errors.append(error.Message());
        m_session.Errors.Monitoring(m_account.Result.module, m_account.Result.procedure);
        LogOrReport(error.Message());
    }
}

void ImportRun::DoesNotReach(const Loop& loop) noexcept {
    if (m_session.Selection != nullptr && m_session.Selection->Limits()) { // it counts those that it was limited to
        return;
    }
    std::optional<qint64> rows;
    try {
        const ovErrors::Acting acting(m_session.Errors, ErrorAction::Abort); // a count is not worth a question
        ovConnection& database = loop.database != nullptr ? *loop.database : m_session.SourceConnection();
        rows = loop.count.isEmpty() ? std::nullopt : std::optional(database.ExecuteCommand(loop.count));
        m_account.Result.sourceRows += rows.value_or(0);
    } catch (...) { // what the run broke off for has been told
        rows.reset();
    }
    try {
        if (rows != 0) {
            Tell(QStringLiteral("%1, righe non lette: %2")
                     .arg(loop.step, rows ? QString::number(*rows) : QStringLiteral("non si sa quante")));
        }
    } catch (...) {
        m_session.Errors.Monitoring(m_account.Result.module, m_account.Result.procedure);
    }
}

/// A run that broke off has not reached those of the rows it was limited to that it has not met.
void ImportRun::CountNotMet() {
    const bool brokeOff = m_failed || WasCancelled();
    if (brokeOff && m_session.Selection != nullptr && m_session.Selection->Limits()) {
        m_account.Result.sourceRows += static_cast<qint64>(m_session.Selection->NotMet().size());
    }
}

void ImportRun::Finish() {
    CommitAccount();
    TellNotMet();
    CountNotMet();
    m_account.Result.notReached =
        std::max<qint64>(0, m_account.Result.sourceRows - m_account.Result.inserted - m_account.Result.updated -
                                m_account.Result.skipped - m_account.Result.givenUpCount);
    if (m_failed) {
        m_account.Result.outcome = RunResult::Outcome::Failed;
    }
    m_account.Result.untranslated = m_session.Untranslated.First();
    m_account.Result.untranslatedCount = m_session.Untranslated.Count();
    m_account.Result.seconds = m_session.Person.WorkedSeconds() - m_start;
    m_account.Result.notes = std::exchange(m_session.Notes, {});
    const LookUpFailures failed = std::exchange(m_session.FailedLookUps, {});
    m_account.Result.failedLookUps = failed.count;
    LogEnding();
    m_account.Result.errors += failed.messages; // these stand in the log, each with its row
    m_session.Results.append(m_account.Result);
    if (m_session.Observer != nullptr) {
        m_session.Observer->ProcedureEnds(m_account.Result);
    }
}

bool ImportRun::IsPart() const {
    const RowSelection* rows = m_session.Selection;
    return m_single || GoesOn() || (rows != nullptr && rows->Limits());
}

bool ImportRun::GoesOn() const {
    return m_session.Selection != nullptr && m_session.Selection->ReachedBefore().has_value();
}

bool ImportRun::HasWrittenBefore(const QString& table, qint64 id) const {
    return m_session.Selection != nullptr && m_session.Selection->HasWritten(FullName(table), id);
}

/// Rows that the run was limited to and the source did not have.
void ImportRun::TellNotMet() {
    if (m_session.Selection == nullptr || m_failed || m_account.Result.outcome != RunResult::Outcome::Done) {
        return;
    }
    try {
        for (const RowSelection::Row& row : m_session.Selection->NotMet()) {
            m_account.Result.notFound += row.isOfFile ? 1 : 0;
            if (m_session.Selection->IsToldOtherwise(row)) {
                Log(QStringLiteral("RIGA CHE NON SI RITROVA: ") + row.name +
                    QStringLiteral(": la sorgente si legge ora in un altro modo, per testate o per righe, e non si può "
                                   "dire se ce l'ha ancora"));
                continue;
            }
            Log(QStringLiteral("RIGA CHE LA FONTE NON HA PIÙ: ") + row.name +
                (row.mended.isEmpty() ? QString()
                                      : QStringLiteral(", o non più con i valori che aveva: la correzione non "
                                                       "si applica")));
        }
    } catch (Error&) {
        m_session.Errors.Monitoring(m_account.Result.module, m_account.Result.procedure);
    }
}

/// Without it nothing but the box, once it is closed, would tell how a run ended.
void ImportRun::LogEnding() {
    if (m_single) {
        return;
    }
    QStringList parts{
        QStringLiteral("Fine %1: %2").arg(m_account.Result.procedure, EndingText(EndingOf(m_account.Result)))};
    if (m_errorText.isEmpty()) { // else the error stands in the log already
        parts += m_account.Result.errors;
    }
    parts.append(RowsLine(m_account.Result));
    if (m_session.Quadrix.InTransaction()) {
        parts.append(WasTrial);
    }
    const QString line = parts.join(QStringLiteral(". ")).replace(u'\n', QLatin1String(" "));
    try {
        AppendToLog(line);
    } catch (Error& error) {
        if (!m_failed) {
            error.AddContext(line);
            m_session.Errors.Monitoring(m_account.Result.module, m_account.Result.procedure);
        }
    }
}

void ImportRun::Announce(const QString& announcement) {
    if (!m_single) {
        modImport::WriteImportLog(m_session, announcement, true);
        LogLines();
    }
}

void ImportRun::AnnounceAppending(const QString& announcement) {
    if (!m_single) {
        AppendToLog(announcement);
        LogLines();
    }
}

void ImportRun::LogLines() {
    for (const QString& line : modMain::UnencryptedLines(m_session) + modImport::FieldCaseLines(m_session)) {
        AppendToLog(line);
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
    m_lengths.insert(lacks.lengths);
    for (const QString& line : {NarrowLine(lacks), DemandedLine(lacks)}) {
        if (!line.isEmpty()) {
            Log(line);
        }
    }
    for (const QString& change : RememberSource(m_session, m_account.Result.module, needs)) {
        Log(change);
    }
    for (const QString& filter : m_single ? QStringList() : FilterLines(m_session, needs)) {
        Tell(filter);
    }
}

void ImportRun::Truncate(bool reset, const QStringList& tables) {
    if (!reset) {
        return;
    }
    for (const QString& table : tables) {
        const QString name = FullName(table);
        WillEmpty(name);
        const qint64 rows = m_session.Quadrix.Execute(QStringLiteral("TRUNCATE TABLE ") + name);
        TellEmptied(name, rows, EmptiedLine(name, rows));
    }
}

void ImportRun::Delete(const QString& words, const QString& table, const QString& condition) {
    WillEmpty(table, condition);
    const QString where = condition.isEmpty() ? QString() : QString(u" WHERE " + condition);
    const qint64 rows = m_session.Quadrix.Execute(words + u' ' + table + where);
    TellEmptied(table, rows, QStringLiteral("Tabella %1: %2").arg(table, DeletedText(rows)));
}

void ImportRun::WillEmpty(const QString& table, const QString& condition) const {
    if (m_session.Observer != nullptr) {
        m_session.Observer->TableIsEmptied(table, condition);
    }
}

void ImportRun::TellEmptied(const QString& table, qint64 rows, const QString& line) {
    m_account.Result.emptied.append({table, rows});
    if (rows > 0) {
        AppendToLog(line);
    }
}

ImportRun::RowShape& ImportRun::ShapeOf(const schema::Table& table, const std::vector<qint16>& fields) {
    const auto* bytes = reinterpret_cast<const char*>(fields.data());
    const auto size = static_cast<qsizetype>(fields.size()) * qsizetype(sizeof(qint16));
    const auto known = m_shapes.find({&table, QByteArray::fromRawData(bytes, size)});
    if (known != m_shapes.end()) {
        return *known;
    }
    QMap<qint16, QString> names;
    for (size_t place = 0; place < fields.size(); ++place) {
        if (fields[place] >= 0 && table.columns[place].type != DataType::Object) {
            names.insert(fields[place], table.columns[place].name);
        }
    }
    return *m_shapes.insert({&table, QByteArray(bytes, size)}, {FullName(table.name), names.values(), {}});
}

bool ImportRun::Ask(const QString& question) {
    if (const auto known = m_answers.constFind(question); known != m_answers.cend()) {
        return *known;
    }
    const Answer answer = m_session.Person.Ask(question);
    if (answer == Answer::GivenUp) {
        throw GivenUpByOperator();
    }
    return *m_answers.insert(question, answer == Answer::Yes);
}

QString ImportRun::Input(const QString& prompt, const QString& title, const QString& defaultText) {
    if (const auto known = m_texts.constFind(prompt); known != m_texts.cend()) {
        return *known;
    }
    const auto typed = m_session.Person.Input(prompt, title, defaultText);
    if (!typed) {
        throw GivenUpByOperator();
    }
    return *m_texts.insert(prompt, *typed);
}

bool ImportRun::Rows(const Loop& loop, const RowWork& row, const std::function<void()>& groupEnd) {
    return RowLoop(*this, loop, row, groupEnd).Run();
}

bool ImportRun::TakesRowsBack() {
    if (!m_takesRowsBack) {
        const QStringList tables = TablesWithoutTransactions(m_session, m_session.UserManager.Azienda());
        m_takesRowsBack = tables.isEmpty();
        if (!tables.isEmpty()) {
            Log(QStringLiteral(
                    "TABELLE SENZA TRANSAZIONI: di una riga abbandonata resta scritto ciò che ha già scritto "
                    "(%1)")
                    .arg(tables.join(QStringLiteral(", "))));
        }
    }
    return *m_takesRowsBack;
}

void ImportRun::CommitAccount() {
    m_account.EndRow();
    m_account.Commit();
}

void ImportRun::Inserted(const QString& table, const PendingRows::Id& id) {
    m_account.Inserted(table);
    if (id != nullptr) {
        m_lastIds[table] = id;
    }
}

qint64 ImportRun::LastId(const QString& table) const {
    const PendingRows::Id id = m_lastIds.value(table);
    if (id == nullptr) {
        return 0;
    }
    if (*id == 0) {
        m_session.Quadrix.SendPending();
    }
    return *id;
}

void ImportRun::KeepImages(TargetChange change, const QString& where) {
    static const QString id = QStringLiteral("RECORD_ID");
    const QString wanted = change.columns.isEmpty() ? QStringLiteral("*")
                                                    : QString(id + u", " + change.columns.join(QStringLiteral(", ")));
    Recordset rows =
        m_session.Quadrix.ExecuteWC(QStringLiteral("SELECT %1 FROM %2 %3").arg(wanted, change.table, where));
    for (; !rows.Eof(); rows.MoveNext()) {
        change.before.clear();
        for (const QString& column : rows.Columns()) {
            change.before.insert(column, rows.Value(column));
        }
        change.id = change.before.take(id).toLongLong();
        TellChange(change, [](TargetChange&) {});
    }
}

qint64 ImportRun::DeleteRows(const QString& table, const QString& condition) {
    const QString where = QStringLiteral("WHERE ") + condition;
    if (KeepsImages()) {
        KeepImages({TargetChange::Kind::Deleted, FullName(table), 0}, where);
    }
    return m_session.Quadrix.Execute(QStringLiteral("DELETE FROM %1 %2").arg(FullName(table), where));
}

void ImportRun::Complete(const QString& message) {
    if (m_beforeCompletion && m_account.Result.outcome == RunResult::Outcome::Done) {
        m_beforeCompletion();
    }
    if (m_failed || m_single || m_account.Result.outcome != RunResult::Outcome::Done) {
        return;
    }
    QStringList lines{message};
    const QString losses = LossesText(m_account.Result);
    if (!losses.isEmpty()) {
        lines.append(losses + QStringLiteral(". Il risultato e il log le elencano."));
    }
    if (m_session.Quadrix.InTransaction()) {
        lines.append(WasTrial + u'.');
    }
    m_session.Person.Message(lines.join(u'\n'), losses.isEmpty() ? Icon::Information : Icon::Exclamation);
}

void ImportRun::Tell(const QString& line) {
    if (!m_account.Result.details.contains(line)) {
        m_account.Result.details.append(line);
        AppendToLog(line);
    }
}

void ImportRun::Log(const QString& message) { modImport::LogNote(m_session, message); }

void ImportRun::AppendToLog(const QString& line) { modImport::WriteImportLog(m_session, line, false); }

QString ImportRun::Quoted(const QString& text) const { return TextLiteral(m_session.Quadrix, text); }

QString ImportRun::OnlyCode(const QString& lead, const QString& column, const QString& code) const {
    return code.isEmpty() ? QString() : QString(lead + u' ' + column + u" = " + Quoted(code));
}

} // namespace contract
