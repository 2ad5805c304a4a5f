#include "app/history/History.h"

#include "app/history/resultJson.h"
#include "sql/CodePage.h"
#include "sql/FileLock.h"
#include "sql/mod_ovTools.h"
#include "sql/Transaction.h"

#include <QJsonDocument>

namespace history {

namespace {

QString Text(const Recordset& row, const char* column) { return mod_ovTools::ToText(row.Value(QLatin1String(column))); }

qint64 Number(const Recordset& row, const char* column) { return row.Value(QLatin1String(column)).toLongLong(); }

/// The notes of a run, of a kind and with a text, where these are given.
SqlText NotesWhere(QStringView words, qint64 run, const QString& kind, const QString& text) {
    SqlText query;
    query += words;
    query += Statement(u" FROM notes N JOIN procedures P ON P.id = N.procedure WHERE P.run = ?", {run});
    if (!kind.isEmpty()) {
        query += Statement(u" AND N.kind = ?", {kind});
    }
    if (!text.isEmpty()) {
        query +=
            Statement(u" AND INSTR(LOWER(N.kind || ': ' || N.note || ' ' || N.source_row), ?) > 0", {text.toLower()});
    }
    return query;
}

} // namespace

QString EndingText(const Run& run) {
    if (run.isUnderWay) {
        return QStringLiteral("in corso");
    }
    return run.WasKilled() ? QStringLiteral("interrotta: il programma è terminato prima della fine")
                           : ::EndingText(run.ending);
}

History::History(const QString& path)
    : m_path(path),
      m_file(Open(path)) {}

Run History::RunOf(const Recordset& row) const {
    Run run;
    run.id = Number(row, "id");
    run.started = TimeOf(row.Value(QStringLiteral("started")));
    run.ended = TimeOf(row.Value(QStringLiteral("ended")));
    run.isUnderWay = !run.ended.isValid() && FileLock::IsTaken(LockPath(m_path, run.id));
    run.ending = static_cast<Ending>(Number(row, "ending"));
    run.isTrial = Number(row, "trial") != 0;
    run.worker = Text(row, "worker");
    run.version = Text(row, "version");
    run.company = Text(row, "company");
    run.companyName = Text(row, "company_name");
    run.origin = Text(row, "origin");
    run.data = Text(row, "data");
    run.work = Text(row, "work");
    run.source = Text(row, "source");
    run.options = Text(row, "options").split(u'\n', Qt::SkipEmptyParts);
    return run;
}

void History::LoadProcedures(Run& run) const {
    Recordset rows = m_file->ExecuteWC(Statement(
        u"SELECT P.*, (SELECT COUNT(*) FROM rejects R WHERE R.procedure = P.id) AS rejected FROM procedures P "
        u"WHERE run = ? ORDER BY id",
        {run.id}));
    for (; !rows.Eof(); rows.MoveNext()) {
        ProcedureRun procedure;
        procedure.id = Number(rows, "id");
        const QString result = Text(rows, "result");
        procedure.hasEnded = !result.isEmpty();
        procedure.result = ResultFrom(QJsonDocument::fromJson(result.toUtf8()).object());
        procedure.result.module = Text(rows, "module");
        procedure.result.procedure = Text(rows, "name");
        procedure.reached = {static_cast<int>(Number(rows, "reached_loop")), Number(rows, "reached_rows"),
                             Text(rows, "reached_last")};
        procedure.rejects = Number(rows, "rejected");
        procedure.undone = Text(rows, "undone");
        run.procedures.push_back(procedure);
    }
}

std::vector<Run> History::Runs(const QString& company, int most) const {
    SqlText query;
    query += u"SELECT * FROM runs";
    if (!company.isEmpty()) {
        query += Statement(u" WHERE company = ?", {company});
    }
    query += Statement(u" ORDER BY id DESC LIMIT ?", {most});
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
        Recordset rows = m_file->ExecuteWC(Statement(u"SELECT * FROM runs WHERE id = ?", {number}));
        if (rows.Eof()) {
            throw ImportError(QStringLiteral("nella cronologia non c'è l'esecuzione %1").arg(number));
        }
        run = RunOf(rows);
    }
    LoadProcedures(*run);
    return *run;
}

QString History::Log(qint64 run) const {
    Recordset rows = m_file->ExecuteWC(Statement(u"SELECT log FROM runs WHERE id = ?", {run}));
    const QByteArray packed = rows.Eof() ? QByteArray() : QByteArray::fromBase64(Text(rows, "log").toLatin1());
    return packed.isEmpty() ? QString() : DecodeText(qUncompress(packed), CodePage());
}

std::vector<NoteKind> History::NoteKinds(qint64 run) const {
    Recordset rows = m_file->ExecuteWC(
        Statement(u"SELECT N.kind AS kind, COUNT(*) AS rows, SUM(N.done) AS done FROM notes N JOIN procedures P ON "
                  u"P.id = N.procedure WHERE P.run = ? GROUP BY N.kind ORDER BY MIN(N.id)",
                  {run}));
    std::vector<NoteKind> kinds;
    for (; !rows.Eof(); rows.MoveNext()) {
        kinds.push_back({Text(rows, "kind"), Number(rows, "rows"), Number(rows, "done")});
    }
    return kinds;
}

qint64 History::CountNotes(qint64 run, const QString& kind, const QString& text) const {
    return m_file->ExecuteWC(NotesWhere(u"SELECT COUNT(*)", run, kind, text)).Fields(0).Value().toLongLong();
}

std::vector<Note> History::Notes(qint64 run, const QString& kind, const QString& text, qint64 from, int most) const {
    SqlText query = NotesWhere(u"SELECT N.id, P.name, N.kind, N.source_row, N.note, N.done", run, kind, text);
    query += Statement(u" ORDER BY N.id LIMIT ? OFFSET ?", {most, from});
    Recordset rows = m_file->ExecuteWC(query);
    std::vector<Note> notes;
    for (; !rows.Eof(); rows.MoveNext()) {
        notes.push_back({Number(rows, "id"), Text(rows, "name"), Text(rows, "kind"), Text(rows, "source_row"),
                         Text(rows, "note"), Number(rows, "done") != 0});
    }
    return notes;
}

void History::SetDone(qint64 note, bool isDone) {
    m_file->Execute(Statement(u"UPDATE notes SET done = ? WHERE id = ?", {static_cast<int>(isDone), note}));
}

void History::SetKindDone(qint64 run, const QString& kind, bool isDone) {
    m_file->Execute(Statement(
        u"UPDATE notes SET done = ? WHERE kind = ? AND procedure IN (SELECT id FROM procedures WHERE run = ?)",
        {static_cast<int>(isDone), kind, run}));
}

void History::ForEachReject(qint64 run, const std::function<void(const Reject&)>& work) const {
    Recordset rows = m_file->ExecuteWC(
        Statement(u"SELECT R.*, P.name AS name FROM rejects R JOIN procedures P ON P.id = R.procedure WHERE P.run = ? "
                  u"ORDER BY R.procedure, R.id",
                  {run}));
    for (; !rows.Eof(); rows.MoveNext()) {
        Reject reject{Number(rows, "id"),
                      Text(rows, "name"),
                      {Text(rows, "source_row"),
                       Text(rows, "source_table"),
                       Text(rows, "source_key"),
                       Number(rows, "number"),
                       Text(rows, "reason"),
                       {},
                       {}}};
        for (const NamedValue& each : ValuesOf(Text(rows, "row_values"))) {
            reject.row.columns.append(each.name);
            reject.row.values.append(each.value);
        }
        work(reject);
    }
}

std::vector<WaitingCode> History::WaitingCodes(const QString& company, int mostRows) const {
    std::vector<WaitingCode> codes;
    {
        Recordset rows = m_file->ExecuteWC(Statement(
            u"SELECT C.list, C.field, C.code, COUNT(*) AS rows, R.id AS run, R.origin, P.name FROM codes C "
            u"JOIN procedures P ON P.id = C.procedure JOIN runs R ON R.id = P.run "
            u"WHERE P.id IN (SELECT MAX(Q.id) FROM procedures Q JOIN runs S ON S.id = Q.run WHERE S.company = ? AND "
            u"S.trial = 0 "
            u"GROUP BY Q.module, Q.name) GROUP BY C.list, C.field, C.code, P.id ORDER BY C.list, C.field, C.code",
            {company}));
        for (; !rows.Eof(); rows.MoveNext()) {
            codes.push_back({{Text(rows, "list"), Text(rows, "field"), Text(rows, "code")},
                             Number(rows, "rows"),
                             {},
                             Number(rows, "run"),
                             Text(rows, "origin"),
                             Text(rows, "name")});
        }
    }
    for (WaitingCode& code : codes) {
        code.first = RowsWaiting(code.run, code.code).mid(0, mostRows);
    }
    return codes;
}

QStringList History::RowsWaiting(qint64 run, const OpenCode& code) const {
    Recordset rows = m_file->ExecuteWC(
        Statement(u"SELECT DISTINCT source_row FROM codes WHERE list = ? AND field = ? AND code = ? AND procedure IN "
                  u"(SELECT id FROM procedures WHERE run = ?)",
                  {code.list, code.field, code.code, run}));
    QStringList names;
    for (; !rows.Eof(); rows.MoveNext()) {
        names.append(Text(rows, "source_row"));
    }
    return names;
}

qint64 History::Forget(const QDate& before) {
    Transaction transaction(*m_file);
    const QString limit = TimeText(before.startOfDay());
    for (const char* table : {"notes", "rejects", "codes", "changes"}) {
        m_file->Execute(Statement(
            QStringLiteral("DELETE FROM %1 WHERE procedure IN (SELECT P.id FROM procedures P JOIN runs R ON R.id = "
                           "P.run WHERE R.started < ?)")
                .arg(QLatin1String(table)),
            {limit}));
    }
    m_file->Execute(Statement(u"DELETE FROM procedures WHERE run IN (SELECT id FROM runs WHERE started < ?)", {limit}));
    const qint64 runs = m_file->Execute(Statement(u"DELETE FROM runs WHERE started < ?", {limit}));
    transaction.Keep();
    return runs;
}

} // namespace history
