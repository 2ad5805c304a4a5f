#include "tests/cli/CliRun.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// No password is seen, wherever a connection fails.
class TestPasswords : public QObject {
    Q_OBJECT

private slots:
    void AreNotSeen_data() {
        Columns<QString, QStringList, QString, QString>("section", "settings", "password", "told");
        const QString noServer = QStringLiteral("il server non risponde");
        for (const QString password : {"Segreta9", "Segreta;9}{", "Segreta\"9'"}) {
            QTest::addRow("target, MariaDB, %s", qPrintable(password))
                << "DATABASE" << QStringList{"Provider=MYSQL", "ServerName=127.0.0.1:1", "DatabaseName=q"} << password
                << noServer;
            QTest::addRow("target, SQL Server, %s", qPrintable(password))
                << "DATABASE" << QStringList{"Provider=MSSQL", "ServerName=127.0.0.1,1", "DatabaseName=q"} << password
                << noServer;
            QTest::addRow("source, SQL Server, %s", qPrintable(password))
                << "IMPORT" << QStringList{"Servername=127.0.0.1,1", "Databasename=GESCOM"} << password << noServer;
        }
        const QStringList server = qEnvironmentVariable("QUADRIX_TEST_MARIADB").split(u'|');
        if (server.size() == 5) {
            Row("target, MariaDB refuses it", "DATABASE",
                QStringList{"Provider=MYSQL", "ServerName=" + server[0] + ':' + server[1], "DatabaseName=q"},
                "Segreta;9}{", "utente o password errati");
            Row("target, MariaDB, written over a hidden one", "DATABASE",
                QStringList{"Provider=MYSQL", "ServerName=" + server[0] + ':' + server[1], "DatabaseName=q",
                            "PasswordEncryption=1"},
                "Segreta9", "mettere PasswordEncryption=0: ");
        }
    }
    void AreNotSeen() {
        QFETCH(const QString, section);
        QFETCH(const QStringList, settings);
        QFETCH(const QString, password);
        QFETCH(const QString, told);
        const CliRun cli;
        cli.CreateCompany();
        for (const QString& setting : settings) {
            cli.Set(section, setting.section('=', 0, 0), setting.section('=', 1));
        }
        cli.Set(section, "NetworkCredential", "0");
        cli.Set(section, "Username", "carlo");
        cli.Set(section, "Password", password);
        const QString trace = cli.Folder.filePath("trace.sql");
        for (const QStringList& more : {QStringList(), QStringList{"--json"}}) {
            const auto ended = cli.Run(
                QStringList{"import", "--company", "X01", "--origin", "Gescom", "--data", "cli", "--trace", trace} +
                more);
            QCOMPARE(ended.exitCode, 1);
            const QString seen =
                ended.output + ended.errors + ReadFile(trace) + ReadFile(ended.Json()["log"].toString());
            QVERIFY2(seen.contains(told), qPrintable(seen));
            QVERIFY2(!seen.contains("Segreta"), qPrintable(seen));
        }
    }
};

QUADRIX_TEST(TestPasswords)
#include "test_passwords.moc"
