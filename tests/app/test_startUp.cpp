#include "app/startUp.h"
#include "core/modMain.h"
#include "core/passwordScrambling.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QRandomGenerator>
#include <QSysInfo>
#include <QTest>

class TestStartUp : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void findsTheSettingsFile() {
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

    void seedsTheDatabaseSection_data() {
        Columns<QString, QString>("network", "keys");
        Row("integrated sign-on", "", "Provider=,ServerName=,DatabaseName=,NetworkCredential=");
        Row("own user", "no", "NetworkCredential=,Provider=,ServerName=,DatabaseName=,Username=,Password=");
    }
    void seedsTheDatabaseSection() {
        QFETCH(QString, network);
        if (!network.isEmpty()) {
            Set({"NetworkCredential=" + network});
        }
        ScriptedOperator person;
        Session session(person);
        modMain::ConnectQuadrix(session, Ini());
        QStringList keys;
        for (const QString& line : QString::fromLatin1(ReadFile(Ini())).split("\r\n").mid(1)) {
            keys.append(line.left(line.indexOf('=') + 1));
        }
        QTEST(keys.join(',').chopped(1), "keys");
        QCOMPARE(Get("Provider"), QString("MSSQL"));
        QCOMPARE(Get("DatabaseName"), QString("QUADRIX"));
        QCOMPARE(Get("ServerName"), QSysInfo::machineHostName().toUpper());
        QCOMPARE(session.Quadrix.NetworkCredential, network.isEmpty());
    }

    void readsProviders_data() {
        Columns<QString, int, bool>("setting", "provider", "embedded");
        Row("any case", "oracle", 4, false);
        Row("MYSQL", "MYSQL", 3, false);
        Row("SYBASE", "Sybase", 2, false);
        Row("ACCESS", "ACCESS", 1, false);
        Row("unknown", "DB2", 6, false); // the number that the connection had
        Row("SQLITE", "sqlite", 6, true);
        Row("MSSQL", "MSSQL", 0, false);
    }
    void readsProviders() {
        QFETCH(QString, setting);
        Set({"Provider=" + setting, "DatabaseName=missing.db"});
        ScriptedOperator person;
        Session session(person);
        session.Quadrix.ProviderType = Provider::VisualFoxPro;
        QVERIFY(!modMain::ConnectQuadrix(session, Ini()));
        QTEST(static_cast<int>(session.Quadrix.ProviderType), "provider");
        QTEST(session.Quadrix.Embedded, "embedded");
        const bool isTold = !person.Messages.isEmpty() && person.Messages.first().text.contains("non è tra MSSQL");
        QCOMPARE(isTold, QTest::currentDataTag() == QString("unknown"));
    }

    void keepsPasswordsScrambled_data() {
        Columns<QString, QString, QString, bool>("stored", "form", "used", "rewritten");
        Row("clear", "se gr€ta", "0", "se gr€ta", true);
        Row("clear, no form told", "segreta", "", "segreta", true);
        Row("scrambled", ScramblePassword("segreta", Scrambling::Scramble, true), "1", "segreta", false);
        Row("as it stands", "segreta", "2", "segreta", false);
        Row("none", "", "", "", false);
        Row("blanks", "  ", "0", "  ", false);
    }
    void keepsPasswordsScrambled() {
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

    /// Passwords as they are drawn by programs that keep them: the first start hides each, the second one reads it.
    void startsWithStrongPasswords_data() {
        Columns<int>("length");
        for (const int length : {8, 16, 24, 32, 48, 64}) {
            QTest::addRow("%d characters", length) << length;
        }
    }
    void startsWithStrongPasswords() {
        QFETCH(int, length);
        QRandomGenerator random(static_cast<quint32>(length));
        for (int drawn = 0; drawn < 40; ++drawn) {
            QString password;
            while (password.size() < length) {
                password += QChar(random.bounded(u'!', u'~' + 1));
            }
            QFile::remove(Ini());
            Set({"Provider=SQLITE", "DatabaseName=missing.db", "NetworkCredential=0", "Password=" + password});
            for (int start = 0; start < 2; ++start) {
                ScriptedOperator person;
                Session session(person);
                modMain::ConnectQuadrix(session, Ini());
                QCOMPARE(session.Quadrix.Password, password);
                QCOMPARE(Get("PasswordEncryption"), QString("1"));
                QVERIFY2(!ReadFile(Ini()).contains(password.toLatin1()), qPrintable(password));
                QVERIFY(person.Messages.isEmpty());
            }
        }
    }

    /// What cannot be hidden, for whatever reason, is told and does not keep the program from starting.
    void startsWithAPasswordThatStaysClear() {
        QDir().mkpath(QFileInfo(Ini()).path());
        const QString settings =
            "[DATABASE]\r\nProvider=SQLITE\r\nServerName=S\r\nDatabaseName=a.db\r\nNetworkCredential=0\r\n"
            "Username=u\r\nPassword=日本\r\nPasswordEncryption=0\r\n";
        WriteFile(Ini(), "\xef\xbb\xbf" + settings.toUtf8());
        ScriptedOperator person;
        Session session(person);
        QVERIFY(modMain::ConnectQuadrix(session, Ini(), modMain::MissingDatabase::Create));
        QCOMPARE(session.Quadrix.Password, QString("日本"));
        QCOMPARE(person.Events.size(), 1);
        QVERIFY2(person.Events[0].contains("Password") && person.Events[0].contains("leggibile"),
                 qPrintable(person.Events[0]));
        QVERIFY(person.Reported.isEmpty());
        QCOMPARE(ReadFile(Ini()), "\xef\xbb\xbf" + settings.toUtf8());
    }

    void namesTheDriver() {
        Set({"Provider=MSSQL", "Driver=ODBC Driver 18 for SQL Server", "ServerName=nowhere.invalid"});
        ScriptedOperator person;
        Session session(person);
        modMain::ConnectQuadrix(session, Ini());
        QCOMPARE(session.Quadrix.Driver, QString("ODBC Driver 18 for SQL Server"));
    }

    /// A folder that cannot be made, also not by a superuser: it would stand within a file.
    void tellsThatSettingsAreNotSaved() {
        WriteFile(m_folder->filePath("Config"), "");
        ScriptedOperator person;
        Session session(person);
        QVERIFY(!modMain::ConnectQuadrix(session, Ini()));
        QVERIFY(!person.Messages.isEmpty());
        QVERIFY2(person.Messages[0].text.startsWith("Le impostazioni non si possono salvare"),
                 qPrintable(person.Messages[0].text));
    }

    void readsTheLineOfTheTarget() {
        Set({"Provider=SQLITE", "DatabaseName=a.db", "Encryption=4"});
        ScriptedOperator person;
        Session session(person);
        QVERIFY(!modMain::ConnectQuadrix(session, Ini(), modMain::MissingDatabase::Create));
        QVERIFY2(session.Errors.Entries().last().message.contains("Chiave Encryption, sezione [DATABASE] di '"),
                 qPrintable(session.Errors.Entries().last().message));
    }

    void tellsBrokenLines() {
        QDir().mkpath(QFileInfo(Ini()).path());
        WriteFile(Ini(), "[DATABASE\nProvider=SQLITE\nDatabaseName=a.db\n\n; a comment\nDatabase Name\n[IMPORT]\n");
        ScriptedOperator person;
        Session session(person);
        QVERIFY(modMain::ConnectQuadrix(session, Ini(), modMain::MissingDatabase::Create));
        QCOMPARE(person.Events.size(), 1);
        QVERIFY2(person.Events[0].endsWith("riga 1: '[DATABASE'\nriga 6: 'Database Name'"),
                 qPrintable(person.Events[0]));
    }

    void opensTheEmbeddedDatabase() {
        Set({"Provider=SQLITE", "DatabaseName=data/azienda.db"});
        ScriptedOperator person;
        Session session(person);
        QVERIFY(modMain::ConnectQuadrix(session, Ini(), modMain::MissingDatabase::Create));
        QVERIFY(session.Quadrix.State());
        QCOMPARE(session.Quadrix.DatabaseName, m_folder->filePath("Config/data/azienda.db"));
        QVERIFY(QFile::exists(session.Quadrix.DatabaseName));
        QCOMPARE(session.Quadrix.ProviderType, Provider::SqlServer);
        QCOMPARE(QFileInfo(session.LogFile).fileName(), QString("import.log"));
        QVERIFY(!person.IsBusy());
        QVERIFY(person.Events.isEmpty());
    }

    void reportsUnreadableSettingsOnce() {
        QDir().mkpath(QFileInfo(Ini()).path());
        WriteFile(Ini(), "\xef\xbb\xbf[A\xff");
        ScriptedOperator person;
        Session session(person);
        QVERIFY(!modMain::ConnectQuadrix(session, Ini()));
        QCOMPARE(person.Reported.size(), 1);
        QVERIFY2(person.Reported[0].message.contains(Ini()), qPrintable(person.Reported[0].message));
        for (const char* key : {"Disable_Reset", "Disable_Sequence", "AZIENDA"}) { // as the window asks
            QCOMPARE(modMain::GetAppConfig(session, "IMPORT", key, "0"), QString("0"));
        }
        QCOMPARE(person.Reported.size(), 1);
        QCOMPARE(ReadFile(Ini()).size(), 6);
    }

    void listsCompanies() {
        TestTarget target;
        target.AddCompany("A02", "Àncora S.p.A.");
        const auto companies = modMain::GetCompanies(target.Get());
        QCOMPARE(companies.size(), 2);
        QCOMPARE(companies[0].code + ' ' + companies[0].name, QString("A02 Àncora S.p.A."));
        QCOMPARE(companies[1].code, QString("X01"));
    }

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

QUADRIX_TEST(TestStartUp)
#include "test_startUp.moc"
