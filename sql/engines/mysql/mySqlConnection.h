#pragma once

#include "sql/engines/mysql/mySqlLine.h"

struct st_mysql;
struct st_mysql_res;
struct st_mysql_stmt;

/// One connection to a MySQL or MariaDB server, over the server's own client library.
class MySqlConnection {
public:
    /// @param settings server as `ReadMySqlLine` reads it, which raises what this raises
    explicit MySqlConnection(ConnectionSettings settings)
        : m_settings(std::move(settings)),
          m_line(ReadMySqlLine(m_settings.server)) {}
    ~MySqlConnection();
    MySqlConnection(const MySqlConnection&) = delete;
    MySqlConnection& operator=(const MySqlConnection&) = delete;

    /// Connects (again) and sets up the session. Raises `SqlError` naming server and database.
    void Open();
    /// Sends a statement; its result, if any, is fetched with `Result` afterwards. Raises `SqlError`.
    void Send(const QString& statement);
    /// The result of the statement sent last, to be read row by row; null when it has none. Raises `SqlError`.
    st_mysql_res* Result(const QString& statement);
    /// Reads and drops the further results of a call of a stored procedure.
    void DropFurtherResults();
    /// Whether the server takes a statement of so many bytes, values among them: to a longer one it would answer by
    /// closing the connection.
    bool Takes(qsizetype bytes) const { return m_longest == 0 || bytes < m_longest; }
    /// The error of a statement that was not sent, as it is longer.
    SqlError LengthError(const QString& statement);
    /// Rows changed by the statement sent last.
    qint64 RowsChanged() const;
    /// Identity value given by the statement sent last; 0 when it gave none.
    qint64 InsertId() const;
    /// A statement to be prepared, which the caller closes; null when the connection is closed.
    st_mysql_stmt* NewStatement() const;
    /// The error under way as an exception.
    SqlError MakeError(const QString& statement);
    /// An error of a prepared statement as an exception.
    SqlError MakeError(const QString& statement, unsigned code, const char* message);
    /// 0 when nothing has failed.
    unsigned ErrorCode() const;
    /// Looks whether the server has ended the connection while nothing was asked of it: a statement sent then would
    /// seem to be lost on its way, and to have been carried out perhaps.
    void NoticeEnd();
    /// The error of a statement that was not sent, as the connection has fallen.
    SqlError GoneError(const QString& statement);
    /// As `Engine::LineWarning`.
    QString LineWarning() const;
    /// True after the server went away: statements fail until `Open`.
    bool Lost() const { return m_lost; }
    /// Whether a transaction is open, as the server said with its last answer. @param ask asks it now: an error does
    /// not tell
    bool HasTransaction(bool ask);
    /// Leaves the rest of the rows of a result: the line is free only when the last one has been read, so that a long
    /// rest is stopped at the server. @param skip reads one row, and tells whether it was the end
    template<class Skip>
    void SkipRest(const Skip& skip) noexcept {
        for (int row = 0; row < RowsWorthReading; ++row) {
            if (skip()) {
                return;
            }
        }
        Kill();
    }
    /// Stops the statement under way, over a connection of its own; safe from another thread.
    void Kill() noexcept;

private:
    static constexpr int RowsWorthReading = 1000;

    void Close() noexcept;
    void AskLongest();
    void Connect(st_mysql* handle) const;
    bool IsAsAskedFor(st_mysql* handle) const;
    SqlError OpeningError() const;
    QString Place() const;

    ConnectionSettings m_settings;
    MySqlLine m_line;
    st_mysql* m_handle = nullptr;
    unsigned long m_id = 0;
    qsizetype m_longest = 0; ///< statement that the server takes, in bytes; 0: it did not tell
    bool m_lost = false;
};
