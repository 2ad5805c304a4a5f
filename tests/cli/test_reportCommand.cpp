#include "app/report/html.h"
#include "examples/examples.h"
#include "tests/cli/CliRun.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"

#include <QJsonArray>
#include <QTest>

#ifndef Q_OS_WIN
#include <csignal>
#endif

/// The page that proves a migration, from the command line.
class TestReportCommand : public QObject {
    Q_OBJECT

private slots:
    /// The exit code says what the page does; a page is written over, nothing else is.
    void TellsTheVerdict() {
        const CliRun cli;
        examples::Options options;
        options.rows = 20;
        options.folder = cli.Folder.filePath("arca");
        options.tables = QStringList{"articoli"};
        examples::Make("arca2000", options);
        cli.Set("IMPORT", "Databasename", "arca");
        QCOMPARE(cli.CreateCompany().exitCode, 0);
        const QStringList which{"--company", "X01", "--origin", "Arca 2000", "--data", "art"};
        const CliRun::Ended import = cli.Run(QStringList{"import", "--errors", "ignore"} + which);
        QVERIFY2(import.exitCode == 0, qPrintable(import.output + import.errors));
        const QString page = cli.Folder.filePath("verbale.html");
        const QStringList report = QStringList{"report", "--output", page, "--json"} + which;

        const CliRun::Ended agrees = cli.Run(report);
        QVERIFY2(agrees.exitCode == 0 || agrees.exitCode == 4, qPrintable(agrees.output + agrees.errors));
        QCOMPARE(agrees.Json()["verdict"].toString(), QString(agrees.exitCode == 0 ? "green" : "yellow"));
        QVERIFY(ReadFile(page).startsWith("<!DOCTYPE html>"));

        ovConnection target;
        OpenEmbedded(target, cli.Database()).Execute("UPDATE X01_ART_ICO SET ARDES = 'x' WHERE RECORD_ID = 1");
        target.CloseConnection();
        const CliRun::Ended differs = cli.Run(report);
        QCOMPARE(differs.exitCode, 1);
        QCOMPARE(differs.Json()["verdict"].toString(), QString("red"));
        const QString begin = QString::fromUtf8(ReadFile(page));
        QVERIFY(begin.contains("I dati non concordano"));

        WriteFile(page, "altro");
        const CliRun::Ended refused = cli.Run(report);
        QCOMPARE(refused.exitCode, 1);
        QVERIFY2(refused.errors.contains("non viene sovrascritto"), qPrintable(refused.errors));
        QCOMPARE(ReadFile(page), QByteArray("altro"));
    }

    /// What is interrupted says so, and leaves the page that is there.
    void IsInterrupted() {
#ifdef Q_OS_WIN
        QSKIP("no signals to send");
#else
        const CliRun cli;
        examples::Options options;
        options.rows = 5000;
        options.folder = cli.Folder.filePath("arca");
        options.tables = QStringList{"controparti"};
        examples::Make("arca2000", options);
        cli.Set("IMPORT", "Databasename", "arca");
        QCOMPARE(cli.CreateCompany().exitCode, 0);
        const QString page = cli.Folder.filePath("verbale.html");
        const QByteArray before = proof::FirstLine.toUtf8() + "\nprima";
        WriteFile(page, before);
        const QString trace = cli.Folder.filePath("traccia.sql");
        const auto process = cli.Start({"report", "--company", "X01", "--origin", "Arca 2000", "--data", "cli",
                                        "--answer", "no", "--output", page, "--trace", trace, "--json"});
        QTRY_VERIFY_WITH_TIMEOUT(ReadFile(trace).contains("INSERT INTO X01_CON_TRO"), 60000);
        QCOMPARE(ReadFile(page), before);
        QCOMPARE(kill(static_cast<pid_t>(process->processId()), SIGINT), 0);
        const auto ended = CliRun::End(*process);
        QCOMPARE(ended.exitCode, 3);
        QCOMPARE(ended.Json()["outcome"].toString(), QString("cancelled"));
        QCOMPARE(ReadFile(page), before);
        QCOMPARE(QDir(cli.Folder.path()).entryList({"verbale*"}).size(), 1);
#endif
    }
};

QUADRIX_TEST(TestReportCommand)
#include "test_reportCommand.moc"
