#include "sql/engines/odbc/rowLocks.h"

#include "sql/errors.h"
#include "sql/text/catalogLiteral.h"

namespace {

using Connection = std::shared_ptr<OdbcConnection>;

void Run(const Connection& connection, const QString& statement) {
    OdbcStatement(connection).Run(statement, statement);
}

void Try(const Connection& connection, const QString& statement) noexcept {
    try {
        Run(connection, statement);
    } catch (const Error&) { // what depends on it fails by itself
        return;
    }
}

enum class Row { Locked, LockedByAnother, Missing };

/// Locks the row in a transaction, which stays open.
Row LockRow(const Connection& connection, const QString& rowName) {
    const QString query = QStringLiteral("SELECT NAME FROM QDX_LOCKS WHERE NAME = %1 FOR UPDATE NOWAIT").arg(rowName);
    connection->SetTransaction(true);
    OdbcStatement row(connection);
    try {
        row.Run(query, query);
        return row.Fetch() ? Row::Locked : Row::Missing;
    } catch (const SqlError& error) {
        if (!error.MayPass()) {
            throw;
        }
        return Row::LockedByAnother;
    }
}

/// The same for a row that is made when it is missing. Whoever lets a lock go deletes its row, perhaps in between.
bool LockOrMakeRow(const Connection& connection, const QString& rowName, const QString& makeTable) {
    constexpr int Tries = 5;
    for (int attempt = 1;; ++attempt) {
        try {
            const Row row = LockRow(connection, rowName);
            if (row != Row::Missing) {
                return row == Row::Locked;
            }
        } catch (const SqlError&) {
            if (attempt == Tries) {
                throw;
            }
        }
        connection->EndTransaction(false);
        if (attempt == Tries) {
            throw SqlError({}, QStringLiteral("la riga %1 di QDX_LOCKS non si può creare").arg(rowName));
        }
        Try(connection, makeTable);
        Try(connection, QStringLiteral("INSERT INTO QDX_LOCKS (NAME) VALUES (%1)").arg(rowName));
    }
}

/// A connection with an open transaction is not closed.
void LeaveTransaction(const Connection& connection) noexcept {
    try {
        connection->EndTransaction(false);
    } catch (const Error&) { // it has fallen, and its transaction with it
        return;
    }
}

} // namespace

RowLocks::~RowLocks() {
    for (const auto& lock : m_held) {
        LeaveTransaction(lock.second.connection);
    }
}

/// The holder is committed for others to read, which lets the row go for a moment: then it is locked for good.
bool RowLocks::Take(std::shared_ptr<OdbcConnection> connection, const QString& name, const QString& rowName,
                    const QString& holder) {
    constexpr int Longest = 400;
    if (!LockOrMakeRow(connection, rowName, m_makeTable)) {
        LeaveTransaction(connection);
        return false;
    }
    Run(connection, QStringLiteral("UPDATE QDX_LOCKS SET HOLDER = %1 WHERE NAME = %2")
                        .arg(CatalogLiteral(holder.left(Longest)), rowName));
    connection->EndTransaction(true);
    if (LockRow(connection, rowName) != Row::Locked) {
        LeaveTransaction(connection);
        return false;
    }
    m_held[name] = {std::move(connection), rowName};
    return true;
}

void RowLocks::Release(const QString& name) noexcept {
    const auto held = m_held.extract(name);
    if (held.empty()) {
        return;
    }
    const Connection& connection = held.mapped().connection;
    try {
        Run(connection, QStringLiteral("DELETE FROM QDX_LOCKS WHERE NAME = ") + held.mapped().rowName);
        connection->EndTransaction(true);
        OdbcStatement count(connection);
        const QString query = QStringLiteral("SELECT COUNT(*) FROM QDX_LOCKS");
        count.Run(query, query);
        const bool isEmpty = count.Fetch() && count.Value(0).toInt() == 0;
        count.Close();
        if (isEmpty) {
            Run(connection, QStringLiteral("DROP TABLE QDX_LOCKS"));
        }
    } catch (const Error&) { // the lock goes with its connection
        return;
    }
}

void RowLocks::Check() {
    for (const auto& [name, held] : m_held) {
        held.connection->NoticeEnd();
        if (held.connection->Lost()) {
            throw SqlError({},
                           QStringLiteral("La connessione che tiene il blocco '%1' è caduta: un altro programma può "
                                          "averlo preso, e non si scrive più nulla")
                               .arg(name));
        }
    }
}
