#pragma once

#include "app/history/History.h"
#include "app/history/RowNumbers.h"

namespace history {

/// What the runs behind one have done to the tables that it wrote to. Everything raises `SqlError`.
class LaterRuns {
public:
    /// A row that the run wrote, and the later one that has deleted it or written over it.
    struct Overwriting {
        QString table; ///< physical name
        qint64 id = 0;
        qint64 run = 0; ///< 0: none has
        bool isDeletion = false;
    };
    /// A row that a later run had deleted, and that the taking back of that one has not brought back under its number.
    struct LeftAway {
        qint64 run;
        QVector<NamedValue> before; ///< all that it was
    };

    LaterRuns(const History& history, const Run& run);

    /// Whether a later run has inserted a row under that number of a row that the run wrote: a table that was emptied
    /// may give its numbers again. @param table physical name
    bool HaveInserted(const QString& table, qint64 id) const { return m_inserted.value(table).contains(id); }
    /// The number of the first that has emptied the table whole, or of some rows, whosever they were: a row that the
    /// run had deleted would have gone with them. What another company empties of its own texts by language does not
    /// count. 0: none has.
    qint64 EmptiedInPartBy(const QString& table) const { return m_emptiedInPart.value(table); }
    /// The latest in its company that has deleted or updated a row which the run wrote, and was not taken back. A row
    /// that is gone with its table does not count.
    const Overwriting& Last() const { return m_last; }
    /// What became of a row that the run inserted; null when the taking back of no later run has left it away.
    const LeftAway* FindLeftAway(const QString& table, qint64 id) const;

private:
    /// @param runs how the runs compare with this one: "=" or ">"
    void ForEachRow(const QString& runs, const std::vector<TargetChange::Kind>& kinds,
                    const std::function<void(const QString& table, qint64 id)>& work) const;
    void ForEachOwnRow(const std::function<void(const QString& table, qint64 id)>& work) const;
    void LoadHighest();
    void LoadInserted();
    void LoadEmptied();
    bool WasEmptied(const QString& table, qint64 id) const;
    void LoadOverwritten();
    void LoadLeftAway();

    const History& m_history;
    qint64 m_run;
    QString m_company;
    QString m_here;                                     ///< condition on runs R: into the same database
    QHash<QString, qint64> m_highest;                   ///< number that the run has written to, by table
    QHash<QString, QSet<qint64>> m_inserted;            ///< by table
    QHash<QString, qint64> m_emptiedInPart;             ///< the run, by table
    QSet<QString> m_whole;                              ///< tables that were emptied whole
    QHash<QString, std::vector<RowNumbers>> m_parts;    ///< what was emptied of the others
    QHash<QString, QHash<qint64, LeftAway>> m_leftAway; ///< by table and number
    Overwriting m_last;
};

} // namespace history
