#pragma once

#include "core/Session.h"

#include <QElapsedTimer>

namespace contract {

/// The transaction of the target that source rows are written in, several together: each can be taken back alone, with
/// what it has put into memory, until all are committed.
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
    /// Whether so many rows, or so much time, have gone by that a commit is due.
    bool IsFull(qsizetype rows) const;
    /// Commits what was written. Raises `SqlError`: nothing is written then, unless the answer was lost.
    void Commit();

private:
    bool TakeBackToMark();
    void Close();

    Session& m_session;
    int m_most;
    bool m_isPart;
    bool m_isOpen = false;
    bool m_isMarked = false; ///< before the row that was begun last
    size_t m_memory = 0;     ///< mark of that row
    int m_rows = 0;          ///< begun since the last commit
    QElapsedTimer m_time;
};

} // namespace contract
