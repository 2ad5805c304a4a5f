#include "app/history/LaterRuns.h"

#include "app/history/keptChanges.h"
#include "app/history/resultJson.h"

#include <QJsonDocument>

namespace history {

LaterRuns::LaterRuns(const History& history, const Run& run)
    : m_history(history),
      m_run(run.id) {
    LoadHighest();
    LoadInserted();
    LoadEmptied();
    LoadDeleted();
}

void LaterRuns::ForEachInsertedRow(const QString& runs,
                                   const std::function<void(const QString& table, qint64 id)>& work) const {
    Recordset rows = m_history.File().ExecuteWC(
        Statement(QString("SELECT C.target_table, C.target_id, C.inserted FROM changes C JOIN procedures P ON P.id = "
                          "C.procedure WHERE P.run " +
                          runs + " ? AND C.kind = ?"),
                  {m_run, static_cast<int>(TargetChange::Kind::Inserted)}));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString table = rows.Fields(0).Value().toString();
        const QString inserted = rows.Fields(2).Value().toString();
        if (inserted.isEmpty()) {
            work(table, rows.Fields(1).Value().toLongLong());
        } else {
            ForEachInserted(inserted, [&](qint64 id, qint64) { work(table, id); });
        }
    }
}

void LaterRuns::LoadHighest() {
    ForEachInsertedRow(QStringLiteral("="), [this](const QString& table, qint64 id) {
        qint64& highest = m_highest[table];
        highest = std::max(highest, id);
    });
}

/// Those alone that a row of the run may have had: all the others are higher, and many.
void LaterRuns::LoadInserted() {
    ForEachInsertedRow(QStringLiteral(">"), [this](const QString& table, qint64 id) {
        if (id <= m_highest.value(table)) {
            m_inserted[table].insert(id);
        }
    });
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
        const QString table = rows.Fields(0).Value().toString();
        const qint64 id = rows.Fields(1).Value().toLongLong();
        if (id <= m_highest.value(table)) {
            m_deleted[table].insert(id, rows.Fields(2).Value().toLongLong());
        }
    }
}

} // namespace history
