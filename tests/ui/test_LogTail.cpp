#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "ui/LogTail.h"

#include <QTemporaryDir>
#include <QTest>

class TestLogTail : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QFile::remove(m_path);
        m_tail = LogTail(m_path);
    }

    void ReadsWholeLinesAsTheyCome() {
        QVERIFY(m_tail.Read().text.isEmpty());
        WriteFile(m_path, "uno\r\ndu", QIODevice::Append);
        QCOMPARE(m_tail.Read().text, QString("uno\n"));
        QVERIFY(m_tail.Read().text.isEmpty());
        WriteFile(m_path, "e \xE0\r\ntre\r\n", QIODevice::Append);
        const LogTail::Change change = m_tail.Read();
        QCOMPARE(change.text, QString("due à\ntre\n"));
        QVERIFY(!change.restarted);
    }

    void SeesANewLog_data() {
        Columns<QByteArray>("next");
        Row("shorter", QByteArray("B\r\n"));
        Row("longer than what was read", QByteArray("05/03/2024 11:00:00 - altro e molto altro\r\nC\r\n"));
    }
    void SeesANewLog() {
        QFETCH(QByteArray, next);
        WriteFile(m_path, "05/03/2024 10:00:00 - uno\r\n", QIODevice::Append);
        QVERIFY(!m_tail.Read().text.isEmpty());
        WriteFile(m_path, next);
        const LogTail::Change change = m_tail.Read();
        QVERIFY(change.restarted);
        QCOMPARE(change.text, QString::fromLatin1(next).remove('\r'));
    }

    void ARemovedLogIsEmpty() {
        WriteFile(m_path, "uno\r\n", QIODevice::Append);
        m_tail.Read();
        QFile::remove(m_path);
        const LogTail::Change change = m_tail.Read();
        QVERIFY(change.restarted);
        QVERIFY(change.text.isEmpty());
    }

    void OfALongLogOnlyTheEndComes() {
        QByteArray bytes;
        for (int i = 0; i < 40000; ++i) {
            bytes += "riga " + QByteArray::number(i) + "\r\n";
        }
        WriteFile(m_path, bytes, QIODevice::Append);
        const QString text = m_tail.Read().text;
        QVERIFY(text.size() < qsizetype(300) * 1024);
        QVERIFY(text.startsWith("riga "));
        QVERIFY(text.endsWith("riga 39999\n"));
        QVERIFY(m_tail.Read().text.isEmpty());
    }

private:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath("import.log");
    LogTail m_tail{m_path};
};

QUADRIX_TEST(TestLogTail)
#include "test_LogTail.moc"
