#include "app/history/LaterRuns.h"

#include "app/history/resultJson.h"

#include <QJsonDocument>

namespace history {

LaterRuns::LaterRuns(const History& history, const Run& run)
    : m_history(history),
      m_run(run.id) {
    LoadInserted();
    LoadEmptied();
    LoadDeleted();
}

void LaterRuns::LoadInserted() {
    Recordset rows = m_history.File().ExecuteWC(
        Statement("SELECT C.target_table, C.target_id, C.inserted FROM changes C JOIN procedures P ON P.id = "
                  "C.procedure WHERE P.run > ? AND C.kind = ?",
                  {m_run, static_cast<int>(TargetChange::Kind::Inserted)}));
    for (; !rows.Eof(); rows.MoveNext()) {
        QSet<qint64>& numbers = m_inserted[rows.Fields(0).Value().toString()];
        const QString inserted = rows.Fields(2).Value().toString();
        if (inserted.isEmpty()) {
            numbers.insert(rows.Fields(1).Value().toLongLong());
            continue;
        }
        const QList<QStringView> each = QStringView(inserted).split(u' ');
        for (qsizetype i = 0; i < each.size(); i += 2) { // a digest is behind each
            numbers.insert(each.at(i).toLongLong());
        }
    }
}

void LaterRuns::LoadEmptied() {
    Recordset rows = m_history.File().ExecuteWC(
        Statement("SELECT P.run, P.result FROM procedures P JOIN runs R ON R.id = P.run WHERE P.run > ? AND R.trial = "
                  "0 AND P.result IS NOT NULL ORDER BY P.id",
                  {m_run}));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QByteArray text = rows.Fields(1).Value().toString().toUtf8();
        for (const RunResult::Emptied& emptied : ResultFrom(QJsonDocument::fromJson(text).object()).emptied) {
            if (!m_emptied.contains(emptied.table)) {
                m_emptied.insert(emptied.table, rows.Fields(0).Value().toLongLong());
            }
        }
    }
}

/// What a run deleted that was taken back is there again.
void LaterRuns::LoadDeleted() {
    Recordset rows = m_history.File().ExecuteWC(
        Statement("SELECT C.target_table, C.target_id, P.run FROM changes C JOIN procedures P ON P.id = C.procedure "
                  "WHERE P.run > ? AND P.undone IS NULL AND C.kind = ?",
                  {m_run, static_cast<int>(TargetChange::Kind::Deleted)}));
    for (; !rows.Eof(); rows.MoveNext()) {
        m_deleted[rows.Fields(0).Value().toString()].insert(rows.Fields(1).Value().toLongLong(),
                                                            rows.Fields(2).Value().toLongLong());
    }
}

} // namespace history
