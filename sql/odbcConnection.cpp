#include "sql/odbcConnection.h"

#include "sql/connectionParts.h"
#include "sql/odbcText.h"

#include <QSqlDriver>

namespace {

/// A name that no other connection of the program has.
QString UniqueName() {
    static std::atomic_int count = 0;
    return QStringLiteral("quadrix-odbc-%1").arg(++count);
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

/// What the operator can do about an opening that failed.
QString Advice(const QString& message, const QString& driver) {
    const auto says = [&message](const char* words) {
        return message.contains(QLatin1String(words), Qt::CaseInsensitive);
    };
    if (says("Login failed") || says("Access denied")) {
        return QStringLiteral(" (utente o password errati)");
    }
    if (says("unable to connect") || says("can't connect")) {
        return QStringLiteral(" (il server non risponde: verificare nome, porta e che sia avviato)");
    }
    if (!says("Can't open lib") && !says("Data source name not found")) {
        return {};
    }
    const QString package = PackageOf(driver);
    QString advice = QStringLiteral(" (il driver ODBC o l'origine dati '%1' non è installato").arg(driver);
    if (!package.isEmpty()) {
        advice += QStringLiteral(": su Debian è nel pacchetto ") + package;
    }
    return advice + u')';
}

} // namespace

OdbcConnection::OdbcConnection(const QString& text)
    : m_text(text),
      m_name(UniqueName()) {
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QODBC"))) {
        throw SqlError({}, QStringLiteral("Manca il driver QODBC di Qt: su Debian è nel pacchetto libqt6sql6-odbc"));
    }
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QODBC"), m_name);
    m_database.setConnectOptions(QStringLiteral("SQL_ATTR_ODBC_VERSION=SQL_OV_ODBC3;SQL_ATTR_LOGIN_TIMEOUT=15"));
    m_database.setDatabaseName(odbc::QtDatabaseName(text));
    try {
        Open();
    } catch (...) {
        m_database = {};
        QSqlDatabase::removeDatabase(m_name);
        throw;
    }
}

void OdbcConnection::Open() {
    if (m_database.open()) {
        return;
    }
    const SqlError error = OdbcError(m_database.lastError(), {});
    SqlError named({}, error.EngineMessage() + Advice(error.EngineMessage(), odbc::DriverOrDsn(m_text)),
                   error.EngineCode());
    named.AddContext(QStringLiteral("Connessione '%1'").arg(odbc::WithoutPassword(m_text)));
    throw named;
}

void OdbcConnection::Reopen() {
    m_database.close();
    Open();
}

OdbcConnection::~OdbcConnection() {
    m_database.close();
    m_database = {};
    QSqlDatabase::removeDatabase(m_name);
}

bool IsLost(const QSqlError& error) {
    // MariaDB and MySQL; SQL Server through FreeTDS and through its own driver; Oracle.
    static const QStringList codes{"2006",  "2013",  "20003", "20004", "20006", "20047",
                                   "10053", "10054", "10060", "3113",  "3114",  "1012"};
    return codes.contains(error.nativeErrorCode());
}

SqlError OdbcError(const QSqlError& error, const QString& statement) {
    QString message = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    message = odbc::WithoutPassword(message.simplified());
    if (IsLost(error)) {
        message += QStringLiteral(" (la connessione con il server è caduta)");
    }
    return {statement, message, error.nativeErrorCode()};
}
