#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"

#include <QRegularExpression>
#include <QTest>

namespace {

/// What a run has changed, one line a row: "-" before it, "+" behind it.
QStringList Changes(QStringList before, QStringList after) {
    for (const QString& row : QStringList(before)) {
        if (after.removeOne(row)) {
            before.removeOne(row);
        }
    }
    return before.replaceInStrings(QRegularExpression("^"), "-") + after.replaceInStrings(QRegularExpression("^"), "+");
}

QString WithoutReset(QString line) { return line.remove(" reset"); }

} // namespace

/// What an import has written is found and rewritten by the next: nothing doubles, nothing grows.
class TestTwice : public QObject {
    Q_OBJECT
    Q_CLASSINFO("about", "origins")

private slots:
    void ProceduresFindWhatTheyWrote_data() { EachModule(); }
    /// Each procedure right after itself; then all of them after all of them, as they share tables.
    void ProceduresFindWhatTheyWrote() {
        QFETCH(const QString, module);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        for (const QString& line : fixture.Lines()) {
            fixture.RunLine(line);
            const QStringList before = fixture.Content();
            fixture.RunLine(WithoutReset(line));
            const QStringList changes = Changes(before, fixture.Content());
            QVERIFY2(changes.isEmpty(), qPrintable(line + ":\n" + changes.join('\n')));
        }
        QStringList contents[2];
        for (QStringList& content : contents) {
            for (const QString& line : fixture.Lines()) {
                fixture.RunLine(WithoutReset(line));
            }
            content = fixture.Content();
        }
        const QStringList changes = Changes(contents[0], contents[1]);
        QVERIFY2(changes.isEmpty(), qPrintable(changes.join('\n')));
    }
};

QUADRIX_TEST(TestTwice)
#include "test_twice.moc"
