#include "app/presence.h"
#include "app/RunLog.h"
#include "core/modImport.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

using modImport::WriteImportLog;

namespace {

const QString Stamp = QStringLiteral("05/03/2024 10:20:30 - ");

} // namespace

/// Programs that run at the same time: each has a log of its own, and knows of the others.
class TestRunLog : public QObject {
    Q_OBJECT

private slots:
    void aloneItIsTheUsualOne() {
        TestTarget target;
        {
            const RunLog log(target.Get(), "importazione");
            WriteImportLog(target.Get(), "prima", true);
        }
        QCOMPARE(target.Log(), QString(Stamp + "prima\r\n").toLatin1());
        QCOMPARE(QDir(target.Folder.path()).entryList({"*import*"}), QStringList{"import.log"});
        QVERIFY(target.Person.Messages.isEmpty());
    }

    void aSecondRunHasItsOwn_data() {
        Columns<bool, bool, QString>("otherEnds", "isNew", "usual");
        Row("the first goes on", false, true, "prima\r\n");
        Row("the first has ended", true, true, "seconda\r\n");
        Row("the first has ended, the second appends", true, false, "prima\r\nseconda\r\n");
    }
    void aSecondRunHasItsOwn() {
        QFETCH(bool, otherEnds);
        QFETCH(bool, isNew);
        QFETCH(QString, usual);
        TestTarget target;
        Session& session = target.Get();
        WriteImportLog(session, "prima", true);
        const QString usualPath = session.LogFile;
        auto other = FileLock::Take(usualPath + ".lock", "anna (PC-1)");
        QString own;
        {
            const RunLog log(session, "importazione");
            own = session.LogFile;
            QVERIFY(own.endsWith(QString("/import-%1.log").arg(QCoreApplication::applicationPid())));
            WriteImportLog(session, "seconda", isNew);
            session.Results.append(RunResult());
            QCOMPARE(target.Log(), QString(Stamp + "prima\r\n").toLatin1());
            QCOMPARE(target.Person.Messages.size(), 1);
            QVERIFY(target.Person.Messages[0].text.contains("anna (PC-1)"));
            if (otherEnds) {
                other.reset();
            }
        }
        QCOMPARE(session.LogFile, usualPath);
        QCOMPARE(QString::fromLatin1(target.Log()).remove(Stamp), usual);
        QCOMPARE(QFile::exists(own), !otherEnds);
        QCOMPARE(LogOfLast(session), otherEnds ? usualPath : own);
    }

    void knowsWhoUsesTheSameSettings() {
        TestTarget target;
        const QString settings = target.Folder.filePath("Quadrix.ini");
        modMain::AnnouncePresence(target.Get(), settings);
        QCOMPARE(modMain::OthersAtWork(settings), QStringList()); // itself is none of them
        const QString file = target.Folder.filePath("Quadrix.pc-7.lock");
        QProcess other;
        other.start("flock", {"--no-fork", file, "sleep", "60"});
        QTRY_VERIFY(FileLock::IsTaken(file));
        WriteFile(file, "anna (PC-1), processo 7");
        QCOMPARE(modMain::OthersAtWork(settings), QStringList{"anna (PC-1), processo 7"});
        other.kill();
        other.waitForFinished();
        QCOMPARE(modMain::OthersAtWork(settings), QStringList());
        QVERIFY(!QFile::exists(file));
    }
};

QUADRIX_TEST(TestRunLog)

#include "test_runLog.moc"
