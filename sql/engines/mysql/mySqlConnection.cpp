#include "sql/engines/mysql/mySqlConnection.h"

#include "sql/engines/lineText.h"
#include "sql/engines/meaning.h"
#include "sql/engines/mysql/mySqlMeaning.h"
#include "sql/engines/mysql/mySqlSession.h"
#include "sql/engines/mysql/mySqlSignOn.h"

#include <mysql.h>

#include <errmsg.h>
#include <mysqld_error.h>

#include <memory>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <poll.h>
#endif

namespace {

constexpr unsigned ConnectSeconds = 15;

bool IsLost(unsigned code) {
    return code == CR_SERVER_GONE_ERROR || code == CR_SERVER_LOST || code == CR_SERVER_LOST_EXTENDED;
}

const char* OrNull(const QByteArray& text) { return text.isEmpty() ? nullptr : text.constData(); }

} // namespace

MySqlConnection::~MySqlConnection() { Close(); }

void MySqlConnection::Close() noexcept {
    if (m_handle != nullptr) {
        mysql_close(m_handle);
        m_handle = nullptr;
    }
}

QString MySqlConnection::Place() const {
    return QStringLiteral("Database '%1' sul server '%2'").arg(m_settings.databaseName, m_settings.server);
}

void MySqlConnection::Connect(st_mysql* handle) const {
    const unsigned seconds = ConnectSeconds;
    mysql_options(handle, MYSQL_OPT_CONNECT_TIMEOUT, &seconds);
    mysql_options(handle, MYSQL_SET_CHARSET_NAME, "utf8mb4");
    SetMySqlLine(handle, m_settings);
    const QByteArray user = m_settings.networkCredential ? QByteArray() : m_settings.user.toUtf8();
    const QByteArray password = m_settings.networkCredential ? QByteArray() : m_settings.password.toUtf8();
    const QByteArray database = m_settings.databaseName.toUtf8();
    // An UPDATE counts the rows it finds, also those that held the new values already.
    mysql_real_connect(handle, OrNull(m_line.host), OrNull(user), OrNull(password), OrNull(database), m_line.port,
                       OrNull(m_line.socket), CLIENT_FOUND_ROWS);
}

/// The client library goes on without encryption where the server offers none, unless it is to verify the server.
bool MySqlConnection::IsAsAskedFor(st_mysql* handle) const {
    const bool asked = m_settings.encryption == Encryption::On || m_settings.encryption == Encryption::Verified;
    return !asked || IsMySqlLineEncrypted(handle);
}

SqlError MySqlConnection::OpeningError() const {
    const bool isBuilt = mysql_errno(m_handle) == 0;
    SqlError error({}, isBuilt ? QString::fromUtf8(line::OffersNoEncryption) : QString::fromUtf8(mysql_error(m_handle)),
                   isBuilt ? QString() : QString::number(mysql_errno(m_handle)));
    if (!isBuilt) {
        ExplainMySqlLine(error, m_settings.encryption > Encryption::Off || IsMySqlLineEncrypted(m_handle));
    }
    error.AddContext(Place());
    return error;
}

void MySqlConnection::Open() {
    Close();
    m_lost = false;
    GuardMySqlPasswords();
    m_handle = mysql_init(nullptr);
    Connect(m_handle);
    const bool isOpen = mysql_errno(m_handle) == 0 && IsAsAskedFor(m_handle);
    if (!isOpen || mysql_query(m_handle, MySqlSession) != 0 ||
        (m_settings.readOnly && mysql_query(m_handle, MySqlReadOnly) != 0)) {
        const SqlError error = OpeningError();
        Close();
        m_lost = true;
        throw error;
    }
    m_id = mysql_thread_id(m_handle);
    AskLongest();
}

void MySqlConnection::AskLongest() {
    m_longest = 0;
    if (mysql_query(m_handle, "SELECT @@max_allowed_packet") != 0) {
        return;
    }
    const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> result(mysql_store_result(m_handle),
                                                                          &mysql_free_result);
    const MYSQL_ROW row = result == nullptr ? nullptr : mysql_fetch_row(result.get());
    m_longest = row == nullptr || row[0] == nullptr ? 0 : QByteArray(row[0]).toLongLong();
}

SqlError MySqlConnection::LengthError(const QString& statement) {
    return MakeError(statement, ER_NET_PACKET_TOO_LARGE, "Got a packet bigger than 'max_allowed_packet' bytes");
}

QString MySqlConnection::LineWarning() const {
    const bool isSafe = m_handle == nullptr || line::StaysHere(m_settings.server) || IsMySqlLineEncrypted(m_handle);
    return isSafe ? QString() : line::NotEncrypted(m_settings.server);
}

SqlError MySqlConnection::MakeError(const QString& statement) {
    return MakeError(statement, ErrorCode(), m_handle == nullptr ? "la connessione è chiusa" : mysql_error(m_handle));
}

SqlError MySqlConnection::MakeError(const QString& statement, unsigned code, const char* message) {
    m_lost = m_lost || IsLost(code);
    SqlError error(statement, QString::fromUtf8(message), QString::number(code));
    if (IsLost(code)) {
        error.Explain(QString::fromUtf8(meaning::HasFallen));
        error.SetMayPass(true);
    } else {
        ExplainMySql(error);
    }
    error.SetAnswerLost(code == CR_SERVER_LOST || code == CR_SERVER_LOST_EXTENDED);
    return error;
}

void MySqlConnection::NoticeEnd() {
    if (m_handle == nullptr || m_lost) {
        return;
    }
#ifdef Q_OS_WIN
    WSAPOLLFD line{static_cast<SOCKET>(mysql_get_socket(m_handle)), 0, 0};
    m_lost = WSAPoll(&line, 1, 0) > 0 && (line.revents & (POLLHUP | POLLERR)) != 0;
#else
    pollfd line{mysql_get_socket(m_handle), POLLRDHUP, 0};
    m_lost = poll(&line, 1, 0) > 0 && (line.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
#endif
}

bool MySqlConnection::HasTransaction(bool ask) {
    if (m_handle == nullptr || m_lost || (ask && mysql_ping(m_handle) != 0)) {
        return false;
    }
    unsigned status = 0;
    mariadb_get_infov(m_handle, MARIADB_CONNECTION_SERVER_STATUS, &status);
    return (status & SERVER_STATUS_IN_TRANS) != 0;
}

SqlError MySqlConnection::GoneError(const QString& statement) {
    return MakeError(statement, CR_SERVER_GONE_ERROR, "la connessione è chiusa");
}

st_mysql_stmt* MySqlConnection::NewStatement() const {
    return m_handle == nullptr ? nullptr : mysql_stmt_init(m_handle);
}

unsigned MySqlConnection::ErrorCode() const {
    return m_handle == nullptr ? unsigned(CR_SERVER_GONE_ERROR) : mysql_errno(m_handle);
}

void MySqlConnection::Send(const QString& statement) {
    const QByteArray text = statement.toUtf8();
    if (!Takes(text.size())) {
        throw LengthError(statement);
    }
    if (m_handle == nullptr ||
        mysql_real_query(m_handle, text.constData(), static_cast<unsigned long>(text.size())) != 0) {
        throw MakeError(statement);
    }
}

st_mysql_res* MySqlConnection::Result(const QString& statement) {
    st_mysql_res* result = mysql_use_result(m_handle);
    if (result == nullptr && mysql_errno(m_handle) != 0) {
        throw MakeError(statement);
    }
    return result;
}

void MySqlConnection::DropFurtherResults() {
    while (mysql_more_results(m_handle) != 0 && mysql_next_result(m_handle) == 0) {
        mysql_free_result(mysql_use_result(m_handle));
    }
}

qint64 MySqlConnection::RowsChanged() const {
    const auto rows = mysql_affected_rows(m_handle);
    return rows == ~0ULL ? 0 : static_cast<qint64>(rows);
}

qint64 MySqlConnection::InsertId() const { return static_cast<qint64>(mysql_insert_id(m_handle)); }

void MySqlConnection::Kill() noexcept {
    st_mysql* other = mysql_init(nullptr);
    if (other == nullptr) {
        return;
    }
    Connect(other);
    if (mysql_errno(other) == 0 && IsAsAskedFor(other)) {
        const QByteArray text = "KILL QUERY " + QByteArray::number(qulonglong(m_id));
        mysql_query(other, text.constData());
    }
    mysql_close(other);
}
