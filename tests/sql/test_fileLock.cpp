#include "sql/FileLock.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

/// Locks between programs that the operating system keeps.
class TestFileLock : public QObject {
    Q_OBJECT

private slots:
    void OneAtATime() {
        auto lock = FileLock::Take(m_path, "anna");
        QVERIFY(lock != nullptr);
        QVERIFY(FileLock::Take(m_path, "bruno") == nullptr);
        QVERIFY(FileLock::IsTaken(m_path));
        QCOMPARE(FileLock::NoteOf(m_path), QString("anna"));
        lock.reset();
        QVERIFY(!FileLock::IsTaken(m_path));
        QVERIFY(!QFile::exists(m_path));
    }

    /// A file that stays behind keeps nobody out, whatever it says.
    void GoesWithAKilledProgram() {
        QProcess other;
        other.start("flock", {"--no-fork", m_path, "sleep", "60"});
        QTRY_VERIFY(FileLock::IsTaken(m_path));
        QVERIFY(FileLock::Take(m_path, "anna") == nullptr);
        other.kill();
        other.waitForFinished();
        QVERIFY(QFile::exists(m_path));
        const auto lock = FileLock::Take(m_path, "anna");
        QVERIFY(lock != nullptr);
        QCOMPARE(FileLock::NoteOf(m_path), QString("anna"));
    }

    /// One of a user whose files are his alone, left behind, keeps no other user out.
    void OpensToAll() {
        const mode_t before = umask(077);
        const auto lock = FileLock::Take(m_path, "anna");
        umask(before);
        QVERIFY(QFile::permissions(m_path).testFlags(QFile::ReadOther | QFile::WriteOther));
    }

    void DoesNotFollowLinks() {
        const QString precious = m_folder.filePath("precious");
        QFile file(precious);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("documento") > 0);
        file.close();
        const QString link = m_folder.filePath("link.lock");
        QVERIFY(QFile::link(precious, link));
        QVERIFY(ErrorOf<ImportError>([&] { FileLock::Take(link, "anna"); }));
        QCOMPARE(FileLock::NoteOf(precious), QString("documento"));
    }

    void NamesTheFileThatCannotBeMade() {
        const auto error = ErrorOf<ImportError>([&] { FileLock::Take(m_folder.filePath("nessuna/x.lock"), {}); });
        QVERIFY(error && error->Message().contains("nessuna/x.lock"));
    }

private:
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath("import.log.lock");
};

QUADRIX_TEST(TestFileLock)

#include "test_fileLock.moc"
