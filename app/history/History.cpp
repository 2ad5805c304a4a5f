#include "app/history/History.h"

#include "app/history/keptChanges.h"
#include "app/history/resultJson.h"
#include "sql/CodePage.h"
#include "sql/FileLock.h"
#include "sql/mod_ovTools.h"
#include "sql/Transaction.h"

#include <QFile>
#include <QJsonDocument>

namespace history {

namespace {

constexpr int MostGivenUp = 1000; ///< rows of a procedure that a run is loaded with

QString Text(const Recordset& row, const char* column) { return mod_ovTools::ToText(row.Value(QLatin1String(column))); }

qint64 Number(const Recordset& row, const char* column) { return row.Value(QLatin1String(column)).toLongLong(); }

/// Where notes of a kind stand, and in which words.
struct NoteTable {
    QString name;
    QString kind;   ///< an expression
    QString note;   ///< a column
    QString search; ///< an expression of all that is searched
};

const NoteTable& TableOf(const QString& kind) {
    static const NoteTable notes{"notes", "N.kind", "N.note",
                                 "COALESCE(N.kind, '') || ': ' || COALESCE(N.note, '') || ' ' || "
                                 "COALESCE(N.source_row, '')"};
    static const NoteTable rejects{"rejects", "NULL", "N.reason",
                                   "COALESCE(N.reason, '') || ' ' || COALESCE(N.source_row, '')"};
    return kind == GivenUpKind ? rejects : notes;
}

/// A text as LIKE looks for it anywhere.
QString Anywhere(QString text) {
    for (const QChar sign : {QChar(u'\\'), QChar(u'%'), QChar(u'_')}) {
        text.replace(sign, QString(u'\\') + sign);
    }
    return u'%' + text + u'%';
}

/// " WHERE ..." for the notes N of procedures, of a kind and with a text, where these are given. Of one procedure,
/// which is the usual case, they come in the order in which an index has them, so that a page of them is read alone.
SqlText NotesWhere(const QStringList& procedures, const QString& kind, const QString& text) {
    SqlText where;
    where += procedures.size() == 1 ? QString(u" WHERE N.procedure = " + procedures.first())
                                    : QString(u" WHERE N.procedure IN (" + procedures.join(u',') + u')');
    if (!kind.isEmpty() && kind != GivenUpKind) {
        where += Statement(" AND N.kind = ?", {kind});
    }
    if (!text.isEmpty()) {
        where += Statement(QStringLiteral(" AND (%1) LIKE ? ESCAPE '\\'").arg(TableOf(kind).search), {Anywhere(text)});
    }
    return where;
}

QStringView OrderText(NoteOrder order) {
    switch (order) {
    case NoteOrder::Row:
        return u"N.source_row, N.id";
    case NoteOrder::Text:
        return u"note, N.id";
    case NoteOrder::OpenFirst:
        return u"N.done, N.id";
    default:
        return u"N.id";
    }
}

/// Of a row given up R.
const QString IsImported = QStringLiteral("R.id IN (SELECT reject FROM imported_rejects)");

/// Runs with the database that each has written to. @param rest of the query, from WHERE on
SqlText SelectRuns(QAnyStringView rest, const QVariantList& values) {
    return Statement(QString("SELECT R.*, D.place AS place, D.identity AS identity FROM runs R LEFT JOIN "
                             "written_databases D ON D.id = R.target " +
                             rest.toString()),
                     values);
}

/// Rows given up, with the last run that has imported them since. @param rest of the query, from WHERE or a further
/// JOIN on
SqlText SelectRejects(QStringView rest, const QVariantList& values) {
    const QString query = QStringLiteral(
        "SELECT R.*, P.name AS name, (SELECT MAX(I.run) FROM imported_rejects I WHERE I.reject = R.id) AS imported_by, "
        "(SELECT I.mended FROM imported_rejects I WHERE I.reject = R.id ORDER BY I.run DESC LIMIT 1) AS imported_as "
        "FROM rejects R JOIN procedures P ON P.id = R.procedure ");
    return Statement(QString(query + rest), values);
}

Reject RejectOf(const Recordset& row) {
    Reject reject{Number(row, "id"),
                  Text(row, "name"),
                  {Text(row, "source_row"),
                   Text(row, "source_table"),
                   Text(row, "source_key"),
                   Number(row, "number"),
                   Text(row, "reason"),
                   {},
                   {},
                   static_cast<int>(Number(row, "loop")),
                   Number(row, "place")},
                  Number(row, "imported_by"),
                  row.Value("imported_as").toString()};
    for (const NamedValue& each : ValuesOf(Text(row, "row_values"))) {
        reject.row.columns.append(each.name);
        reject.row.values.append(each.value);
    }
    return reject;
}

} // namespace

bool Run::IsUndone() const {
    return std::any_of(procedures.begin(), procedures.end(),
                       [](const ProcedureRun& procedure) { return !procedure.undone.isEmpty(); });
}

QString ElsewhereText(const Run& run) {
    return run.wasReplaced
               ? QStringLiteral(
                     "ha scritto in un altro database, che stava allo stesso posto (%1): quello che c'è adesso "
                     "è stato creato di nuovo, o è un altro file con lo stesso nome")
                     .arg(run.database)
               : QStringLiteral("ha scritto in un altro database (%1), non in quello delle impostazioni di adesso")
                     .arg(run.database);
}

QString EndingText(const Run& run) {
    if (run.isUnderWay) {
        return QStringLiteral("in corso");
    }
    if (run.ended.isValid() && run.procedures.empty()) {
        return QStringLiteral("non eseguita");
    }
    if (run.isPartial) {
        return (run.ended.isValid() ? ::EndingText(run.ending) : QStringLiteral("finita non si sa come")) +
               QStringLiteral("; la cronologia non la tiene per intero");
    }
    return run.WasKilled() ? QStringLiteral("interrotta: il programma è terminato prima della fine")
                           : ::EndingText(run.ending);
}

History::History(const QString& path)
    : m_path(path),
      m_file(Open(path)) {}

History::History(Session& session)
    : History(FilePath(session.Config.ConfigFile())) {
    m_database = DatabaseOf(session.Quadrix);
}

QString History::Here(const QString& runs) const {
    const qint64 number = m_database ? NumberOf(*m_file, *m_database) : 0;
    return WroteTo(m_database && number == 0 ? -1 : number, runs); // of one that no run has written to there are none
}

Run History::RunOf(const Recordset& row) const {
    Run run;
    run.id = Number(row, "id");
    run.started = TimeOf(row.Value(QStringLiteral("started")));
    run.ended = TimeOf(row.Value(QStringLiteral("ended")));
    run.isUnderWay = !run.ended.isValid() && FileLock::IsTaken(LockPath(m_path, run.id));
    run.ending = static_cast<Ending>(Number(row, "ending"));
    run.isTrial = Number(row, "trial") != 0;
    run.isPartial = Number(row, "partial") != 0 || QFile::exists(PartialPath(m_path, run.id));
    run.worker = Text(row, "worker");
    run.version = Text(row, "version");
    run.company = Text(row, "company");
    run.companyName = Text(row, "company_name");
    run.origin = Text(row, "origin");
    run.data = Text(row, "data");
    run.work = Text(row, "work");
    run.source = Text(row, "source");
    run.layout = Text(row, "layout");
    run.code = Text(row, "code");
    run.resumes = Number(row, "resumes");
    run.target = Number(row, "target");
    run.database = Text(row, "place");
    run.isElsewhere = m_database && run.target != 0 && !AreOne({run.database, Number(row, "identity")}, *m_database);
    run.wasReplaced = run.isElsewhere && AreOne({run.database, 0}, {m_database->place, 0});
    run.options = Text(row, "options").split(u'\n', Qt::SkipEmptyParts);
    return run;
}

void History::LoadProcedures(Run& run) const {
    const QString query =
        "SELECT P.*, (SELECT COUNT(*) FROM rejects R WHERE R.procedure = P.id) AS rejected, "
        "(SELECT COUNT(*) FROM rejects R WHERE R.procedure = P.id AND " +
        IsImported + ") AS imported, (SELECT COUNT(*) FROM rejects R WHERE R.procedure = P.id AND NOT " + IsImported +
        " AND (R.loop < P.reached_loop OR (COALESCE(R.loop, P.reached_loop) = P.reached_loop AND "
        "COALESCE(R.place, 0) <= P.reached_rows))) AS behind FROM procedures P WHERE run = ? ORDER BY id";
    Recordset rows = m_file->ExecuteWC(Statement(query, {run.id}));
    for (; !rows.Eof(); rows.MoveNext()) {
        ProcedureRun procedure;
        procedure.id = Number(rows, "id");
        const QString result = Text(rows, "result");
        procedure.hasEnded = !result.isEmpty();
        procedure.result = ResultFrom(QJsonDocument::fromJson(result.toUtf8()).object());
        procedure.result.module = Text(rows, "module");
        procedure.result.procedure = Text(rows, "name");
        procedure.reached = {static_cast<int>(Number(rows, "reached_loop")), Number(rows, "reached_rows"),
                             Text(rows, "reached_last"), Number(rows, "behind")};
        procedure.rejects = Number(rows, "rejected");
        procedure.imported = Number(rows, "imported");
        procedure.undone = Text(rows, "undone");
        procedure.origin = Text(rows, "origin");
        if (procedure.origin.isEmpty()) {
            procedure.origin = run.origin;
        }
        run.procedures.push_back(procedure);
    }
}

void History::LoadGivenUp(ProcedureRun& procedure) const {
    Recordset rows = m_file->ExecuteWC(Statement(
        "SELECT source_row, reason FROM rejects WHERE procedure = ? ORDER BY id LIMIT ?", {procedure.id, MostGivenUp}));
    for (; !rows.Eof(); rows.MoveNext()) {
        procedure.result.givenUp.append({Text(rows, "source_row"), Text(rows, "reason")});
    }
}

std::vector<Run> History::Runs(const QString& company, int most) const {
    SqlText query = company.isEmpty() ? SelectRuns("", {}) : SelectRuns("WHERE R.company = ?", {company});
    query += Statement(" ORDER BY R.id DESC LIMIT ?", {most});
    std::vector<Run> runs;
    {
        Recordset rows = m_file->ExecuteWC(query);
        for (; !rows.Eof(); rows.MoveNext()) {
            runs.push_back(RunOf(rows));
        }
    }
    for (Run& run : runs) {
        LoadProcedures(run);
    }
    return runs;
}

Run History::Load(qint64 number) const {
    std::optional<Run> run;
    {
        Recordset rows = m_file->ExecuteWC(SelectRuns("WHERE R.id = ?", {number}));
        if (rows.Eof()) {
            throw ImportError(QStringLiteral("nella cronologia non c'è l'esecuzione %1").arg(number));
        }
        run = RunOf(rows);
    }
    LoadProcedures(*run);
    for (ProcedureRun& procedure : run->procedures) {
        LoadGivenUp(procedure);
    }
    return *run;
}

qint64 History::LastRun(const QString& company) const {
    const std::vector<Run> runs = Runs(company, 1);
    return runs.empty() ? 0 : runs.front().id;
}

QString History::Log(qint64 run) const {
    Recordset rows = m_file->ExecuteWC(Statement("SELECT log FROM runs WHERE id = ?", {run}));
    const QByteArray packed = rows.Eof() ? QByteArray() : QByteArray::fromBase64(Text(rows, "log").toLatin1());
    return packed.isEmpty() ? QString() : DecodeText(qUncompress(packed), CodePage());
}

QStringList History::ProceduresOf(qint64 run) const {
    QStringList procedures;
    Recordset rows = m_file->ExecuteWC(Statement("SELECT id FROM procedures WHERE run = ?", {run}));
    for (; !rows.Eof(); rows.MoveNext()) {
        procedures.append(QString::number(Number(rows, "id")));
    }
    return procedures;
}

std::vector<NoteKind> History::NoteKinds(qint64 run, const QString& text, const QString& kind) const {
    SqlText query;
    query += u"SELECT N.kind AS kind, COUNT(*) AS rows, SUM(N.done) AS done FROM notes N";
    query += NotesWhere(ProceduresOf(run), kind, text);
    query += u" GROUP BY N.kind ORDER BY MIN(N.id)";
    Recordset rows = m_file->ExecuteWC(query);
    std::vector<NoteKind> kinds;
    for (; !rows.Eof(); rows.MoveNext()) {
        kinds.push_back({Text(rows, "kind"), Number(rows, "rows"), Number(rows, "done")});
    }
    return kinds;
}

NoteKind History::GivenUp(qint64 run, const QString& text) const {
    SqlText query;
    query += QStringLiteral("SELECT COUNT(*) AS rows, SUM(N.done) AS done FROM %1 N").arg(TableOf(GivenUpKind).name);
    query += NotesWhere(ProceduresOf(run), GivenUpKind, text);
    const Recordset rows = m_file->ExecuteWC(query);
    return {GivenUpKind, Number(rows, "rows"), Number(rows, "done")};
}

std::vector<Note> History::Notes(qint64 run, const QString& kind, const QString& text, qint64 from, int most,
                                 NoteOrder order) const {
    const NoteTable& table = TableOf(kind);
    SqlText query;
    query += QStringLiteral("SELECT N.id AS id, P.name AS name, %1 AS kind, N.source_row AS source_row, %2 AS note, "
                            "N.done AS done FROM %3 N JOIN procedures P ON P.id = N.procedure")
                 .arg(table.kind, table.note, table.name);
    query += NotesWhere(ProceduresOf(run), kind, text);
    query += u" ORDER BY ";
    query += OrderText(order);
    query += Statement(" LIMIT ? OFFSET ?", {most, from});
    Recordset rows = m_file->ExecuteWC(query);
    std::vector<Note> notes;
    for (; !rows.Eof(); rows.MoveNext()) {
        notes.push_back({Number(rows, "id"), Text(rows, "name"), kind == GivenUpKind ? GivenUpKind : Text(rows, "kind"),
                         Text(rows, "source_row"), Text(rows, "note"), Number(rows, "done") != 0});
    }
    return notes;
}

void History::SetDone(const Note& note, bool isDone) const {
    m_file->Execute(Statement(QStringLiteral("UPDATE %1 SET done = ? WHERE id = ?").arg(TableOf(note.kind).name),
                              {static_cast<int>(isDone), note.id}));
}

void History::SetKindDone(qint64 run, const QString& kind, const QString& text, bool isDone) const {
    const QString& table = TableOf(kind).name;
    SqlText update = Statement(QStringLiteral("UPDATE %1 SET done = ? WHERE id IN (SELECT N.id FROM %1 N").arg(table),
                               {static_cast<int>(isDone)});
    update += NotesWhere(ProceduresOf(run), kind, text);
    update += u")";
    m_file->Execute(update);
}

void History::ForEachReject(qint64 run, const std::function<void(const Reject&)>& work) const {
    Recordset rows = m_file->ExecuteWC(SelectRejects(u"WHERE P.run = ? ORDER BY R.procedure, R.id", {run}));
    for (; !rows.Eof(); rows.MoveNext()) {
        work(RejectOf(rows));
    }
}

std::optional<Reject> History::FindReject(qint64 note) const {
    const Recordset rows = m_file->ExecuteWC(SelectRejects(u"WHERE R.id = ?", {note}));
    return rows.Eof() ? std::nullopt : std::optional(RejectOf(rows));
}

QString History::KeyOf(const RejectedRow& row) {
    return QStringList{row.table, row.row, ValuesText(row.columns, row.values)}.join(u'\x1f');
}

QHash<QString, qint64> History::ImportedRejects(const QString& company, const QString& origin) const {
    Recordset rows = m_file->ExecuteWC(
        SelectRejects(QString("JOIN runs S ON S.id = P.run WHERE " + IsImported +
                              " AND S.company = ? AND COALESCE(P.origin, S.origin) = ? AND " + Here("S")),
                      {company, origin}));
    QHash<QString, qint64> imported;
    for (; !rows.Eof(); rows.MoveNext()) {
        const Reject reject = RejectOf(rows);
        imported.insert(KeyOf(reject.row), reject.id);
    }
    return imported;
}

std::vector<WaitingCode> History::WaitingCodes(const QString& company, int mostRows) const {
    std::vector<WaitingCode> codes;
    std::vector<qint64> procedures; ///< their numbers
    {
        const QString query =
            "SELECT C.list, C.field, C.code, COUNT(DISTINCT W.source_row) AS rows, R.id AS run, COALESCE(P.origin, "
            "R.origin) AS origin, COALESCE(R.origin, '') = '' AS several, P.name, P.id AS procedure "
            "FROM waiting_rows W JOIN open_codes C ON C.id = W.code "
            "JOIN procedures P ON P.id = W.procedure JOIN runs R ON R.id = P.run "
            "WHERE P.id IN (SELECT MAX(Q.id) FROM procedures Q JOIN runs S ON S.id = Q.run WHERE S.company = ? AND "
            "S.trial = 0 AND Q.undone IS NULL AND " +
            Here("S") +
            " GROUP BY Q.module, Q.name) GROUP BY C.list, C.field, C.code, P.id ORDER BY C.list, C.field, C.code";
        Recordset rows = m_file->ExecuteWC(Statement(query, {company}));
        for (; !rows.Eof(); rows.MoveNext()) {
            codes.push_back({{Text(rows, "list"), Text(rows, "field"), Text(rows, "code")},
                             Number(rows, "rows"),
                             {},
                             Number(rows, "run"),
                             Text(rows, "origin"),
                             Text(rows, "name"),
                             Number(rows, "several") != 0});
            procedures.push_back(Number(rows, "procedure"));
        }
    }
    for (size_t i = 0; i < codes.size(); ++i) {
        codes[i].first = RowsWaiting(procedures[i], codes[i].code).mid(0, mostRows);
    }
    return codes;
}

QStringList History::RowsWaiting(qint64 procedure, const OpenCode& code) const {
    Recordset rows = m_file->ExecuteWC(
        Statement("SELECT DISTINCT source_row FROM waiting_rows WHERE code = (SELECT id FROM open_codes WHERE list = ? "
                  "AND field = ? AND code = ?) AND procedure = ?",
                  {code.list, code.field, code.code, procedure}));
    QStringList names;
    for (; !rows.Eof(); rows.MoveNext()) {
        names.append(Text(rows, "source_row"));
    }
    return names;
}

History::Emptied History::EmptiedBehind(qint64 run, const QString& tables, qint64 procedure) const {
    struct Part {
        Emptied emptied;
        QVariant rows; ///< numbers; null: all
    };
    std::vector<Part> parts;
    {
        Recordset rows = m_file->ExecuteWC(Statement(
            QString("SELECT L.run AS emptied_by, W.target_table AS target_table, E.emptied_rows AS emptied_rows" +
                    history::EmptiedBehind() +
                    " AND P.run = ? AND W.target_table LIKE ? AND ? IN (0, P.id) ORDER BY L.run"),
            {run, tables, procedure}));
        for (; !rows.Eof(); rows.MoveNext()) {
            parts.push_back({{Number(rows, "emptied_by"), Text(rows, "target_table")}, rows.Value("emptied_rows")});
        }
    }
    const auto first = std::find_if(parts.begin(), parts.end(), [&](const Part& part) {
        return part.rows.isNull() || HasWritten(*m_file, run, part.emptied.table, RowNumbers(part.rows.toString()));
    });
    return first == parts.end() ? Emptied() : first->emptied;
}

qint64 History::Forget(const QDate& before, const QString& company) {
    Transaction transaction(*m_file);
    const QVariantList which{TimeText(before.startOfDay()), company, company};
    const QString old = QStringLiteral("started < ? AND (? = '' OR company = ?)");
    for (const char* table : {"notes", "rejects", "waiting_rows", "changes", "left_away", "touched_tables"}) {
        m_file->Execute(Statement(QStringLiteral("DELETE FROM %1 WHERE procedure IN (SELECT id FROM procedures WHERE "
                                                 "run IN (SELECT id FROM runs WHERE %2))")
                                      .arg(QLatin1String(table), old),
                                  which));
    }
    m_file->Execute(QStringLiteral("DELETE FROM imported_rejects WHERE reject NOT IN (SELECT id FROM rejects)"));
    m_file->Execute(Statement(
        QStringLiteral("DELETE FROM procedures WHERE run IN (SELECT id FROM runs WHERE %1)").arg(old), which));
    const qint64 runs = m_file->Execute(Statement(QStringLiteral("DELETE FROM runs WHERE %1").arg(old), which));
    transaction.Keep();
    return runs;
}

} // namespace history
