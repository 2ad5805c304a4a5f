#include "adapters/contract/run/RowTransaction.h"

namespace contract {

namespace {

/// Others wait for what is locked, and the operator for the progress.
constexpr qint64 MostMilliseconds = 500;

} // namespace

RowTransaction::RowTransaction(Session& session, int most)
    : m_session(session),
      m_most(most),
      m_isPart(session.Quadrix.InTransaction()) {}

RowTransaction::~RowTransaction() { TakeBack(); }

void RowTransaction::BeginRow() {
    if (!IsAtomic()) {
        return;
    }
    m_session.Memory.Open();
    m_memory = m_session.Memory.Mark();
    m_isMarked = false;
    ++m_rows; // the row has begun, also when its mark cannot be set: the rows before it may be gone then
    if (m_isPart || m_isOpen) {
        m_isOpen = true;
        m_session.Quadrix.SetMark();
        m_isMarked = true;
    } else {
        m_session.Quadrix.BeginTrans();
        m_isOpen = true;
        m_time.start();
    }
}

bool RowTransaction::TakeBackRow() {
    if (m_isMarked && TakeBackToMark()) {
        --m_rows;
        return true;
    }
    const bool isAlone = !m_isPart && m_rows <= 1;
    TakeBack();
    return isAlone;
}

/// False when the mark is gone, and the rows before it with it.
bool RowTransaction::TakeBackToMark() {
    try {
        m_session.Quadrix.RollbackToMark();
    } catch (const SqlError&) {
        return false;
    }
    m_session.Memory.TakeBack(m_memory);
    return true;
}

void RowTransaction::TakeBack() noexcept {
    if (!IsAtomic()) {
        return;
    }
    if (!m_isPart) {
        m_session.Memory.TakeBack();
    }
    try {
        if (m_isOpen && !m_isPart) {
            m_session.Quadrix.RollbackTrans();
        }
    } catch (const Error&) { // the connection has fallen, and the transaction with it
    }
    Close();
}

bool RowTransaction::IsFull(qsizetype rows) const {
    return rows >= m_most || (m_time.isValid() && m_time.elapsed() > MostMilliseconds);
}

void RowTransaction::Commit() {
    if (m_isOpen && !m_isPart) {
        try {
            m_session.Quadrix.CommitTrans();
        } catch (const SqlError&) {
            TakeBack();
            throw;
        }
    }
    Close();
}

void RowTransaction::Close() {
    m_session.Memory.Keep();
    m_isOpen = false;
    m_isMarked = false;
    m_rows = 0;
    m_time.invalidate();
}

} // namespace contract
