#pragma once

#include "sql/errors.h"
#include "sql/ovConnection.h"

/// A transaction of a connection that is taken back at the end of its life unless it was kept. Within an open one it is
/// a part of that, and does nothing by itself.
class Transaction {
public:
    explicit Transaction(ovConnection& connection)
        : m_connection(connection),
          m_isPart(connection.InTransaction()) {
        if (!m_isPart) {
            m_connection.BeginTrans();
        }
    }
    ~Transaction() {
        if (!m_kept && !m_isPart) {
            TakeBack();
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Commits. Raises `SqlError`; the transaction is taken back then.
    void Keep() {
        if (!m_isPart) {
            m_connection.CommitTrans();
        }
        m_kept = true;
    }

private:
    void TakeBack() noexcept {
        try {
            m_connection.RollbackTrans();
        } catch (const Error&) { // the error under way tells more
        }
    }

    ovConnection& m_connection;
    bool m_isPart;
    bool m_kept = false;
};
