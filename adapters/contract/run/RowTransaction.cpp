#include "adapters/contract/run/RowTransaction.h"

#include "core/modMain.h"

#include <algorithm>

namespace contract {

namespace {

/// Rows that are done with the database asked about each step before the next ones go ahead again.
constexpr int FewRows = 16;

} // namespace

int RowsTogether(Session& session) {
    const QString text =
        modMain::GetAppConfig(session, QStringLiteral("IMPORT"), QStringLiteral("GruppoRighe"), QStringLiteral("1000"));
    bool isNumber = false;
    const int rows = text.trimmed().toInt(&isNumber);
    if (!isNumber || rows < 0) {
        throw ImportError(QStringLiteral("impostazione GruppoRighe della sezione IMPORT: '%1' non è un numero intero "
                                         "da 0 in su")
                              .arg(text));
    }
    return rows;
}

RowTransaction::RowTransaction(Session& session, int most)
    : m_session(session),
      m_most(most),
      m_ahead(most),
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
        m_session.Quadrix.BeginTrans(m_ahead > 0 && !GivesUpGoingAhead());
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

/// One row that is in the way of many is found in a few steps.
void RowTransaction::Slow(qsizetype rows) {
    constexpr int smaller = 4;
    const int fewer = static_cast<int>(rows) / smaller;
    m_ahead = fewer < FewRows ? 0 : fewer;
    ++m_slowed;
}

bool RowTransaction::IsFull(qsizetype rows) const {
    const int most = m_slowed == 0 || GivesUpGoingAhead() ? m_most : std::max(m_ahead, FewRows);
    return rows >= std::min(most, m_most) || (m_time.isValid() && m_time.elapsed() > MostMillisecondsTogether);
}

void RowTransaction::Commit() {
    const bool wasAhead = m_session.Quadrix.IsAhead();
    if (m_isOpen && !m_isPart) {
        try {
            m_session.Quadrix.CommitTrans();
        } catch (const AheadError&) { // whoever does the rows again takes them back
            throw;
        } catch (const Error&) {
            TakeBack();
            throw;
        }
    }
    Close();
    m_slowed = std::max(0, m_slowed - (wasAhead ? 1 : 0));
    m_ahead = m_ahead == 0 ? std::min(m_most, FewRows) : m_ahead > m_most / 2 ? m_most : m_ahead * 2;
}

void RowTransaction::Close() {
    m_session.Memory.Keep();
    m_isOpen = false;
    m_isMarked = false;
    m_rows = 0;
    m_time.invalidate();
}

} // namespace contract
