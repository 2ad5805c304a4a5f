#include "sql/ownFile.h"
#include "sql/SettingsFile.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include "sql/errors.h"

#include <QTemporaryDir>
#include <QTest>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

/// Nothing that somebody else has put under a name of the program's is written to.
class TestOwnFile : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("import.log");
        m_precious = m_folder->filePath("documento");
        WriteFile(m_precious, "prezioso");
    }

    void keepsOrEmptiesItsOwn() {
        WriteFile(m_path, "prima\n");
        QCOMPARE(Written(ownFile::Start::Append), QString());
        QCOMPARE(ReadFile(m_path), QByteArray("prima\nx"));
        QCOMPARE(Written(ownFile::Start::Anew), QString());
        QCOMPARE(ReadFile(m_path), QByteArray("x"));
    }

#ifndef Q_OS_WIN
    void refusesWhatIsNotItsOwn_data() {
        Columns<QString, QString>("kind", "told");
        Row("link", "link", "collegamento");
        Row("link to nothing", "dangling", "collegamento");
        Row("second name of a file", "hard", "secondo nome");
        Row("pipe", "pipe", ""); // in the system's words, and without waiting for a reader
        Row("folder", "folder", "");
    }
    void refusesWhatIsNotItsOwn() {
        QFETCH(const QString, kind);
        QFETCH(const QString, told);
        const QByteArray path = QFile::encodeName(m_path);
        if (kind == "link") {
            QCOMPARE(symlink(QFile::encodeName(m_precious), path), 0);
        } else if (kind == "dangling") {
            QCOMPARE(symlink(QFile::encodeName(m_folder->filePath("nuovo")), path), 0);
        } else if (kind == "hard") {
            QCOMPARE(link(QFile::encodeName(m_precious), path), 0);
        } else if (kind == "pipe") {
            QCOMPARE(mkfifo(path, 0600), 0);
        } else {
            QVERIFY(QDir().mkdir(m_path));
        }
        for (const auto start : {ownFile::Start::Anew, ownFile::Start::Append}) {
            const QString trouble = Written(start);
            QVERIFY2(!trouble.isEmpty() && trouble.contains(told), qPrintable(trouble));
        }
        QVERIFY(!ownFile::Obstacle(m_path).isEmpty());
        QCOMPARE(ReadFile(m_precious), QByteArray("prezioso"));
        QVERIFY(!QFile::exists(m_folder->filePath("nuovo")));
    }

    void makesItForItsOwnerAlone() {
        const mode_t before = umask(0);
        QCOMPARE(Written(ownFile::Start::Append), QString());
        umask(before);
        struct stat facts {};
        QCOMPARE(stat(QFile::encodeName(m_path).constData(), &facts), 0);
        QCOMPARE(facts.st_mode & 0777, mode_t{0600});
    }

    /// They may be kept elsewhere by whoever looks after the machine: then they are only read.
    void settingsBehindALinkAreOnlyRead() {
        WriteFile(m_precious, "[A]\nKey=1\n");
        const QString ini = m_folder->filePath("Quadrix.ini");
        QVERIFY(QFile::link(m_precious, ini));
        SettingsFile settings(ini);
        QCOMPARE(settings.Read("A", "Key"), QString("1"));
        const auto error = ErrorOf<ImportError>([&] { settings.Write("A", "Key", "2"); });
        QVERIFY(error && error->Message().contains(ini) && error->Message().contains("collegamento"));
        QCOMPARE(ReadFile(m_precious), QByteArray("[A]\nKey=1\n"));
    }
#endif

private:
    /// Why it could not be written; empty when it was.
    QString Written(ownFile::Start start) const {
        QFile file;
        const QString trouble = ownFile::Open(file, m_path, start);
        if (trouble.isEmpty() && file.write("x") != 1) {
            return file.errorString();
        }
        return trouble;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    QString m_precious;
};

QUADRIX_TEST(TestOwnFile)
#include "test_ownFile.moc"
