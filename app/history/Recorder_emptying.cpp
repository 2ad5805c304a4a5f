#include "app/history/historyFile.h"
#include "app/history/keptChanges.h"
#include "app/history/Recorder.h"

namespace history {

/// The rows that are about to go; none: all may be.
std::optional<RowNumbers> Recorder::NumbersOf(const QString& table, const QString& condition) const {
    try {
        RowNumbers numbers;
        Recordset rows = m_session.Quadrix.ExecuteWC(
            QStringLiteral("SELECT RECORD_ID FROM %1 WHERE %2 ORDER BY RECORD_ID").arg(table, condition));
        for (; !rows.Eof(); rows.MoveNext()) {
            numbers.Add(rows.Fields(0).Value().toLongLong());
        }
        return numbers;
    } catch (const Error&) { // the deletion tells it
        return std::nullopt;
    }
}

/// Rows given up and imported since that stood in a table which the procedure empties are imported no more.
void Recorder::KeepForgotten(const QString& table, const std::optional<RowNumbers>& rows) {
    std::vector<qint64> runs;
    {
        Recordset behind = m_file->ExecuteWC(
            Statement(QString("SELECT DISTINCT P.run" + EmptiedBehind() +
                              " AND E.procedure = ? AND W.target_table = ? AND P.run IN (SELECT run FROM "
                              "imported_rejects)"),
                      {m_procedure, table}));
        for (; !behind.Eof(); behind.MoveNext()) {
            runs.push_back(behind.Fields(0).Value().toLongLong());
        }
    }
    for (const qint64 run : runs) {
        if (!rows || HasWritten(*m_file, run, table, *rows)) {
            m_file->Execute(Statement("DELETE FROM imported_rejects WHERE run = ?", {run}));
        }
    }
}

void Recorder::KeepTouched(const QString& table, bool isEmptied, const std::optional<RowNumbers>& rows) {
    Keep(Statement("INSERT INTO touched_tables (procedure, target_table, emptied, emptied_rows) VALUES (?, ?, ?, ?) ON "
                   "CONFLICT (procedure, target_table, emptied) DO UPDATE SET emptied_rows = emptied_rows || ' ' || "
                   "excluded.emptied_rows",
                   {m_procedure, table, static_cast<int>(isEmptied), rows ? QVariant(rows->Text()) : QVariant()}));
}

} // namespace history
