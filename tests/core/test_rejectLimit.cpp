#include "core/RejectLimit.h"
#include "tests/support/QuadrixTest.h"

#include <QTest>

class TestRejectLimit : public QObject {
    Q_OBJECT

private slots:
    void stops_data() {
        QTest::addColumn<QString>("limit");
        QTest::addColumn<qint64>("givenUp");
        QTest::addColumn<qint64>("done");
        QTest::addColumn<bool>("isReached");
        const auto row = [](const char* limit, qint64 givenUp, qint64 done, bool isReached) {
            QTest::addRow("%s: %lld of %lld", limit, static_cast<long long>(givenUp), static_cast<long long>(done))
                << limit << givenUp << done << isReached;
        };
        row("3", 2, 1000, false);
        row("3", 3, 3, true);
        row("5%", 50, 199, false); // too few rows to tell
        row("5%", 9, 200, false);
        row("5%", 10, 200, true);
        row("0.5%", 4, 1000, false);
        row("0.5%", 5, 1000, true);
        row("100%", 200, 200, true);
    }
    void stops() {
        QFETCH(QString, limit);
        QFETCH(qint64, givenUp);
        QFETCH(qint64, done);
        const auto read = RejectLimit::Of(limit);
        QVERIFY(read && read->Text() == limit);
        QTEST(read->IsReached(givenUp, done), "isReached");
    }

    void refuses_data() {
        QTest::addColumn<QString>("text");
        for (const char* text : {"", "0", "-1", "1.5", "dieci", "%", "0%", "101%", "-5%", "5 %%"}) {
            QTest::newRow(text) << text;
        }
    }
    void refuses() {
        QFETCH(QString, text);
        QVERIFY(!RejectLimit::Of(text));
    }
};

QUADRIX_TEST(TestRejectLimit)
#include "test_rejectLimit.moc"
