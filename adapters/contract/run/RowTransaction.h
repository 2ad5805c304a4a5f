#pragma once

#include "core/Session.h"

#include <QElapsedTimer>

namespace contract {

/// Rows that are committed together at the most, by the setting GruppoRighe; 0: every statement commits by itself.
/// Raises `ImportError` for a setting that is no such number: what a failing row leaves depends on it.
int RowsTogether(Session& session);

/// How long they are put together at the most: others wait for what is locked, and the operator for the progress.
inline constexpr qint64 MostMillisecondsTogether = 500;

/// The transaction of the target that source rows are written in, several together: each can be taken back alone, with
/// what it has put into memory, until all are committed. To a server it goes ahead (`ovConnection::BeginTrans`): when
/// that does not hold, the rows are done again in smaller groups, and in the end with the database asked about each
/// step.
class RowTransaction {
public:
    /// @param most rows that are committed together at the most; 0: every statement commits by itself
    RowTransaction(Session& session, int most);
    /// Takes back what is not committed.
    ~RowTransaction();
    RowTransaction(const RowTransaction&) = delete;
    RowTransaction& operator=(const RowTransaction&) = delete;

    /// Whether rows can be taken back; else what a row has written stays, whatever becomes of it.
    bool IsAtomic() const { return m_isPart || m_most > 0; }
    /// Whether it is a part of a transaction that somebody else ends, such as that of a trial.
    bool IsPart() const { return m_isPart; }
    /// Begins a row, and the transaction with the first one. Raises `SqlError`.
    void BeginRow();
    /// Takes back the row that was begun last. False when the rows before it are gone with it, as the database has
    /// ended the transaction.
    bool TakeBackRow();
    /// Takes back everything that is not committed.
    void TakeBack() noexcept;
    /// Makes the groups that follow smaller: `rows` rows had gone ahead in what does not hold, and are to be done
    /// again.
    void Slow(qsizetype rows);
    /// Whether so many rows, or so much time, have gone by that a commit is due.
    bool IsFull(qsizetype rows) const;
    /// Commits what was written. Raises `SqlError`: nothing is written then, unless the answer was lost.
    void Commit();

private:
    bool TakeBackToMark();
    /// Something is always in the way.
    bool GivesUpGoingAhead() const { return m_slowed >= MostSlowed; }
    void Close();

    static constexpr int MostSlowed = 40;

    Session& m_session;
    int m_most;
    int m_ahead;      ///< rows that go ahead together at the most; 0: the next few do not
    int m_slowed = 0; ///< times
    bool m_isPart;
    bool m_isOpen = false;
    bool m_isMarked = false; ///< before the row that was begun last
    size_t m_memory = 0;     ///< mark of that row
    int m_rows = 0;          ///< begun since the last commit
    QElapsedTimer m_time;
};

} // namespace contract
