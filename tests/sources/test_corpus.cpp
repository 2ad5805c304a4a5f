#include "fuzz/foreignFiles.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// Files that the fuzzers have found a reader to fail on.
class CorpusTest : public QObject {
    Q_OBJECT

private slots:
    void RefusesWhatTheFuzzersFound_data() {
        Columns<QString>("path");
        const QDir folder(QUADRIX_SOURCE_DIR "/tests/sources/corpus/Access");
        for (const QString& name : folder.entryList(QDir::Files)) {
            Row(qPrintable(name), folder.filePath(name));
        }
    }
    void RefusesWhatTheFuzzersFound() {
        QFETCH(const QString, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QTemporaryDir folder;
        const auto refused = foreignFiles::Read(foreignFiles::Access(), file.readAll(), folder.path());
        QVERIFY(refused && refused->contains("t.mdb"));
    }
};

QUADRIX_TEST(CorpusTest)
#include "test_corpus.moc"
