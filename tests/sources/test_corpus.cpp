#include "fuzz/foreignFiles.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// Files that the fuzzers have found a reader to fail on.
class CorpusTest : public QObject {
    Q_OBJECT

private slots:
    void RefusesWhatTheFuzzersFound_data() {
        Columns<QString, QString>("kind", "path");
        const QDir corpus(QUADRIX_SOURCE_DIR "/tests/sources/corpus");
        for (const QString& kind : corpus.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            const QDir folder(corpus.filePath(kind));
            for (const QString& name : folder.entryList(QDir::Files)) {
                Row(qPrintable(kind + '/' + name), kind, folder.filePath(name));
            }
        }
    }
    void RefusesWhatTheFuzzersFound() {
        QFETCH(const QString, kind);
        QFETCH(const QString, path);
        static const QMap<QString, foreignFiles::Kind> kinds{
            {"FoxPro", foreignFiles::FoxPro()},     {"Text", foreignFiles::Text()}, {"Access", foreignFiles::Access()},
            {"Workbook", foreignFiles::Workbook()}, {"Xlsx", foreignFiles::Xlsx()}, {"Ods", foreignFiles::Ods()},
            {"Fixed", foreignFiles::Fixed()}};
        QVERIFY(kinds.contains(kind));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QTemporaryDir folder;
        const auto refused = foreignFiles::Read(kinds[kind], file.readAll(), folder.path());
        QVERIFY(refused &&
                refused->contains(kinds[kind].package.isEmpty() ? kinds[kind].files.first() : kinds[kind].package));
    }
};

QUADRIX_TEST(CorpusTest)
#include "test_corpus.moc"
