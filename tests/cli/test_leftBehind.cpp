#include "examples/examples.h"
#include "sql/ovConnection.h"
#include "tests/cli/CliRun.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QDir>
#include <QTest>

/// What the program leaves on the disk and shows around, and what it must not touch there.
class TestLeftBehind : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_cli = std::make_unique<CliRun>();
        m_cli->CreateCompany();
    }

    /// A wrong argument costs no file.
    void traceSparesWhatIsThere_data() {
        Columns<QString>("file");
        Row("database", "quadrix.db");
        Row("settings", "Quadrix.ini");
        Row("log of the database to be", "quadrix.db-wal");
        Row("settings to be", "Sequence.ini");
        Row("source", "anagrafe.dbf");
        Row("statements of somebody else", "mie.sql");
        Row("the same through a folder above", "x/../quadrix.db");
    }
    void traceSparesWhatIsThere() {
        QFETCH(const QString, file);
        QVERIFY(QDir(m_cli->Folder.path()).mkdir("x"));
        WriteFile(m_cli->Folder.filePath("mie.sql"), "SELECT 1;\n");
        WriteFile(m_cli->Folder.filePath("anagrafe.dbf"), "\x03");
        const QString path = m_cli->Folder.filePath(file);
        const bool wasThere = QFile::exists(path);
        const QByteArray before = ReadFile(path);
        const auto ended = m_cli->Run({"check", "--company", "X01", "--origin", "Gescom", "--trace", path});
        QCOMPARE(ended.exitCode, 1);
        QVERIFY2(ended.errors.contains("File di traccia '" + QDir::toNativeSeparators(path)), qPrintable(ended.errors));
        QCOMPARE(QFile::exists(path), wasThere);
        QCOMPARE(ReadFile(path), before);
    }

    void traceIsWrittenAnew() {
        const QString path = m_cli->Folder.filePath("trace.sql");
        WriteFile(path, ""); // made by whoever wanted its name
        m_cli->Run({"truncate", "--company", "X01", "--yes"}); // the first run marks the database
        QByteArray first;
        for (int time = 0; time < 2; ++time) {
            m_cli->Run({"truncate", "--company", "X01", "--yes", "--trace", path});
            QVERIFY(ReadFile(path).contains("DELETE FROM X01_CON_TRO"));
            first = time == 0 ? ReadFile(path) : first;
        }
        QCOMPARE(ReadFile(path), first);
    }

#ifndef Q_OS_WIN
    void whatIsMadeIsForItsOwnerAlone() {
        QDir(m_cli->Folder.path()).mkdir("nuova");
        const QString settings = m_cli->Folder.filePath("nuova/impostazioni");
        QVERIFY(QDir().mkpath(settings)); // with the rights of whoever made it
        WriteFile(settings + "/Quadrix.ini", "[DATABASE]\nProvider=SQLITE\nDatabaseName=dati/q.db\n");
        QFile::setPermissions(settings + "/Quadrix.ini", QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
        QProcess process;
        process.start("sh", {"-c", "umask 022; exec \"$@\"", "sh", QUADRIX_CLI, "--config", settings, "create-database",
                             "--company", "X01", "--name", "Prova", "--trace", settings + "/trace.sql"});
        const auto ended = CliRun::End(process);
        QVERIFY2(ended.exitCode == 0, qPrintable(ended.errors));
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                                QFile::WriteOther | QFile::ExeOther;
        for (const char* made : {"dati", "dati/q.db", "trace.sql"}) {
            const QString path = settings + '/' + made;
            QVERIFY2(QFile::exists(path), qPrintable(path));
            QVERIFY2(!(QFile::permissions(path) & others), qPrintable(path));
        }
        QVERIFY(QFile::permissions(settings + "/Quadrix.ini") & QFile::ReadOther);
    }
#endif

    /// Answers that no list of processes shows, in the order of the questions.
    void answersComeUnseen_data() {
        Columns<QStringList, QByteArray>("options", "input");
        Row("file", QStringList{"--input-file", "risposte"}, QByteArray());
        Row("standard input", QStringList{"--input-file", "-"}, QByteArray("X01\r\nX09\r\n"));
        Row("the first in clear", QStringList{"--input", "X01", "--input-file", "-"}, QByteArray("X09"));
    }
    void answersComeUnseen() {
        QFETCH(QStringList, options);
        QFETCH(const QByteArray, input);
        const QString answers = m_cli->Folder.filePath("risposte");
        WriteFile(answers, "X01\nX09\n");
        options.replaceInStrings("risposte", answers);
        QProcess process;
        process.start(QUADRIX_CLI,
                      QStringList{"--config", m_cli->Folder.path(), "import", "--company", "X01", "--origin",
                                  "Kordel NetSuite", "--data", "disegni", "--answer", "no", "--answer", "no"} +
                          options);
        process.write(input);
        process.closeWriteChannel();
        const auto ended = CliRun::End(process);
        QCOMPARE(ended.exitCode, 1);
        QVERIFY2(ended.errors.contains("Azienda 'X09': non esiste"), qPrintable(ended.errors));
    }

    void namesTheFileOfSecretsThatIsMissing() {
        const auto ended =
            m_cli->Run({"check", "--company", "X01", "--origin", "SAM", "--input-file", "/nessuna/risposta"});
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains("/nessuna/risposta"), qPrintable(ended.errors));
    }

    /// What a source says neither drives the terminal nor passes for a line of the log.
    void valuesAreSeenAsTheyAre() {
        const QTemporaryDir folder;
        examples::Options options;
        options.rows = 20;
        options.folder = folder.path();
        options.tables = QStringList{"controparti"};
        examples::Make("gescom", options);
        const QString source = QDir(folder.path()).entryList({"*.sqlite", "*.db"}).value(0);
        m_cli->Set("IMPORT", "Databasename", folder.filePath(source));
        ovConnection gescom;
        OpenEmbedded(gescom, folder.filePath(source))
            .Execute("UPDATE ARCLFR SET SC1CLFOR = 'dieci' || char(13) || char(10) || '25/11/2026 14:00:00 - Fine ' || "
                     "char(27) || '[31m' WHERE CODCLFOR = (SELECT MIN(CODCLFOR) FROM ARCLFR WHERE FLAGCLFR = 'C')");
        gescom.CloseConnection();
        const auto ended =
            m_cli->Run({"import", "--company", "X01", "--origin", "Gescom", "--data", "cli", "--errors", "ignore"});
        QVERIFY2(ended.exitCode == 4, qPrintable(ended.output + ended.errors));
        const QString log = ReadFile(ended.output.section("Log: ", -1).section('\n', 0, 0).trimmed());
        const QString seen = "dieci\\r\\n25/11/2026 14:00:00 - Fine \\x1b[31m";
        QVERIFY2(log.contains(seen), qPrintable(log));
        QVERIFY2(ended.output.contains(seen), qPrintable(ended.output));
        for (const QString& text : {log, ended.output, ended.errors}) {
            QVERIFY(!text.contains(QChar(0x1b)) && !text.contains("\n25/11/2026 14:00:00"));
        }
    }

private:
    std::unique_ptr<CliRun> m_cli;
};

QUADRIX_TEST(TestLeftBehind)
#include "test_leftBehind.moc"
