#include "app/history/Recorder.h"

#include "adapters/contract/run/RowSelection.h"
#include "app/history/History.h"
#include "app/history/historyFile.h"
#include "app/history/resultJson.h"
#include "core/modImport.h"
#include "core/runEnding.h"
#include "core/worker.h"
#include "sql/CodePage.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"
#include "sql/Transaction.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <array>
#include <charconv>

namespace history {

namespace {

constexpr qint64 MostMilliseconds = 500;
constexpr size_t MostWaiting = 5000;
constexpr qsizetype MostLists = 1000;

/// A log as the history keeps it: packed, as it repeats itself.
QString Packed(const QByteArray& log) { return QString::fromLatin1(qCompress(log).toBase64()); }

/// What a file holds from a place on; null when it cannot be read.
QString PackedLog(const QString& path, qint64 start = 0) {
    QFile log(path);
    return log.open(QIODevice::ReadOnly) && log.seek(start) ? Packed(log.readAll()) : QString();
}

/// The number, and a blank behind it.
void AppendNumber(QString& text, qint64 number) {
    std::array<char, 24> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text += QLatin1String(digits.data(), end - digits.data());
    text += u' ';
}

qint64 Number(const Recordset& row) { return row.Fields(0).Value().toLongLong(); }

} // namespace

Recorder::Recorder(Session& session, RunFacts facts)
    : m_session(session),
      m_isPart(session.Selection != nullptr || !facts.code.isEmpty()),
      m_keepsImages(!facts.isTrial),
      m_kept(facts.kept),
      m_first(session.Results.size()),
      m_logFile(session.LogFile) {
    Try([&] { Begin(facts); });
    m_before = std::exchange(m_session.Observer, this);
}

Recorder::~Recorder() {
    m_session.Observer = m_before;
    Try([this] { End(); });
    if (m_isPartial) {
        TellPartial();
    }
    TellTrouble();
    if (m_kept && m_procedure != 0) {
        m_kept(m_run);
    }
}

/// Nothing of what the history has trouble with may reach the import.
template<class Work>
void Recorder::Try(const Work& work) noexcept {
    try {
        work();
    } catch (const std::exception& error) {
        m_file.reset();
        m_waiting.clear();
        m_inserted.clear();
        m_updated.clear();
        m_isPartial = m_run != 0;
        m_trouble =
            (m_isPartial ? QStringLiteral("La cronologia non tiene il resto di questa esecuzione, che annullarla "
                                          "non toglierebbe: ")
                         : QStringLiteral("La cronologia non tiene questa esecuzione: ")) +
            MessageOf(error);
    }
}

/// A procedure begins the log anew: what is told before it would not be read.
void Recorder::TellTrouble() noexcept {
    if (m_trouble.isEmpty()) {
        return;
    }
    const QString trouble = std::exchange(m_trouble, {});
    if (m_session.Results.size() > m_first) {
        m_session.Results.last().details.append(trouble);
    }
    try {
        modImport::WriteImportLog(m_session, trouble, false);
    } catch (const std::exception&) { // the log tells of its own trouble
    }
}

void Recorder::Begin(const RunFacts& facts) {
    const QString path = FilePath(m_session.Config.ConfigFile());
    m_file = Open(path);
    m_file->Execute(QStringLiteral("PRAGMA cache_size = -1024")); // KiB: it only adds
    AdoptLogs();
    AdoptPartial();
    const QString company = facts.company.isEmpty() ? m_session.UserManager.Azienda() : facts.company;
    const Recordset names = m_session.Quadrix.ExecuteWC(QStringLiteral("SELECT AZRAS FROM SYS_AZI WHERE CDAZI = ") +
                                                        TextLiteral(m_session.Quadrix, company));
    if (!facts.isTrial) {
        Identify(m_session.Quadrix);
    }
    m_target = KeptNumberOf(*m_file, DatabaseOf(m_session.Quadrix));
    m_file->Execute(Statement("INSERT INTO runs (started, worker, version, company, company_name, origin, data, work, "
                              "source, layout, code, options, resumes, trial, log_file, target) "
                              "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                              {TimeText(m_session.Now()), WorkerText(), QCoreApplication::applicationVersion(), company,
                               names.Eof() ? QString() : names.Fields(0).Value().toString(), facts.origin, facts.data,
                               facts.work, facts.source, facts.layout, facts.code, facts.options.join(u'\n'),
                               facts.resumes, static_cast<int>(facts.isTrial), m_session.LogFile, m_target}));
    m_company = company;
    m_origin = facts.origin;
    m_run = m_file->LastInsertId();
    m_lock = FileLock::Take(LockPath(path, m_run), WorkText(m_session.Now(), facts.work));
    m_since.start();
}

/// The log of a run that was killed is there until the next one begins it anew.
void Recorder::AdoptLogs() {
    std::vector<qint64> killed;
    {
        Recordset runs = m_file->ExecuteWC(
            Statement("SELECT id FROM runs WHERE ended IS NULL AND log IS NULL AND log_file = ?", {m_session.LogFile}));
        for (; !runs.Eof(); runs.MoveNext()) {
            const qint64 run = runs.Fields(0).Value().toLongLong();
            if (!FileLock::IsTaken(LockPath(FilePath(m_session.Config.ConfigFile()), run))) {
                killed.push_back(run);
            }
        }
    }
    if (!killed.empty()) { // the last one wrote it
        m_file->Execute(
            Statement("UPDATE runs SET log = ? WHERE id = ?", {PackedLog(m_session.LogFile), killed.back()}));
    }
}

/// What runs have left beside a history that they could not write to.
void Recorder::AdoptPartial() {
    const QFileInfo own(FilePath(m_session.Config.ConfigFile()));
    for (const QFileInfo& file :
         own.dir().entryInfoList({own.fileName() + QStringLiteral(".*.parziale")}, QDir::Files)) {
        m_file->Execute(Statement("UPDATE runs SET partial = 1 WHERE id = ?",
                                  {file.completeSuffix().section(u'.', -2, -2).toLongLong()}));
        QFile::remove(file.filePath());
    }
}

/// Rows still wait for the codes that they waited for behind the run before this one, which may not come to them.
void Recorder::KeepWaiting() {
    m_file->Execute(Statement(
        "INSERT INTO waiting_rows (procedure, code, source_row) SELECT DISTINCT ?, code, source_row FROM waiting_rows "
        "WHERE "
        "procedure = (SELECT MAX(P.id) FROM procedures P JOIN runs R ON R.id = P.run JOIN procedures N ON "
        "N.id = ? JOIN runs M ON M.id = N.run WHERE P.id < N.id AND P.module = N.module AND P.name = N.name AND "
        "R.company = M.company AND COALESCE(R.target = M.target, 1) = 1 AND R.trial = 0 AND P.undone IS NULL)",
        {m_procedure, m_procedure}));
    m_lastKept = m_file->ExecuteWC(Statement("SELECT COALESCE(MAX(rowid), 0) FROM waiting_rows", {}))
                     .Fields(0)
                     .Value()
                     .toLongLong();
}

/// Rows that the run was limited to wait no longer for what they had waited for before it: those that are done and,
/// where it has come to the end, those that the source has no more. One that was given up, or not reached, waits on.
void Recorder::KeepDone(const RunResult& result) {
    if (m_session.Selection == nullptr || !m_keepsImages) {
        return;
    }
    QStringList names = m_session.Selection->DoneNames();
    if (result.outcome == RunResult::Outcome::Done) {
        for (const contract::RowSelection::Row& row : m_session.Selection->NotMet()) {
            names.append(row.name);
        }
    }
    for (const QString& name : std::as_const(names)) {
        Keep(Statement("DELETE FROM waiting_rows WHERE procedure = ? AND source_row = ? AND rowid <= ?",
                       {m_procedure, name, m_lastKept}));
    }
}

void Recorder::Begins(const QString& procedure, const QString& origin) {
    m_name = procedure;
    if (m_origin != origin) {
        m_origin = origin;
        m_imported.reset();
    }
}

void Recorder::ProcedureBegins(const QString& module, const QString& procedure) noexcept {
    Try([&] {
        if (m_file != nullptr) {
            Write();
            m_file->Execute(Statement("INSERT INTO procedures (run, module, name, origin) VALUES (?, ?, ?, ?)",
                                      {m_run, module, m_name.isEmpty() ? procedure : m_name, m_origin}));
            m_procedure = m_file->LastInsertId();
            m_leavesCodes = false;
            m_written.clear();
            if (m_keepsImages) {
                KeepWaiting();
            }
        }
    });
}

void Recorder::NoteStands(const QString& row, const QString& note) noexcept {
    Try([&] {
        Keep(Statement("INSERT INTO notes (procedure, kind, source_row, note) VALUES (?, ?, ?, ?)",
                       {m_procedure, note.section(u':', 0, 0), row, note.section(u':', 1).trimmed()}));
    });
}

void Recorder::CodeIsOpen(const QString& row, const OpenCode& code) noexcept {
    Try([&] {
        if (m_file != nullptr) {
            Keep(Statement("INSERT INTO waiting_rows (procedure, code, source_row) VALUES (?, ?, ?)",
                           {m_procedure, NumberOf(code), row}));
        }
    });
}

void Recorder::TargetChanges(const TargetChange& change) noexcept {
    Try([&] {
        if (m_file == nullptr) {
            return;
        }
        m_stands = false;
        if (change.kind == TargetChange::Kind::Inserted) {
            KeepInserted(change);
        } else {
            SqlText statement = Statement(
                "INSERT INTO changes (procedure, kind, target_table, target_id, before, columns, digest) "
                "VALUES (?, ?, ?, ?, ?, ?, ?)",
                {m_procedure, static_cast<int>(change.kind), change.table, change.id,
                 change.before.isEmpty() ? QVariant()
                                         : ValuesText(change.before.keys(), change.before.values().toVector()),
                 ColumnList(change.columns), change.digest});
            if (change.kind == TargetChange::Kind::Deleted) { // its number may be given again
                CloseChanges();
                Keep(std::move(statement));
            } else {
                m_updated.push_back(std::move(statement));
                KeepWritten(change.table);
            }
        }
        if (++m_changes >= MostWaiting) {
            Write();
        }
    });
}

void Recorder::TableIsEmptied(const QString& table, const QString& condition) noexcept {
    Try([&] {
        if (!m_keepsImages || m_file == nullptr) { // a trial brings them back
            return;
        }
        const std::optional<RowNumbers> rows = condition.isEmpty() ? std::nullopt : NumbersOf(table, condition);
        KeepTouched(table, true, rows); // even of no row: what a run had deleted does not come back behind it
        if (!rows || !rows->IsEmpty()) {
            Write(); // before they go: that may take long
            KeepForgotten(table, rows);
        }
    });
}

void Recorder::KeepWritten(const QString& table) {
    if (!m_written.contains(table)) {
        m_written.insert(table);
        KeepTouched(table, false);
    }
}

void Recorder::KeepInserted(const TargetChange& change) {
    constexpr qsizetype longest = qsizetype(8) * 1024; // memory stays in small pieces
    // Rows of one shape are told with the very same list.
    const auto same = std::find_if(m_inserted.begin(), m_inserted.end(), [&change](const InsertedRows& one) {
        return one.columns.constData() == change.columns.constData() && one.rows.size() < longest &&
               one.table == change.table;
    });
    InsertedRows& rows =
        same == m_inserted.end() ? m_inserted.emplace_back(InsertedRows{change.table, change.columns, {}, {}}) : *same;
    AppendNumber(rows.rows, change.id);
    AppendNumber(rows.rows, change.digest);
    ++m_place;
    AppendNumber(rows.places, m_place - std::exchange(rows.last, m_place));
    KeepWritten(change.table);
}

void Recorder::CloseChanges() {
    m_changes = 0;
    m_place = 0;
    ++m_block;
    const bool areMixed = m_inserted.size() > 1; // rows refer to rows of other tables
    for (const InsertedRows& one : m_inserted) {
        m_waiting.push_back(Statement(
            "INSERT INTO changes (procedure, kind, target_table, columns, inserted, places) VALUES (?, ?, ?, ?, ?, ?)",
            {m_procedure, static_cast<int>(TargetChange::Kind::Inserted), one.table, ColumnList(one.columns),
             one.rows.trimmed(),
             areMixed ? QVariant(QString(QString::number(m_block) + u' ' + one.places.trimmed())) : QVariant()}));
    }
    m_inserted.clear();
    std::move(m_updated.begin(), m_updated.end(), std::back_inserter(m_waiting));
    m_updated.clear();
}

/// The number under which a list of columns is kept: few are written over and over.
qint64 Recorder::ColumnList(const QStringList& columns) {
    if (const auto same = m_listsByPlace.constFind(columns.constData()); same != m_listsByPlace.constEnd()) {
        return same->second;
    }
    const QString names = columns.join(u',');
    qint64& number = m_columnLists[names];
    if (number == 0) {
        m_file->Execute(Statement("INSERT OR IGNORE INTO column_lists (names) VALUES (?)", {names}));
        number = Number(m_file->ExecuteWC(Statement("SELECT id FROM column_lists WHERE names = ?", {names})));
    }
    if (m_listsByPlace.size() >= MostLists) {
        m_listsByPlace.clear();
    }
    m_listsByPlace.insert(columns.constData(), {columns, number});
    return number;
}

/// The same of a code, which many rows wait for.
qint64 Recorder::NumberOf(const OpenCode& code) {
    qint64& number = m_codes[code.list + u'\x1f' + code.field + u'\x1f' + code.code];
    if (number == 0) {
        const QVariantList values{code.list, code.field, code.code};
        m_file->Execute(Statement("INSERT OR IGNORE INTO open_codes (list, field, code) VALUES (?, ?, ?)", values));
        number = Number(m_file->ExecuteWC(
            Statement("SELECT id FROM open_codes WHERE list IS ? AND field IS ? AND code IS ?", values)));
    }
    return number;
}

void Recorder::RowIsGivenUp(const RejectedRow& row) noexcept {
    Try([&] {
        Keep(Statement(
            "INSERT INTO rejects (procedure, source_row, source_table, source_key, number, reason, row_values, loop, "
            "place) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
            {m_procedure, row.row, row.table, row.key, row.number, row.reason, ValuesText(row.columns, row.values),
             row.loop, row.place}));
        KeepIfImported(row);
        if (m_since.elapsed() > MostMilliseconds) {
            Write();
        }
    });
}

void Recorder::RowsStand(int loop, qint64 rows, const QString& last) noexcept {
    Try([&] {
        m_reached = Reached{loop, rows, last};
        m_stands = true;
        if (m_reachedWaits || m_since.elapsed() > MostMilliseconds) {
            Write();
        }
    });
}

void Recorder::ProcedureEnds(const RunResult& result) noexcept {
    m_ending = std::max(m_ending, EndingOf(result));
    Try([&] {
        if (!result.logFile.isEmpty()) {
            m_logFile = result.logFile;
            m_logStart = result.logStart;
        }
        Keep(Statement("UPDATE procedures SET result = ? WHERE id = ?",
                       {QString::fromUtf8(QJsonDocument(ToJson(result)).toJson(QJsonDocument::Compact)), m_procedure}));
        KeepImported();
        KeepDone(result);
        m_stands = true;
        Write();
        const bool isWhole = !m_isPart && result.outcome == RunResult::Outcome::Done && !m_leavesCodes;
        if (m_file != nullptr && (isWhole || !result.emptied.isEmpty())) { // it has come to every row
            m_file->Execute(
                Statement("DELETE FROM waiting_rows WHERE procedure = ? AND rowid <= ?", {m_procedure, m_lastKept}));
        }
    });
    TellTrouble();
}

/// A row that is still what it was when it was given up, and was imported with mended values since, is in Quadrix.
void Recorder::KeepIfImported(const RejectedRow& row) {
    if (m_file == nullptr) {
        return;
    }
    if (!m_imported) {
        m_imported = History(m_session).ImportedRejects(m_company, m_origin);
    }
    if (const qint64 before = m_imported->value(History::KeyOf(row)); before != 0) {
        Keep(Statement("INSERT INTO imported_rejects (reject, run, mended) SELECT (SELECT MAX(id) FROM rejects), run, "
                       "mended FROM imported_rejects WHERE reject = ?",
                       {before}));
    }
}

/// Rows that earlier runs had given up are imported by now: the same row may have been given up by several.
void Recorder::KeepImported() {
    if (m_session.Selection == nullptr || !m_keepsImages) {
        return;
    }
    for (const contract::RowSelection::Row* row : m_session.Selection->DoneRejects()) {
        Keep(Statement(
            QString("INSERT OR IGNORE INTO imported_rejects (reject, run, mended) SELECT O.id, ?, ? FROM rejects R "
                    "JOIN rejects O ON O.source_row = R.source_row AND O.source_table = R.source_table AND "
                    "O.row_values = R.row_values JOIN procedures P ON P.id = O.procedure JOIN runs S ON S.id = P.run "
                    "WHERE R.id = ? AND S.company = ? AND COALESCE(P.origin, S.origin) = ? AND " +
                    WroteTo(m_target, "S")),
            {m_run, row->MendedText(), row->reject, m_company, m_origin}));
    }
}

void Recorder::Keep(SqlText statement) {
    if (m_file == nullptr) {
        return;
    }
    m_waiting.push_back(std::move(statement));
    if (m_waiting.size() >= MostWaiting) {
        Write();
    }
}

void Recorder::Write() {
    if (m_file == nullptr) {
        return;
    }
    CloseChanges();
    m_reachedWaits = m_reached && !m_stands;
    if (m_reached && m_stands) {
        m_waiting.push_back(Statement("UPDATE procedures SET reached_loop = ?, reached_rows = ?, reached_last = ?, "
                                      "reached_change = (SELECT MAX(id) FROM changes) WHERE id = ?",
                                      {m_reached->loop, m_reached->rows, m_reached->last, m_procedure}));
        m_reached.reset();
    }
    Transaction transaction(*m_file);
    for (const SqlText& statement : std::exchange(m_waiting, {})) {
        m_file->Execute(statement);
    }
    transaction.Keep();
    m_since.restart();
}

void Recorder::End() {
    if (m_file == nullptr) {
        return;
    }
    Write();
    TellEnd(*m_file, false);
}

void Recorder::TellEnd(ovConnection& file, bool isPartial) const {
    const QString log = m_log ? Packed(EncodeText(*m_log, CodePage())) : PackedLog(m_logFile, m_logStart);
    file.Execute(Statement(
        "UPDATE runs SET ended = ?, ending = ?, log = ?, log_file = ?, partial = ? WHERE id = ?",
        {TimeText(m_session.Now()), static_cast<int>(m_ending), log, m_logFile, static_cast<int>(isPartial), m_run}));
}

/// What stood in the way may be gone by the end of the run; else a file says it.
void Recorder::TellPartial() const noexcept {
    const QString path = FilePath(m_session.Config.ConfigFile());
    try {
        TellEnd(*Open(path), true);
    } catch (const std::exception&) {
        static_cast<void>(QFile(PartialPath(path, m_run)).open(QIODevice::WriteOnly));
    }
}

} // namespace history
