#include "app/history/LaterRuns.h"

#include "app/history/keptChanges.h"

namespace history {

namespace {

const QString TextsByLanguage = QStringLiteral("SYS_LNG"); ///< of all companies, each with rows of its own

} // namespace

LaterRuns::LaterRuns(const History& history, const Run& run)
    : m_history(history),
      m_run(run.id),
      m_company(run.company),
      m_here(WroteTo(run.target, QStringLiteral("R"))) {
    LoadHighest();
    LoadInserted();
    LoadEmptied();
    LoadOverwritten();
    LoadLeftAway();
}

const LaterRuns::LeftAway* LaterRuns::FindLeftAway(const QString& table, qint64 id) const {
    const auto rows = m_leftAway.constFind(table);
    if (rows == m_leftAway.cend()) {
        return nullptr;
    }
    const auto row = rows->constFind(id);
    return row == rows->cend() ? nullptr : &*row;
}

void LaterRuns::ForEachRow(const QString& runs, const std::vector<TargetChange::Kind>& kinds,
                           const std::function<void(const QString& table, qint64 id)>& work) const {
    QStringList numbers;
    for (const TargetChange::Kind kind : kinds) {
        numbers += QString::number(static_cast<int>(kind));
    }
    Recordset rows = m_history.File().ExecuteWC(
        Statement(QString("SELECT C.target_table, C.target_id, C.inserted FROM changes C JOIN procedures P ON P.id = "
                          "C.procedure JOIN runs R ON R.id = P.run WHERE P.run " +
                          runs + " ? AND C.kind IN (" + numbers.join(u',') + ") AND " + m_here),
                  {m_run}));
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

void LaterRuns::ForEachOwnRow(const std::function<void(const QString& table, qint64 id)>& work) const {
    ForEachRow(QStringLiteral("="), {TargetChange::Kind::Inserted, TargetChange::Kind::Updated}, work);
}

void LaterRuns::LoadHighest() {
    ForEachOwnRow([this](const QString& table, qint64 id) {
        qint64& highest = m_highest[table];
        highest = std::max(highest, id);
    });
}

/// Those alone that a row of the run may have had: all the others are higher, and many.
void LaterRuns::LoadInserted() {
    ForEachRow(QStringLiteral(">"), {TargetChange::Kind::Inserted}, [this](const QString& table, qint64 id) {
        if (id <= m_highest.value(table)) {
            m_inserted[table].insert(id);
        }
    });
}

void LaterRuns::LoadEmptied() {
    Recordset rows = m_history.File().ExecuteWC(
        Statement(QString("SELECT T.target_table, P.run, T.emptied_rows, R.company FROM touched_tables T JOIN "
                          "procedures P ON P.id = T.procedure JOIN runs R ON R.id = P.run WHERE T.emptied = 1 AND "
                          "P.run > ? AND " +
                          m_here + " ORDER BY P.run"),
                  {m_run}));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString table = rows.Fields(0).Value().toString();
        const QVariant numbers = rows.Fields(2).Value();
        const bool isOwn = rows.Fields(3).Value().toString() == m_company;
        if ((isOwn || numbers.isNull() || table != TextsByLanguage) && !m_emptiedInPart.contains(table)) {
            m_emptiedInPart.insert(table, rows.Fields(1).Value().toLongLong());
        }
        if (numbers.isNull()) {
            m_whole.insert(table);
        } else {
            m_parts[table].emplace_back(numbers.toString());
        }
    }
}

bool LaterRuns::WasEmptied(const QString& table, qint64 id) const {
    const auto parts = m_parts.constFind(table);
    return m_whole.contains(table) ||
           (parts != m_parts.cend() &&
            std::any_of(parts->begin(), parts->end(), [id](const RowNumbers& rows) { return rows.Contains(id); }));
}

void LaterRuns::LoadOverwritten() {
    QHash<QString, QHash<qint64, Overwriting>> overwritten; // the last, by table and number
    {
        Recordset rows = m_history.File().ExecuteWC(
            Statement(QString("SELECT C.target_table, C.target_id, P.run, C.kind FROM changes C JOIN procedures P ON "
                              "P.id = C.procedure JOIN runs R ON R.id = P.run WHERE P.run > ? AND R.company = ? AND "
                              "P.undone IS NULL AND C.kind IN (?, ?) AND " +
                              m_here + " ORDER BY P.run"),
                      {m_run, m_company, static_cast<int>(TargetChange::Kind::Deleted),
                       static_cast<int>(TargetChange::Kind::Updated)}));
        for (; !rows.Eof(); rows.MoveNext()) {
            const Overwriting one{rows.Fields(0).Value().toString(), rows.Fields(1).Value().toLongLong(),
                                  rows.Fields(2).Value().toLongLong(),
                                  rows.Fields(3).Value().toInt() == static_cast<int>(TargetChange::Kind::Deleted)};
            if (one.id <= m_highest.value(one.table) && !WasEmptied(one.table, one.id) &&
                !HaveInserted(one.table, one.id)) {
                overwritten[one.table].insert(one.id, one);
            }
        }
    }
    if (overwritten.isEmpty()) {
        return;
    }
    ForEachOwnRow([this, &overwritten](const QString& table, qint64 id) {
        if (const Overwriting one = overwritten.value(table).value(id); one.run > m_last.run) {
            m_last = one;
        }
    });
}

void LaterRuns::LoadLeftAway() {
    Recordset rows = m_history.File().ExecuteWC(
        Statement(QString("SELECT L.target_table, L.target_id, L.before, P.run FROM left_away L JOIN procedures P ON "
                          "P.id = L.procedure JOIN runs R ON R.id = P.run WHERE P.run > ? AND " +
                          m_here + " ORDER BY L.id"),
                  {m_run}));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString table = rows.Fields(0).Value().toString();
        const qint64 id = rows.Fields(1).Value().toLongLong();
        if (id <= m_highest.value(table)) {
            m_leftAway[table].insert(
                id, {rows.Fields(3).Value().toLongLong(), ValuesOf(rows.Fields(2).Value().toString())});
        }
    }
}

} // namespace history
