#pragma once

#include "sql/engines/odbc/odbcValue.h"

#include <QElapsedTimer>

#include <atomic>
#include <memory>
#include <mutex>

/// One connection over the ODBC API.
class OdbcConnection {
public:
    /// Connects. @param text connection string in the words of ODBC @param readOnly the driver is told that nothing
    /// will be written, whatever it makes of that. Raises `SqlError` naming what was asked for.
    explicit OdbcConnection(QString text, bool readOnly = false);
    ~OdbcConnection();
    OdbcConnection(const OdbcConnection&) = delete;
    OdbcConnection& operator=(const OdbcConnection&) = delete;

    SQLHDBC Handle() const { return m_handle.Get(); }
    /// Another connection to the same database. Raises `SqlError`.
    std::shared_ptr<OdbcConnection> Another() const { return std::make_shared<OdbcConnection>(m_text); }
    /// The connection string.
    const QString& ConnectionText() const { return m_text; }
    bool IsReadOnly() const { return m_readOnly; }
    /// Connects again after the connection has fallen; its statements are gone by then. Raises `SqlError`.
    void Reopen();
    /// Grows with each `Reopen`: statements of before are gone.
    int Age() const { return m_age; }
    /// True after the connection has fallen: statements fail until `Reopen`.
    bool Lost() const { return m_lost; }

    /// Looks whether the connection has fallen while nothing was asked of it: a statement sent then would seem to be
    /// lost on its way, and to have been carried out perhaps. It asks after a pause only: the driver may ask the
    /// server.
    void NoticeEnd();

    /// With `on`, statements no longer commit each by itself. Raises `SqlError`.
    void SetTransaction(bool on);
    /// Ends the transaction and lets each statement commit by itself again. Raises `SqlError`.
    void EndTransaction(bool commit);

    /// How the driver gives texts.
    odbc::TextForm Texts() const { return m_texts; }
    /// Reads texts as UTF-8 from now on, if the driver gives the one of this query so: "a", a NUL and a character of
    /// four bytes. Drivers of MySQL end wide texts at a NUL.
    void TryUtf8(const QString& query);
    /// What the driver tells of itself or of its database, such as SQL_DBMS_NAME; empty when it does not.
    QString Info(SQLUSMALLINT what) const;
    /// The same for what it tells as a set of bits; 0 when it does not.
    SQLUINTEGER InfoBits(SQLUSMALLINT what) const;
    /// The same for what it tells as a number of 16 bits.
    SQLUSMALLINT InfoWord(SQLUSMALLINT what) const;

    /// The error of the last call with a handle of this connection.
    SqlError MakeError(SQLSMALLINT type, SQLHANDLE handle, const QString& statement);

    /// Runs a call that the server may take long over, during which `Interrupt` reaches the statement.
    template<class Call>
    SQLRETURN Running(SQLHSTMT statement, const Call& call) {
        SetRunning(statement);
        const SQLRETURN result = call();
        SetRunning(nullptr);
        m_idle.restart();
        return result;
    }
    /// Asks the driver to stop the statement under way, and the rows under way to end; safe from another thread.
    void Interrupt() noexcept;
    /// Whether an interruption has come since the last statement began; taken back by the asking.
    bool TakeInterruption() { return m_interrupted.exchange(false); }

private:
    void Open();
    SqlError OpeningError() const;
    bool IsDead() const;
    bool GivesWideText() const;
    void Close() noexcept;
    void SetRunning(SQLHSTMT statement) noexcept;

    QString m_text;
    bool m_readOnly;
    odbc::Handle<SQL_HANDLE_ENV> m_environment;
    odbc::Handle<SQL_HANDLE_DBC> m_handle;
    int m_age = 0;
    bool m_lost = false;
    odbc::TextForm m_texts = odbc::TextForm::Wide;
    QElapsedTimer m_idle; ///< since the last statement
    std::atomic_bool m_interrupted = false;
    std::mutex m_runningMutex;
    SQLHSTMT m_running = nullptr;
};
