#include "app/history/keptChanges.h"

namespace history {

namespace {

/// What a record of the history holds: one change, or rows that were inserted into a table, the last one first.
std::vector<Change> ChangesOf(const Recordset& kept) {
    const Change one{static_cast<TargetChange::Kind>(kept.Fields(0).Value().toInt()),
                     kept.Fields(1).Value().toString(),
                     kept.Fields(2).Value().toLongLong(),
                     ValuesOf(kept.Fields(3).Value().toString()),
                     kept.Fields(4).Value().toString().split(u',', Qt::SkipEmptyParts),
                     kept.Fields(5).Value().toLongLong(),
                     kept.Fields(8).Value().toLongLong()};
    const QString inserted = kept.Fields(6).Value().toString();
    if (inserted.isEmpty()) {
        return {one};
    }
    std::vector<Change> changes;
    ForEachInserted(inserted, [&](qint64 id, qint64 digest) {
        Change& change = changes.emplace_back(one);
        change.id = id;
        change.digest = digest;
    });
    // The number of the block, then how far each row is behind the one before it.
    const QString places = kept.Fields(7).Value().toString();
    const QList<QStringView> steps = QStringView(places).split(u' ', Qt::SkipEmptyParts);
    qint64 place = 0;
    for (qsizetype i = 1; i < steps.size() && i <= static_cast<qsizetype>(changes.size()); ++i) {
        place += steps.at(i).toLongLong();
        changes[i - 1].block = steps.first().toLongLong();
        changes[i - 1].place = place;
    }
    std::reverse(changes.begin(), changes.end());
    return changes;
}

} // namespace

void ForEachInserted(const QString& inserted, const std::function<void(qint64 id, qint64 digest)>& work) {
    const QList<QStringView> numbers = QStringView(inserted).split(u' ', Qt::SkipEmptyParts);
    for (qsizetype i = 0; i + 1 < numbers.size(); i += 2) {
        work(numbers.at(i).toLongLong(), numbers.at(i + 1).toLongLong());
    }
}

bool HasWritten(ovConnection& file, qint64 run, const QString& table, const RowNumbers& numbers) {
    bool hasWritten = false;
    Recordset rows = file.ExecuteWC(Statement(
        "SELECT C.target_id, C.inserted FROM changes C JOIN procedures P ON P.id = C.procedure WHERE P.run = "
        "? AND C.target_table = ? AND C.kind IN (?, ?)",
        {run, table, static_cast<int>(TargetChange::Kind::Inserted), static_cast<int>(TargetChange::Kind::Updated)}));
    for (; !rows.Eof() && !hasWritten; rows.MoveNext()) {
        const QString inserted = rows.Fields(1).Value().toString();
        hasWritten = inserted.isEmpty() && numbers.Contains(rows.Fields(0).Value().toLongLong());
        ForEachInserted(inserted, [&](qint64 id, qint64) { hasWritten = hasWritten || numbers.Contains(id); });
    }
    return hasWritten;
}

void ForEachChangeBackwards(const History& history, qint64 run, const std::function<void(const Change&)>& work) {
    std::vector<Change> waiting; // of one block
    const auto hand = [&] {
        std::stable_sort(waiting.begin(), waiting.end(),
                         [](const Change& one, const Change& other) { return one.place > other.place; });
        for (const Change& change : std::exchange(waiting, {})) {
            work(change);
        }
    };
    Recordset rows = history.File().ExecuteWC(
        Statement("SELECT C.kind, C.target_table, C.target_id, C.before, L.names, C.digest, C.inserted, C.places, "
                  "C.procedure FROM changes C LEFT JOIN column_lists L ON L.id = C.columns JOIN procedures P ON P.id = "
                  "C.procedure "
                  "WHERE P.run = ? ORDER BY C.id DESC",
                  {run}));
    for (; !rows.Eof(); rows.MoveNext()) {
        std::vector<Change> changes = ChangesOf(rows);
        if (!waiting.empty() && (changes.front().block == 0 || changes.front().block != waiting.front().block)) {
            hand();
        }
        std::move(changes.begin(), changes.end(), std::back_inserter(waiting));
    }
    hand();
}

} // namespace history
