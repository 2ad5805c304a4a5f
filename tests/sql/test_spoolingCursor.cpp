#include "sql/engines/spoolingCursor.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

namespace {

/// Rows 1, 2, 3, ... of a server that goes away, or gives a value that cannot be read, at one of them.
class BreakingRows final : public Cursor {
public:
    BreakingRows(int fallsAt, int unreadable)
        : m_fallsAt(fallsAt),
          m_unreadable(unreadable) {}
    bool Next() override {
        if (++m_row == m_fallsAt) {
            SqlError error("SELECT N FROM T", "server gone", "2013");
            error.SetAnswerLost(true);
            throw error;
        }
        return true;
    }
    const QStringList& Columns() const override { return m_columns; }
    QVariant Value(int /*column*/) const override {
        if (m_row == m_unreadable || m_row == 0) {
            throw SqlError("SELECT N FROM T", "unreadable", "22007");
        }
        return m_row;
    }

private:
    int m_fallsAt;
    int m_unreadable;
    int m_row = 0;
    QStringList m_columns{"N"};
};

} // namespace

/// Rows that wait while another statement has the line.
class TestSpoolingCursor : public QObject {
    Q_OBJECT

private slots:
    void BrokenSources_data() {
        Columns<int, int, int, QString>("freedAfter", "fallsAt", "unreadable", "code");
        Row("never put aside", -1, 3000, -1, "2013");
        Row("before the first row", 0, 5, -1, "2013");
        Row("in memory", 1, 500, -1, "2013");
        Row("just beyond memory", 1, 1003, -1, "2013");
        Row("in the file", 1, 3000, -1, "2013");
        Row("put aside in the middle", 700, 3000, -1, "2013");
        Row("a value in the file", 1, 4000, 3000, "22007");
    }
    /// Every row before the failure is given, and then the failure as the source told it.
    void BrokenSources() {
        QFETCH(const int, freedAfter);
        QFETCH(const int, fallsAt);
        QFETCH(const int, unreadable);
        const auto line = std::make_shared<ResultLine>();
        SpoolingCursor rows(std::make_unique<BreakingRows>(fallsAt, unreadable), line,
                            [] { return QString("SELECT N FROM T"); });
        int read = 0;
        const auto error = ErrorOf<SqlError>([&] {
            for (;; ++read) {
                if (read == freedAfter) {
                    line->Free();
                }
                if (!rows.Next()) {
                    break;
                }
                if (rows.Value(0) != QVariant(read + 1)) {
                    throw ImportError("another row");
                }
            }
        });
        QVERIFY(error);
        QCOMPARE(read, (unreadable > 0 ? unreadable : fallsAt) - 1);
        QTEST(error->EngineCode(), "code");
        QCOMPARE(error->AnswerLost(), error->EngineCode() == "2013");
    }

    /// A row that could not be put aside is never taken for one of Nulls.
    void UnreadableRow() {
        const auto line = std::make_shared<ResultLine>();
        SpoolingCursor rows(std::make_unique<BreakingRows>(10, 2), line, [] { return QString("SELECT N FROM T"); });
        QVERIFY(rows.Next() && rows.Next());
        line->Free();
        QVERIFY(ErrorOf<SqlError>([&] { rows.Value(0); }));
    }
};

QUADRIX_TEST(TestSpoolingCursor)
#include "test_spoolingCursor.moc"
