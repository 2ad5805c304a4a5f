#pragma once

#include "app/history/History.h"

namespace history {

/// What the runs behind one have done to the tables that it wrote to. Everything raises `SqlError`.
class LaterRuns {
public:
    LaterRuns(const History& history, const Run& run);

    /// Whether a later run has inserted a row under that number of a row that the run inserted: a table that was
    /// emptied may give its numbers again. @param table physical name
    bool HaveInserted(const QString& table, qint64 id) const { return m_inserted.value(table).contains(id); }
    /// The number of the first that has emptied the table, in part or whole; 0: none has.
    qint64 EmptiedBy(const QString& table) const { return m_emptied.value(table); }
    /// The number of the run that has deleted that row, which the run inserted, and was not taken back; 0: none has.
    qint64 DeletedBy(const QString& table, qint64 id) const { return m_deleted.value(table).value(id); }

private:
    /// @param runs how the runs compare with this one: "=" or ">"
    void ForEachInsertedRow(const QString& runs,
                            const std::function<void(const QString& table, qint64 id)>& work) const;
    void LoadHighest();
    void LoadInserted();
    void LoadEmptied();
    void LoadDeleted();

    const History& m_history;
    qint64 m_run;
    QHash<QString, qint64> m_highest;                ///< number that the run has inserted, by table
    QHash<QString, QSet<qint64>> m_inserted;         ///< by table
    QHash<QString, qint64> m_emptied;                ///< the run
    QHash<QString, QHash<qint64, qint64>> m_deleted; ///< the run, by table and number
};

} // namespace history
