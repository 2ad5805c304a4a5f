#include "sql/connectionParts.h"
#include "sql/engines/odbc/odbcApi.h"
#include "sql/engines/odbc/odbcBounds.h"
#include "sql/engines/odbc/odbcDrivers.h"
#include "sql/engines/odbc/odbcText.h"
#include "sql/engines/odbc/odbcValue.h"
#include "sql/ovConnection.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"

#include <QTemporaryDir>
#include <QTest>

/// Connection strings, and ODBC itself over a driver that needs no server.
class TestOdbc : public QObject {
    Q_OBJECT

private slots:
    void ConnectionTexts_data();
    void ConnectionTexts();
    void NothingToConnectTo();
    void DriversOfOthers_data();
    void DriversOfOthers();
    void BoundsOfColumns_data();
    void BoundsOfColumns();
    void EncryptionRefused_data();
    void EncryptionRefused();
    void UsualSqlServerDrivers_data();
    void UsualSqlServerDrivers();
    void PasswordsAreCovered_data();
    void PasswordsAreCovered();
    void Places_data();
    void Places();
    void Refusals_data();
    void Refusals();
    void ImpossibleDates();
    void MissingDrivers_data();
    void MissingDrivers();
    void RowsOfADriver();
};

namespace {

ConnectionSettings Settings(const QString& server, const QString& database, const QString& user = {},
                            const QString& password = {}) {
    ConnectionSettings settings;
    settings.server = server;
    settings.databaseName = database;
    settings.user = user;
    settings.password = password;
    return settings;
}

ConnectionSettings WithDriver(ConnectionSettings settings, const QString& driver) {
    settings.driver = driver;
    return settings;
}

ConnectionSettings Encrypted(ConnectionSettings settings, Encryption encryption, const QString& authorities = {}) {
    settings.encryption = encryption;
    settings.encryptionCA = authorities;
    return settings;
}

ConnectionSettings Integrated(ConnectionSettings settings) {
    settings.networkCredential = true;
    return settings;
}

ConnectionSettings Dsn(ConnectionSettings settings, const QString& dsn) {
    settings.dsn = dsn;
    return settings;
}

ConnectionSettings Written(const QString& text) {
    ConnectionSettings settings = Settings("unused", "unused", "unused", "unused");
    settings.connectionString = text;
    return settings;
}

} // namespace

void TestOdbc::ConnectionTexts_data() {
    QTest::addColumn<ConnectionSettings>("settings");
    QTest::addColumn<Provider>("provider");
    QTest::addColumn<QString>("text");
    const auto add = [](const char* name, const ConnectionSettings& settings, Provider provider, const char* text) {
        QTest::newRow(name) << settings << provider << QString(text);
    };
#ifndef Q_OS_WIN
    add("SQL Server", Settings("SRV", "QUADRIX", "sa", "p"), Provider::SqlServer,
        "DRIVER=FreeTDS;SERVER=SRV;PORT=1433;TDS_Version=7.4;ClientCharset=UTF-8;DATABASE=QUADRIX;UID=sa;PWD=p;");
    add("SQL Server, port", Settings("SRV, 1533", "Q", "sa"), Provider::SqlServer,
        "DRIVER=FreeTDS;SERVER=SRV;PORT=1533;TDS_Version=7.4;ClientCharset=UTF-8;DATABASE=Q;UID=sa;");
    add("SQL Server, instance", Settings("SRV\\SQLEXPRESS", "Q", "sa"), Provider::SqlServer,
        "DRIVER=FreeTDS;SERVER=SRV\\SQLEXPRESS;TDS_Version=7.4;ClientCharset=UTF-8;DATABASE=Q;UID=sa;");
    add("SQL Server, signed on", Integrated(Settings("SRV", "Q", "sa", "p")), Provider::SqlServer,
        "DRIVER=FreeTDS;SERVER=SRV;PORT=1433;TDS_Version=7.4;ClientCharset=UTF-8;DATABASE=Q;Trusted_Connection=Yes;");
    add("Oracle", Settings("srv:1521", "ORCL", "scott", "tiger"), Provider::Oracle,
        "DRIVER=Oracle;DBQ=//srv:1521/ORCL;UID=scott;PWD=tiger;");
    add("Oracle, alias", Settings("", "ORCL", "scott", "tiger"), Provider::Oracle,
        "DRIVER=Oracle;DBQ=ORCL;UID=scott;PWD=tiger;");
    add("Access", Settings("", "C:\\dati\\OS1.mdb"), Provider::Access, "DRIVER=MDBTools;DBQ=C:\\dati\\OS1.mdb;");
#endif
    add("named driver", WithDriver(Settings("SRV,1533", "Q", "sa", "p"), "ODBC Driver 18 for SQL Server"),
        Provider::SqlServer, "DRIVER=ODBC Driver 18 for SQL Server;SERVER={SRV,1533};DATABASE=Q;UID=sa;PWD=p;");
    const QString newest = "ODBC Driver 18 for SQL Server";
    add("Microsoft's, on", Encrypted(WithDriver(Settings("SRV", "Q"), newest), Encryption::On), Provider::SqlServer,
        "DRIVER=ODBC Driver 18 for SQL Server;SERVER=SRV;DATABASE=Q;Encrypt=yes;TrustServerCertificate=yes;");
    add("Microsoft's, verified", Encrypted(WithDriver(Settings("SRV", "Q"), newest), Encryption::Verified),
        Provider::SqlServer,
        "DRIVER=ODBC Driver 18 for SQL Server;SERVER=SRV;DATABASE=Q;Encrypt=yes;TrustServerCertificate=no;");
    add("Microsoft's, off", Encrypted(WithDriver(Settings("SRV", "Q"), newest), Encryption::Off), Provider::SqlServer,
        "DRIVER=ODBC Driver 18 for SQL Server;SERVER=SRV;DATABASE=Q;Encrypt=no;");
    add("as written but for encryption",
        Encrypted(Written("Driver={MariaDB Unicode};Server=srv;FORCETLS=0"), Encryption::Verified, "/etc/ca.pem"),
        Provider::MySql, "Driver=MariaDB Unicode;Server=srv;FORCETLS=1;SSLVERIFY=1;SSLCA=/etc/ca.pem;");
    add("MySQL's, authority",
        Encrypted(WithDriver(Settings("srv", "Q"), "MySQL ODBC 8.0 Unicode Driver"), Encryption::On, "/etc/ca.pem"),
        Provider::MySql,
        "OPTION=3145728;DRIVER=MySQL ODBC 8.0 Unicode Driver;SERVER=srv;DATABASE=Q;SSLMODE=VERIFY_CA;"
        "SSLCA=/etc/ca.pem;");
    add("no line to a file", Encrypted(Written("Driver={Microsoft Access Driver (*.mdb)};DBQ=a.mdb"), Encryption::On),
        Provider::Access, "Driver={Microsoft Access Driver (*.mdb)};DBQ=a.mdb;");
    add("hard password", WithDriver(Settings("SRV", "Q", "sa", "a;b}c"), "D"), Provider::SqlServer,
        "DRIVER=D;SERVER=SRV;DATABASE=Q;UID=sa;PWD={a;b}}c};");
    add("Microsoft's Oracle", WithDriver(Settings("srv", "ORCL", "u", "p"), "Microsoft ODBC for Oracle"),
        Provider::Oracle, "DRIVER=Microsoft ODBC for Oracle;SERVER=//srv/ORCL;UID=u;PWD=p;");
    add("MySQL's driver streams", WithDriver(Settings("srv", "Q", "u", "p"), "MySQL ODBC 8.0 Unicode Driver"),
        Provider::MySql, "OPTION=3145728;DRIVER=MySQL ODBC 8.0 Unicode Driver;SERVER=srv;DATABASE=Q;UID=u;PWD=p;");
    add("DSN", Dsn(Settings("unused", "", "u", "p"), "MEXAL"), Provider::SqlServer, "DSN=MEXAL;UID=u;PWD=p;");
    add("DSN, database", Dsn(Settings("", "Q"), "MEXAL"), Provider(7), "DSN=MEXAL;DATABASE=Q;");
    add("as written", Written("Driver={X};Foo=1"), Provider::SqlServer, "Driver={X};Foo=1");
    add("OLE DB over ODBC",
        Written(
            "Provider=MSDASQL.1;Password=p;w;Persist Security Info=True;User ID=u;Data Source=SAM;Initial Catalog=DB"),
        Provider::SqlServer, "PWD={p;w};UID=u;DSN=SAM;DATABASE=DB;");
    add("OLE DB, quoted password", Written("Provider=MSDASQL.1;Password=\"p;w\";User ID=u;Data Source=SAM"),
        Provider::SqlServer, "PWD={p;w};UID=u;DSN=SAM;");
    add("OLE DB, blanks", Written("Provider=MSDASQL.1;User ID=Admin;Data Source=LibertyCommerce"), Provider::Access,
        "UID=Admin;DSN=LibertyCommerce;");
}

void TestOdbc::ConnectionTexts() {
    QFETCH(ConnectionSettings, settings);
    QFETCH(Provider, provider);
    QTEST(odbc::ConnectionText(settings, provider), "text");
}

void TestOdbc::NothingToConnectTo() {
    QVERIFY(ErrorOf<ImportError>([] { odbc::ConnectionText({}, Provider::SqlServer); }));
    QVERIFY(ErrorOf<ImportError>([] { odbc::ConnectionText(Settings("SRV", "DB"), Provider(7)); }));
}

void TestOdbc::EncryptionRefused_data() {
    QTest::addColumn<QString>("driver");
    QTest::addColumn<Encryption>("encryption");
    QTest::addColumn<QString>("authorities");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const char* driver, Encryption encryption, const char* file,
                        const char* words) {
        QTest::newRow(name) << QString(driver) << encryption << QString(file) << QString::fromUtf8(words);
    };
    row("FreeTDS, verified", "FreeTDS", Encryption::Verified, "", "usare 'ODBC Driver 18 for SQL Server'");
    row("FreeTDS, authority", "FreeTDS", Encryption::On, "ca.pem", "senza EncryptionCA");
    row("Microsoft's, authority", "ODBC Driver 17 for SQL Server", Encryption::Verified, "ca.pem",
        "conosce solo le autorità del sistema");
    row("old one", "SQL Server", Encryption::On, "", "usare 'ODBC Driver 18 for SQL Server'");
    row("Oracle", "Oracle in OraClient19Home1", Encryption::On, "", "sqlnet.ora");
    row("not known", "PostgreSQL Unicode", Encryption::On, "", "non si sa come la chieda");
}

/// What a driver cannot be asked is told with what can be done; nothing weaker is asked for instead.
void TestOdbc::EncryptionRefused() {
    QFETCH(QString, driver);
    QFETCH(Encryption, encryption);
    QFETCH(QString, authorities);
    QFETCH(QString, words);
    const auto settings = Encrypted(WithDriver(Settings("srv", "Q"), driver), encryption, authorities);
    const auto error = ErrorOf<ImportError>([&] { odbc::ConnectionText(settings, Provider::SqlServer); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains(driver) && error->Message().contains(words), qPrintable(error->Message()));
}

void TestOdbc::UsualSqlServerDrivers_data() {
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<bool>("onWindows");
    QTest::addColumn<QString>("driver");
    const QString old = "SQL Server";
    const QString older = "ODBC Driver 17 for SQL Server";
    const QString newest = "ODBC Driver 18 for SQL Server";
    QTest::newRow("Windows, both") << QStringList{old, older, newest} << true << newest;
    QTest::newRow("Windows, 17") << QStringList{old, older, "FreeTDS"} << true << older;
    QTest::newRow("Windows alone") << QStringList{old} << true << old;
    QTest::newRow("Debian") << QStringList{newest, "FreeTDS"} << false << "FreeTDS";
    QTest::newRow("Linux without FreeTDS") << QStringList{newest, older} << false << newest;
    QTest::newRow("nothing installed") << QStringList() << false << "FreeTDS";
}

void TestOdbc::UsualSqlServerDrivers() {
    QFETCH(QStringList, installed);
    QFETCH(bool, onWindows);
    QTEST(odbc::SqlServerDriver(installed, onWindows), "driver");
}

void TestOdbc::PasswordsAreCovered_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("covered");
    QTest::newRow("plain") << "UID=u;PWD=segreto;DATABASE=D"
                           << "UID=u;PWD=***;DATABASE=D";
    QTest::newRow("at the end") << "uid=u;pwd = segreto"
                                << "uid=u;pwd=***";
    QTest::newRow("braces") << "PWD={a;b}}c};UID=u"
                            << "PWD=***;UID=u";
    QTest::newRow("quotes") << "Password=\"a;b\";User ID=u"
                            << "Password=***;User ID=u";
    QTest::newRow("none") << "DSN=X;UID=u"
                          << "DSN=X;UID=u";
}

void TestOdbc::PasswordsAreCovered() {
    QFETCH(QString, text);
    QTEST(odbc::WithoutPassword(text), "covered");
}

void TestOdbc::Places_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("place");
    const auto row = [](const char* name, const char* text, const char* place) {
        QTest::newRow(name) << QString(text) << QString(place);
    };
    row("server and database", "DRIVER=FreeTDS;SERVER=srv;PORT=1433;DATABASE=Q;UID=u;PWD=segreto",
        "Database 'Q' sul server 'srv,1433'");
    row("server", "Driver={X};Server=srv;pwd=segreto", "Server 'srv'");
    row("DSN", "DSN=MEXAL;DATABASE=Q;PWD=segreto", "Origine dati ODBC 'MEXAL'");
    row("file", "DRIVER=MDBTools;DBQ={C:\\dati;1\\a.mdb};PWD=segreto", "Database 'C:\\dati;1\\a.mdb'");
    row("nothing known", "Driver={X};Host_=srv;PWD=segreto", "Connessione 'Driver={X};Host_=srv;PWD=***'");
}

void TestOdbc::Places() {
    QFETCH(QString, text);
    QTEST(odbc::PlaceOf(text), "place");
}

void TestOdbc::DriversOfOthers_data() {
    QTest::addColumn<Provider>("provider");
    QTest::addColumn<QString>("driver");
    QTest::newRow("MariaDB without a driver") << Provider::MySql << "ODBC Driver 18 for SQL Server";
    QTest::newRow("MariaDB's own") << Provider::MySql << "MariaDB Unicode";
    QTest::newRow("MariaDB's for another") << Provider::SqlServer << "MariaDB Unicode";
    QTest::newRow("MySQL's for another") << Provider::Oracle << "MySQL ODBC 8.0 Unicode Driver";
}

/// A driver that would not be used, or not be understood, is refused by its name.
void TestOdbc::DriversOfOthers() {
    QFETCH(Provider, provider);
    QFETCH(QString, driver);
    ovConnection connection;
    connection.ProviderType = provider;
    connection.Driver = driver;
    connection.Server = "127.0.0.1";
    connection.DatabaseName = "Q";
    const auto error = ErrorOf<ImportError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains("Driver") && error->Message().contains(u'\'' + driver + u'\''),
             qPrintable(error->Message()));
}

void TestOdbc::BoundsOfColumns_data() {
    QTest::addColumn<QString>("row"); // type, characters, digits, decimals, as the catalogues tell them
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("isRounding");
    QTest::addColumn<double>("largest");
    QTest::newRow("text") << "'nvarchar', 20, 0, 0"
                          << "nvarchar(20)" << 20 << false << 0.0;
    QTest::newRow("text of any length") << "'nvarchar', -1, 0, 0"
                                        << "nvarchar" << 0 << false << 0.0;
    QTest::newRow("decimals") << "'decimal', 9, 12, 2"
                              << "decimal(12,2)" << 0 << true << 9999999999.0;
    QTest::newRow("digits of Oracle") << "'NUMBER', 0, Null, 0"
                                      << "NUMBER(38,0)" << 0 << true << 1e38;
    QTest::newRow("any digits of Oracle") << "'NUMBER', 0, Null, Null"
                                          << "NUMBER" << 0 << false << 0.0;
    QTest::newRow("double") << "'float', 8, 53, 0"
                            << "float(53)" << 0 << false << 0.0;
    QTest::newRow("half of a double") << "'real', 4, 24, 0"
                                      << "real" << 0 << true << 0.0;
    QTest::newRow("money") << "'money', 8, 19, 4"
                           << "money" << 0 << true << 0.0;
    QTest::newRow("short number") << "'smallint', 2, 5, 0"
                                  << "smallint" << 0 << true << 32767.0;
    QTest::newRow("bit") << "'bit', 1, 1, 0"
                         << "bit" << 0 << true << 1.0;
    QTest::newRow("day") << "'datetime', 8, 23, 3"
                         << "datetime" << 0 << false << 0.0;
}

void TestOdbc::BoundsOfColumns() {
    QFETCH(QString, row);
    const auto catalogue = OpenSqlite(":memory:");
    const QVector<ColumnBounds> found = odbc::BoundsFrom(*catalogue->Query("SELECT 'C', " + row + ", 1"));
    QCOMPARE(found.size(), 1);
    QTEST(found[0].type, "type");
    QTEST(found[0].length, "length");
    QTEST(found[0].isRounding, "isRounding");
    QTEST(found[0].largest, "largest");
    QVERIFY(found[0].isDemanded);
}

void TestOdbc::Refusals_data() {
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("meaning");
    const auto row = [](const char* name, const char* code, const char* words, const char* meaning) {
        QTest::newRow(name) << QString(code) << QString(words) << QString::fromUtf8(meaning);
    };
    row("SQL Server, index", "2601",
        "[FreeTDS][SQL Server]Cannot insert duplicate key row in object 'dbo.X01_CON_TRO' with unique index "
        "'UX_CORAS'. "
        "The duplicate key value is (Rossi (MI)).",
        "il valore (Rossi (MI)) è già presente nella chiave 'UX_CORAS' della tabella 'dbo.X01_CON_TRO', che non "
        "ammette "
        "doppioni");
    row("SQL Server 2005, index", "2601", "Cannot insert duplicate key row in object 'dbo.T' with unique index 'UX'.",
        "lo stesso valore è già presente nella chiave 'UX' della tabella 'dbo.T', che non ammette doppioni");
    row("SQL Server, key", "2627",
        "Violation of PRIMARY KEY constraint 'PK_T'. Cannot insert duplicate key in object 'dbo.T'. The duplicate key "
        "value is (7, a).",
        "il valore (7, a) è già presente nella chiave 'PK_T' della tabella 'dbo.T', che non ammette doppioni");
    row("SQL Server, Null", "515",
        "Cannot insert the value NULL into column 'CORAS', table 'Q.dbo.T'; column does not allow nulls. INSERT fails.",
        "la colonna 'CORAS' della tabella 'Q.dbo.T' deve avere un valore");
    row("SQL Server, reference to nothing", "547",
        "The INSERT statement conflicted with the FOREIGN KEY constraint \"FK_X\". The conflict occurred in database "
        "\"Q\", table \"dbo.PARENT\", column 'ID'.",
        "la riga della tabella 'X01_CON_TRO' rimanda a una riga che nella tabella 'dbo.PARENT' non c'è (vincolo "
        "'FK_X')");
    row("SQL Server, referred to", "547",
        "The DELETE statement conflicted with the REFERENCE constraint \"FK_X\". The conflict occurred in database "
        "\"Q\", table \"dbo.CHILD\", column 'PID'.",
        "altre righe della tabella 'dbo.CHILD' rimandano a quella della tabella 'X01_CON_TRO' da cambiare o togliere "
        "(vincolo 'FK_X')");
    row("Oracle, twice", "1", "[Oracle][ODBC][Ora]ORA-00001: unique constraint (QDX.UX_CORAS) violated",
        "lo stesso valore è già presente nella chiave 'QDX.UX_CORAS' della tabella 'X01_CON_TRO', che non ammette "
        "doppioni");
    row("number of another database", "1", "near \"(\": syntax error (1)", "");
}

void TestOdbc::Refusals() {
    QFETCH(QString, code);
    QFETCH(QString, words);
    QFETCH(QString, meaning);
    const SqlError error = odbc::MakeError({{"23000", code, words}}, "INSERT INTO X01_CON_TRO (CORAS) VALUES ('x')");
    QCOMPARE(error.Message(), meaning.isEmpty() ? words : QString(meaning + " (" + words + " [" + code + "])"));
    QCOMPARE(error.EngineMessage(), words);
}

/// A date that is none comes as its text, so that its row can be named; as Null nobody would miss it.
void TestOdbc::ImpossibleDates() {
    QCOMPARE(odbc::DayOf({0, 0, 0}), QVariant("0000-00-00"));
    QCOMPARE(odbc::DayOf({2024, 2, 30}), QVariant("2024-02-30"));
    QCOMPARE(odbc::DayOf({2024, 2, 29}), QVariant(QDate(2024, 2, 29)));
    QCOMPARE(odbc::MomentOf({2024, 2, 30, 7, 5, 0, 0}), QVariant("2024-02-30 07:05:00"));
    QCOMPARE(odbc::TimeOf({25, 0, 0}), QVariant("25:00:00"));
}

void TestOdbc::MissingDrivers_data() {
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("words");
    QTest::newRow("known") << "PostgreSQL Unicode"
                           << "su Debian è nel pacchetto odbc-postgresql";
    QTest::newRow("no server") << "FreeTDS"
                               << "il server non risponde";
    QTest::newRow("unknown") << "Driver di nessuno"
                             << "'Driver di nessuno' non è installato";
}

void TestOdbc::MissingDrivers() {
    QFETCH(QString, driver);
    QFETCH(QString, words);
    ovConnection connection;
    connection.Driver = driver;
    connection.Server = "127.0.0.1,9";
    connection.User = "u";
    connection.Password = "segreto";
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains(words), qPrintable(error->Message()));
    QVERIFY2(!error->Message().contains("segreto"), qPrintable(error->Message()));
    QVERIFY2(!error->Message().contains("caduta"), qPrintable(error->Message())); // it never stood
    QVERIFY2(error->Message().startsWith("Server '127.0.0.1"), qPrintable(error->Message()));
}

void TestOdbc::RowsOfADriver() {
    const QTemporaryDir folder;
    ovConnection connection;
    connection.ConnectionString = "Driver={SQLite3};Database=" + folder.filePath("a.db");
    connection.ProviderType = Provider(7);
    const auto refused = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    if (refused) {
        QSKIP(qPrintable(refused->Message()));
    }
    connection.Execute("CREATE TABLE T (ID INTEGER PRIMARY KEY, A VARCHAR(20), D DOUBLE, M DATETIME)");
    connection.BeginTrans();
    for (int row = 1; row <= 3000; ++row) {
        connection.Execute(QStringLiteral("INSERT INTO T (A, D) VALUES ('perché %1', 1.5)").arg(row));
    }
    connection.CommitTrans();
    QCOMPARE(connection.GetTables(), QStringList{"T"});
    QCOMPARE(connection.GetColumns("T").size(), 4);
    int count = 0;
    for (Recordset rows = connection.ExecuteWC("SELECT ID, A, M FROM T ORDER BY ID"); !rows.Eof(); rows.MoveNext()) {
        QCOMPARE(rows.Value("A").toString(), QStringLiteral("perché %1").arg(++count));
        QVERIFY(rows.Value("M").isNull());
        if (count % 100 == 0) {
            QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM T"), 3000);
        }
    }
    QCOMPARE(count, 3000);
    const auto error = ErrorOf<SqlError>([&] { connection.ExecuteWC("SELECT NOCOL FROM T"); });
    QVERIFY(error && error->Message().contains("NOCOL") && error->Statement() == "SELECT NOCOL FROM T");
}

QUADRIX_TEST(TestOdbc)

#include "test_odbcText.moc"
