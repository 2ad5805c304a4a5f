#include "adapters/mappingPages.h"
#include "adapters/registry.h"
#include "tests/support/QuadrixTest.h"

#include <QDir>
#include <QTest>

using namespace contract;

class TestMappings : public QObject {
    Q_OBJECT

private slots:
    /// The pages under docs/mappings are those of the code as it is; scripts/mappings writes them anew.
    void PagesAreCurrent() {
        const QDir folder(QStringLiteral(QUADRIX_SOURCE_DIR "/docs/mappings"));
        const auto pages = mappingPages::Pages(registry::All());
        QCOMPARE(folder.entryList({"*.md"}, QDir::Files, QDir::Name), pages.keys());
        for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
            QFile file(folder.filePath(page.key()));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY2(QString::fromUtf8(file.readAll()) == page.value(), qPrintable(page.key()));
        }
        QFile origins(folder.filePath("../origins.md"));
        QVERIFY(origins.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(origins.readAll()), mappingPages::OriginsPage(registry::All(), QUADRIX_SOURCE_DIR));
    }
};

QUADRIX_TEST(TestMappings)
#include "test_mappings.moc"
