#include "sql/visibleText.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

class TestVisibleText : public QObject {
    Q_OBJECT

private slots:
    void shows_data() {
        Columns<QString, QString, QString>("text", "line", "layout");
        const auto row = [](const char* name, const QString& text, const QString& line, const QString& layout) {
            Row(name, text, line, layout);
        };
        row("nothing to show", "Città € 😀 \\r", "Città € 😀 \\r", "Città € 😀 \\r");
        row("end of line", "a\nb", "a\\nb", "a\nb");
        row("end of line of Windows", "a\r\nb", "a\\r\\nb", "a\r\nb");
        row("back to the begin of the line", "a\rb", "a\\rb", "a\\rb");
        row("last character", "a\r", "a\\r", "a\\r");
        row("tab", "a\tb", "a\\tb", "a\tb");
        row("command of a terminal", "\x1b[31m\a", "\\x1b[31m\\x07", "\\x1b[31m\\x07");
        row("the same in one character", QString("a") + QChar(0x9b) + "31m", "a\\x9b31m", "a\\x9b31m");
        row("delete", "a\x7f", "a\\x7f", "a\\x7f");
        row("NUL", QString("a") + QChar(u'\0') + "b", "a\\x00b", "a\\x00b");
        row("turned order", QString("a") + QChar(0x202e) + "b" + QChar(0x2069), "a\\u202eb\\u2069", "a\\u202eb\\u2069");
        row("separator of lines", QString("a") + QChar(0x2028), "a\\u2028", "a\\u2028");
        row("hard blank stays", QString("a") + QChar(0xa0), QString("a") + QChar(0xa0), QString("a") + QChar(0xa0));
    }
    void shows() {
        QFETCH(const QString, text);
        QTEST(VisibleLine(text), "line");
        QTEST(VisibleText(text), "layout");
    }
};

QUADRIX_TEST(TestVisibleText)
#include "test_visibleText.moc"
