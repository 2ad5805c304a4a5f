#include "sql/engines/odbc/odbcConnection.h"

#include "sql/engines/meaning.h"
#include "sql/engines/odbc/odbcEncryption.h"
#include "sql/engines/odbc/odbcMeaning.h"
#include "sql/engines/odbc/odbcText.h"

namespace {

constexpr SQLULEN LoginSeconds = 15;

/// A whole number where the ODBC API takes a pointer.
SQLPOINTER AsPointer(SQLULEN number) {
    return reinterpret_cast<SQLPOINTER>(number); // NOLINT(performance-no-int-to-ptr)
}

template<class Number>
Number InfoNumber(SQLHDBC connection, SQLUSMALLINT what) {
    Number number = 0;
    return SQL_SUCCEEDED(SQLGetInfoW(connection, what, &number, sizeof(number), nullptr)) ? number : Number(0);
}

/// Debian package of a driver by the name it is registered with; empty when not known.
QString PackageOf(const QString& driver) {
    struct Known {
        QLatin1String word;
        QLatin1String package;
    };
    static constexpr Known Drivers[] = {{QLatin1String("freetds"), QLatin1String("tdsodbc")},
                                        {QLatin1String("mariadb"), QLatin1String("odbc-mariadb")},
                                        {QLatin1String("mysql"), QLatin1String("odbc-mariadb")},
                                        {QLatin1String("sqlite"), QLatin1String("libsqliteodbc")},
                                        {QLatin1String("mdb"), QLatin1String("odbc-mdbtools")},
                                        {QLatin1String("postgres"), QLatin1String("odbc-postgresql")}};
    for (const Known& known : Drivers) {
        if (driver.contains(known.word, Qt::CaseInsensitive)) {
            return known.package;
        }
    }
    return {};
}

/// What an opening that failed means, told by the driver's words; empty when they are not known.
QString OpeningMeaning(const QString& message, const QString& driver) {
    const auto says = [&message](const char* words) {
        return message.contains(QLatin1String(words), Qt::CaseInsensitive);
    };
    if (says("Login failed") || says("Access denied")) {
        return QString::fromUtf8(meaning::WrongPassword);
    }
    if (says("unable to connect") || says("can't connect")) {
        return QString::fromUtf8(meaning::NoAnswer);
    }
    if (!says("Can't open lib") && !says("Data source name not found")) {
        return {};
    }
    const QString package = PackageOf(driver);
    const QString missing = QStringLiteral("il driver ODBC o l'origine dati '%1' non è installato").arg(driver);
    return package.isEmpty() ? missing : QString(missing + QStringLiteral(": su Debian è nel pacchetto ") + package);
}

} // namespace

OdbcConnection::OdbcConnection(QString text, bool readOnly)
    : m_text(std::move(text)),
      m_readOnly(readOnly),
      m_environment(nullptr) {
    SQLSetEnvAttr(m_environment.Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0);
    m_handle = odbc::Handle<SQL_HANDLE_DBC>(m_environment.Get());
    Open();
}

OdbcConnection::~OdbcConnection() { Close(); }

void OdbcConnection::Open() {
    SQLSetConnectAttrW(Handle(), SQL_ATTR_LOGIN_TIMEOUT, AsPointer(LoginSeconds), 0);
    if (m_readOnly) {
        SQLSetConnectAttrW(Handle(), SQL_ATTR_ACCESS_MODE, AsPointer(SQL_MODE_READ_ONLY), SQL_IS_UINTEGER);
    }
    const SQLRETURN result =
        SQLDriverConnectW(Handle(), nullptr, odbc::Wide(m_text), static_cast<SQLSMALLINT>(m_text.size()), nullptr, 0,
                          nullptr, SQL_DRIVER_NOPROMPT);
    if (SQL_SUCCEEDED(result)) {
        m_lost = false;
        m_texts = GivesWideText() ? odbc::TextForm::Wide : odbc::TextForm::Narrow;
        return;
    }
    throw OpeningError();
}

SqlError OdbcConnection::OpeningError() const {
    const QVector<odbc::Diagnosis> diagnoses = odbc::Diagnoses(SQL_HANDLE_DBC, Handle());
    SqlError error = odbc::PlainError(diagnoses, {});
    if (const char* ofLine = odbc::MeaningOfLine(odbc::ReadParts(m_text), diagnoses)) {
        error.Explain(QString::fromUtf8(ofLine));
        error.AddContext(odbc::PlaceOf(m_text));
        return error;
    }
    const QString meaning = OpeningMeaning(error.EngineMessage(), odbc::DriverOrDsn(m_text));
    if (!meaning.isEmpty() || odbc::IsLost(diagnoses)) {
        error.Explain(meaning.isEmpty() ? QString::fromUtf8(meaning::NoAnswer) : meaning);
    } else {
        odbc::Explain(error);
    }
    error.AddContext(odbc::PlaceOf(m_text));
    return error;
}

/// A driver without wide characters fills them with narrow ones and says nothing: it is asked for a text that is known.
bool OdbcConnection::GivesWideText() const {
    if ((InfoBits(SQL_CONVERT_CHAR) & SQL_CVT_WCHAR) != 0 || (InfoBits(SQL_CONVERT_VARCHAR) & SQL_CVT_WVARCHAR) != 0) {
        return true;
    }
    for (const QString text : {"select 'test'", "values('test')", "select 'test' from dual"}) {
        const odbc::Handle<SQL_HANDLE_STMT> statement(Handle());
        constexpr SQLLEN Room = 16;
        SQLWCHAR read[Room] = {};
        if (SQL_SUCCEEDED(SQLExecDirectW(statement.Get(), odbc::Wide(text), SQL_NTS))) {
            return SQL_SUCCEEDED(SQLFetch(statement.Get())) &&
                   SQL_SUCCEEDED(SQLGetData(statement.Get(), 1, SQL_C_WCHAR, read, sizeof(read), nullptr)) &&
                   odbc::Text(read, Room).startsWith(QLatin1String("test"));
        }
    }
    return false;
}

void OdbcConnection::TryUtf8(const QString& query) {
    constexpr std::string_view expected("a\0\xf0\x9f\x94\xa9", 6);
    const odbc::Handle<SQL_HANDLE_STMT> statement(Handle());
    char read[16] = {};
    SQLLEN length = 0;
    const bool isRead = SQL_SUCCEEDED(SQLExecDirectW(statement.Get(), odbc::Wide(query), SQL_NTS)) &&
                        SQL_SUCCEEDED(SQLFetch(statement.Get())) &&
                        SQL_SUCCEEDED(SQLGetData(statement.Get(), 1, SQL_C_CHAR, read, sizeof(read), &length));
    if (isRead && length == SQLLEN(expected.size()) && expected == std::string_view(read, expected.size())) {
        m_texts = odbc::TextForm::Utf8;
    }
}

/// The driver takes nothing back by itself when a connection goes within a transaction, but refuses to let go.
void OdbcConnection::Close() noexcept {
    if (Handle() == nullptr) {
        return;
    }
    if (!SQL_SUCCEEDED(SQLDisconnect(Handle()))) {
        SQLEndTran(SQL_HANDLE_DBC, Handle(), SQL_ROLLBACK);
        SQLDisconnect(Handle());
    }
}

void OdbcConnection::Reopen() {
    Close();
    ++m_age;
    m_handle = odbc::Handle<SQL_HANDLE_DBC>(m_environment.Get());
    Open();
}

void OdbcConnection::SetTransaction(bool on) {
    const SQLULEN mode = on ? SQL_AUTOCOMMIT_OFF : SQL_AUTOCOMMIT_ON;
    if (!SQL_SUCCEEDED(SQLSetConnectAttrW(Handle(), SQL_ATTR_AUTOCOMMIT, AsPointer(mode), SQL_IS_UINTEGER))) {
        throw MakeError(SQL_HANDLE_DBC, Handle(), on ? QStringLiteral("BEGIN TRANSACTION") : QStringLiteral("COMMIT"));
    }
}

void OdbcConnection::EndTransaction(bool commit) {
    if (!SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, Handle(), commit ? SQL_COMMIT : SQL_ROLLBACK))) {
        throw MakeError(SQL_HANDLE_DBC, Handle(), commit ? QStringLiteral("COMMIT") : QStringLiteral("ROLLBACK"));
    }
    SetTransaction(false);
}

QString OdbcConnection::Info(SQLUSMALLINT what) const {
    constexpr SQLSMALLINT Longest = 256;
    SQLWCHAR text[Longest] = {};
    SQLSMALLINT bytes = 0;
    const SQLRETURN result = SQLGetInfoW(Handle(), what, text, sizeof(text), &bytes);
    return SQL_SUCCEEDED(result)
               ? odbc::Text(text, std::min<qsizetype>(bytes / qsizetype(sizeof(SQLWCHAR)), Longest - 1))
               : QString();
}

SQLUINTEGER OdbcConnection::InfoBits(SQLUSMALLINT what) const { return InfoNumber<SQLUINTEGER>(Handle(), what); }

SQLUSMALLINT OdbcConnection::InfoWord(SQLUSMALLINT what) const { return InfoNumber<SQLUSMALLINT>(Handle(), what); }

bool OdbcConnection::IsDead() const {
    SQLUINTEGER dead = SQL_CD_FALSE;
    SQLGetConnectAttrW(Handle(), SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
    return dead == SQL_CD_TRUE;
}

void OdbcConnection::NoticeEnd() {
    constexpr qint64 PauseMilliseconds = 100;
    if (!m_lost && m_idle.isValid() && m_idle.elapsed() > PauseMilliseconds) {
        m_lost = IsDead();
        m_idle.restart();
    }
}

SqlError OdbcConnection::MakeError(SQLSMALLINT type, SQLHANDLE handle, const QString& statement) {
    QVector<odbc::Diagnosis> diagnoses = odbc::Diagnoses(type, handle);
    if (diagnoses.isEmpty()) {
        // Such is the answer when the driver has closed the connection before.
        diagnoses.append({IsDead() ? QStringLiteral("08S01") : QString(),
                          {},
                          QStringLiteral("il driver ODBC ha rifiutato l'operazione senza dire perché")});
    }
    m_lost = m_lost || odbc::IsLost(diagnoses);
    return odbc::MakeError(diagnoses, statement);
}

void OdbcConnection::SetRunning(SQLHSTMT statement) noexcept {
    const std::lock_guard lock(m_runningMutex);
    m_running = statement;
}

void OdbcConnection::Interrupt() noexcept {
    m_interrupted = true;
    const std::lock_guard lock(m_runningMutex);
    if (m_running != nullptr) {
        SQLCancel(m_running);
    }
}
