#include "app/history/WrittenRows.h"

#include "app/history/keptChanges.h"

#include <set>

namespace history {

bool WrittenRows::Has(const QString& table, qint64 id) {
    auto rows = m_rows.constFind(table);
    if (rows == m_rows.constEnd()) {
        rows = m_rows.insert(table, Read(table));
    }
    return rows->Contains(id);
}

/// What was written behind the source row reached last is written again.
RowNumbers WrittenRows::Read(const QString& table) const {
    const std::unique_ptr<ovConnection> file = Open(m_path);
    Recordset rows = file->ExecuteWC(Statement(
        QStringLiteral("SELECT C.kind, C.target_id, C.inserted FROM changes C JOIN procedures P ON P.id = C.procedure "
                       "WHERE C.target_table = ? AND P.id IN (%1) AND C.id <= COALESCE(P.reached_change, 0) ORDER BY "
                       "C.id")
            .arg(m_procedures.join(QStringLiteral(", "))),
        {table}));
    std::set<qint64> written;
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString inserted = rows.Fields(2).Value().toString();
        if (!inserted.isEmpty()) {
            ForEachInserted(inserted, [&](qint64 id, qint64) { written.insert(id); });
        } else if (rows.Fields(0).Value().toInt() == static_cast<int>(TargetChange::Kind::Deleted)) {
            written.erase(rows.Fields(1).Value().toLongLong());
        } else {
            written.insert(rows.Fields(1).Value().toLongLong());
        }
    }
    RowNumbers numbers;
    for (const qint64 id : written) {
        numbers.Add(id);
    }
    return numbers;
}

} // namespace history
