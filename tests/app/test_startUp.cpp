#include "app/startUp.h"
#include "core/passwordScrambling.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QSysInfo>
#include <QTest>

class TestStartUp : public QObject {
    Q_OBJECT

private slots:
    void init();
    void findsTheSettingsFile();
    void seedsTheDatabaseSection_data();
    void seedsTheDatabaseSection();
    void readsProviders_data();
    void readsProviders();
    void keepsPasswordsScrambled_data();
    void keepsPasswordsScrambled();
    void opensTheEmbeddedDatabase();
    void tellsWhyItIsNotOpen_data();
    void tellsWhyItIsNotOpen();
    void reportsUnreadableSettingsOnce();
    void showsTheWindowAfterAFailure();
    void listsCompanies();
    void namesADatabaseWithoutQuadrix();

private:
    QString Ini() const { return m_folder->filePath("Config/Quadrix.ini"); }
    void Set(const QStringList& settings) const {
        SettingsFile file(Ini());
        for (const QString& setting : settings) {
            file.Write("DATABASE", setting.section('=', 0, 0), setting.section('=', 1));
        }
    }
    QString Get(const QString& key) const { return SettingsFile(Ini()).Read("DATABASE", key); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestStartUp::init() { m_folder = std::make_unique<QTemporaryDir>(); }

void TestStartUp::findsTheSettingsFile() {
    const QByteArray data = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", "/tmp/data home");
    qputenv("QUADRIX_CONFIG", "");
    QCOMPARE(modMain::SettingsFilePath(), QString("/tmp/data home/Orvane Quadrix/Config/Quadrix.ini"));
    qputenv("QUADRIX_CONFIG", "/etc/quadrix/");
    QCOMPARE(modMain::SettingsFilePath(), QString("/etc/quadrix/Quadrix.ini"));
    QCOMPARE(modMain::SettingsFilePath("/opt/prova//"), QString("/opt/prova/Quadrix.ini"));
    QCOMPARE(modMain::SettingsFilePath("prova"), QDir::currentPath() + "/prova/Quadrix.ini");
    qunsetenv("QUADRIX_CONFIG");
    data.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", data);
}

void TestStartUp::seedsTheDatabaseSection_data() {
    QTest::addColumn<QString>("network");
    QTest::addColumn<QString>("keys");
    QTest::newRow("integrated sign-on") << ""
                                        << "Provider=,ServerName=,DatabaseName=,NetworkCredential=";
    QTest::newRow("own user") << "no"
                              << "NetworkCredential=,Provider=,ServerName=,DatabaseName=,Username=,Password=";
}

void TestStartUp::seedsTheDatabaseSection() {
    QFETCH(QString, network);
    if (!network.isEmpty()) {
        Set({"NetworkCredential=" + network});
    }
    ScriptedOperator person;
    Session session(person);
    modMain::ConnectQuadrix(session, Ini());
    QFile file(Ini());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QStringList keys;
    for (const QString& line : QString::fromLatin1(file.readAll()).split("\r\n").mid(1)) {
        keys.append(line.left(line.indexOf('=') + 1));
    }
    QTEST(keys.join(',').chopped(1), "keys");
    QCOMPARE(Get("Provider"), QString("MSSQL"));
    QCOMPARE(Get("DatabaseName"), QString("QUADRIX"));
    QCOMPARE(Get("ServerName"), QSysInfo::machineHostName().toUpper());
    QCOMPARE(session.Quadrix.NetworkCredential, network.isEmpty());
}

void TestStartUp::readsProviders_data() {
    QTest::addColumn<QString>("setting");
    QTest::addColumn<int>("provider");
    QTest::addColumn<bool>("embedded");
    QTest::newRow("any case") << "oracle" << 4 << false;
    QTest::newRow("MYSQL") << "MYSQL" << 3 << false;
    QTest::newRow("SYBASE") << "Sybase" << 2 << false;
    QTest::newRow("ACCESS") << "ACCESS" << 1 << false;
    QTest::newRow("unknown") << "DB2" << 6 << false; // the number that the connection had
    QTest::newRow("SQLITE") << "sqlite" << 6 << true;
    QTest::newRow("MSSQL") << "MSSQL" << 0 << false;
}

void TestStartUp::readsProviders() {
    QFETCH(QString, setting);
    Set({"Provider=" + setting, "DatabaseName=missing.db"});
    ScriptedOperator person;
    Session session(person);
    session.Quadrix.ProviderType = Provider::VisualFoxPro;
    QVERIFY(!modMain::ConnectQuadrix(session, Ini()));
    QTEST(static_cast<int>(session.Quadrix.ProviderType), "provider");
    QTEST(session.Quadrix.Embedded, "embedded");
}

void TestStartUp::keepsPasswordsScrambled_data() {
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("used");
    QTest::addColumn<bool>("rewritten");
    QTest::newRow("clear") << "se gr€ta"
                           << "0"
                           << "se gr€ta" << true;
    QTest::newRow("clear, no form told") << "segreta"
                                         << ""
                                         << "segreta" << true;
    QTest::newRow("scrambled") << ScramblePassword("segreta", Scrambling::Scramble, true) << "1"
                               << "segreta" << false;
    QTest::newRow("as it stands") << "segreta"
                                  << "2"
                                  << "segreta" << false;
    QTest::newRow("none") << ""
                          << ""
                          << "" << false;
    QTest::newRow("blanks") << "  "
                            << "0"
                            << "  " << false;
}

void TestStartUp::keepsPasswordsScrambled() {
    QFETCH(QString, stored);
    QFETCH(QString, form);
    QFETCH(QString, used);
    QFETCH(bool, rewritten);
    Set({"NetworkCredential=0", "Username=carlo", "Password=" + stored, "PasswordEncryption=" + form});
    for (int start = 0; start < 2; ++start) { // the second start finds what the first one wrote
        ScriptedOperator person;
        Session session(person);
        modMain::ConnectQuadrix(session, Ini());
        QCOMPARE(session.Quadrix.Password, used);
        QCOMPARE(session.Quadrix.User, QString("carlo"));
        QCOMPARE(Get("Password") != stored, rewritten);
        QCOMPARE(Get("PasswordEncryption"), rewritten ? QString("1") : form);
    }
}

void TestStartUp::opensTheEmbeddedDatabase() {
    Set({"Provider=SQLITE", "DatabaseName=data/azienda.db"});
    ScriptedOperator person;
    Session session(person);
    QVERIFY(modMain::ConnectQuadrix(session, Ini(), modMain::MissingDatabase::Create));
    QVERIFY(session.Quadrix.State());
    QCOMPARE(session.Quadrix.DatabaseName, m_folder->filePath("Config/data/azienda.db"));
    QVERIFY(QFile::exists(session.Quadrix.DatabaseName));
    QCOMPARE(session.Quadrix.ProviderType, Provider::SqlServer);
    QVERIFY(session.Quadrix.QuadrixProduct);
    QCOMPARE(QFileInfo(session.LogFile).fileName(), QString("import.log"));
    QVERIFY(!person.IsBusy());
    QVERIFY(person.Events.isEmpty());
}

void TestStartUp::tellsWhyItIsNotOpen_data() {
    QTest::addColumn<QString>("database");
    QTest::addColumn<QString>("told");
    QTest::newRow("missing") << "manca.db"
                             << "non esiste";
    QTest::newRow("a folder") << "."
                              << "cartella";
    QTest::newRow("no database") << "Quadrix.ini"
                                 << "non è un database valido";
}

void TestStartUp::tellsWhyItIsNotOpen() {
    QFETCH(QString, database);
    QFETCH(QString, told);
    Set({"Provider=SQLITE", "DatabaseName=" + database});
    ScriptedOperator person;
    Session session(person);
    QVERIFY(!modMain::ConnectQuadrix(session, Ini()));
    QCOMPARE(person.Reported.size(), 1);
    QCOMPARE(person.Reported[0].module + '.' + person.Reported[0].procedure, QString("modMain.ConnectQuadrix"));
    QVERIFY2(person.Reported[0].message.contains(told), qPrintable(person.Reported[0].message));
    QVERIFY(person.Reported[0].message.contains(m_folder->filePath("Config")));
    QVERIFY(!QFile::exists(m_folder->filePath("Config/manca.db")));
    QVERIFY(!person.IsBusy());
}

void TestStartUp::reportsUnreadableSettingsOnce() {
    QDir().mkpath(QFileInfo(Ini()).path());
    QFile file(Ini());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("\xff\xfe[") == 3);
    file.close();
    ScriptedOperator person;
    Session session(person);
    QVERIFY(!modMain::ConnectQuadrix(session, Ini()));
    QCOMPARE(person.Reported.size(), 1);
    QVERIFY2(person.Reported[0].message.contains(Ini()), qPrintable(person.Reported[0].message));
    QCOMPARE(file.size(), 3);
}

void TestStartUp::showsTheWindowAfterAFailure() {
    Set({"Provider=SQLITE", "DatabaseName=manca.db"});
    ScriptedOperator person;
    Session session(person);
    bool shown = false;
    modMain::Main(session, Ini(), [&] {
        shown = true;
        QVERIFY(person.IsBusy());
        QCOMPARE(session.Errors.Entries().size(), 1);
    });
    QVERIFY(shown);
    QVERIFY(!person.IsBusy());
}

void TestStartUp::listsCompanies() {
    TestTarget target;
    target.AddCompany("A02", "Àncora S.p.A.");
    const auto companies = modMain::GetCompanies(target.Get());
    QCOMPARE(companies.size(), 2);
    QCOMPARE(companies[0].code + ' ' + companies[0].name, QString("A02 Àncora S.p.A."));
    QCOMPARE(companies[1].code, QString("X01"));
}

void TestStartUp::namesADatabaseWithoutQuadrix() {
    Set({"Provider=SQLITE", "DatabaseName=vuoto.db"});
    ScriptedOperator person;
    Session session(person);
    session.Errors.Action = ErrorAction::Abort;
    QVERIFY(modMain::ConnectQuadrix(session, Ini(), modMain::MissingDatabase::Create));
    const auto error = ErrorOf<SqlError>([&] { modMain::GetCompanies(session); });
    QVERIFY(error && error->Message().contains("SYS_AZI") && error->Message().contains("vuoto.db"));
}

QUADRIX_TEST(TestStartUp)
#include "test_startUp.moc"
