#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "ui/LogView.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray Lines(int from, int to) {
    QByteArray lines;
    for (int i = from; i <= to; ++i) {
        lines += "05/03/2024 10:00:00 - SCONTO RIDOTTO: riga " + QByteArray::number(i) + QByteArray(200, '.') + "\r\n";
    }
    return lines;
}

/// The view in a tab of a window, as the program has it.
class Pane {
public:
    explicit Pane(const QString& path) {
        tabs.addTab(new QWidget, "Esito");
        tabs.addTab(&view, "Registro");
        tabs.resize(500, 300);
        view.Follow(path);
        tabs.show();
    }

    void Look() { tabs.setCurrentWidget(&view); }
    QPlainTextEdit& Text() { return *view.findChild<QPlainTextEdit*>("txtLog"); }
    bool IsAtEnd() {
        const QScrollBar* bar = Text().verticalScrollBar();
        return bar->maximum() > 0 && bar->value() == bar->maximum();
    }
    /// Whether the last line can be seen, and its beginning.
    bool ShowsLastLine() {
        const QTextCursor at = Text().cursorForPosition({2, Text().viewport()->height() - 2});
        const int missing = Text().blockCount() - 1 - at.blockNumber();
        return missing <= 1 && Text().horizontalScrollBar()->value() == 0;
    }
    bool TellsThatLinesAreLeftOut() { return view.findChild<QLabel*>("lblLogCut")->isVisible(); }

    QTabWidget tabs;
    LogView view;
};

} // namespace

class TestLogView : public QObject {
    Q_OBJECT

private slots:
    void init() { QFile::remove(m_path); }

    /// A busy program: the view gets its turn now and then, and has been laid out at none of them before.
    void FollowsALongRunToItsLastLine() {
        WriteFile(m_path, Lines(1, 30));
        Pane pane(m_path);
        pane.Look();
        for (int round = 1; round <= 20; ++round) {
            WriteFile(m_path, Lines(round * 100, round * 100 + 99), QIODevice::Append);
            pane.view.Refresh();
            QCoreApplication::processEvents();
            QVERIFY2(pane.IsAtEnd() && pane.ShowsLastLine(), qPrintable(QString::number(round)));
        }
        QVERIFY(!pane.TellsThatLinesAreLeftOut());
    }

    void OpensAtTheLastLineAndTheBeginningOfLines() {
        Pane pane(m_path);
        WriteFile(m_path, Lines(1, 400));
        pane.view.Refresh(); // behind another tab
        pane.Look();
        QCoreApplication::processEvents();
        QVERIFY(pane.IsAtEnd() && pane.ShowsLastLine());
    }

    void WhoReadsAboveIsLeftThere() {
        WriteFile(m_path, Lines(1, 300));
        Pane pane(m_path);
        pane.Look();
        QCoreApplication::processEvents();
        QScrollBar* bar = pane.Text().verticalScrollBar();
        bar->triggerAction(QScrollBar::SliderPageStepSub);
        const int place = bar->value();
        WriteFile(m_path, Lines(301, 400), QIODevice::Append);
        pane.view.Refresh();
        QCoreApplication::processEvents();
        QCOMPARE(bar->value(), place);
        bar->triggerAction(QScrollBar::SliderToMaximum);
        WriteFile(m_path, Lines(401, 500), QIODevice::Append);
        pane.view.Refresh();
        QCoreApplication::processEvents();
        QVERIFY(pane.ShowsLastLine());
    }

    void LinesLeftOutAreTold_data() {
        Columns<int, int>("lines", "atOnce");
        Row("more than the view keeps", 5200, 400);
        Row("more than is read at once", 1500, 1500);
    }
    void LinesLeftOutAreTold() {
        QFETCH(int, lines);
        QFETCH(int, atOnce);
        Pane pane(m_path);
        pane.Look();
        for (int from = 1; from <= lines; from += atOnce) {
            QVERIFY(!pane.TellsThatLinesAreLeftOut());
            WriteFile(m_path, Lines(from, from + atOnce - 1), QIODevice::Append);
            pane.view.Refresh();
        }
        QVERIFY(pane.TellsThatLinesAreLeftOut());
        WriteFile(m_path, "05/03/2024 11:00:00 - Inizio importazione articoli\r\n");
        pane.view.Refresh();
        QVERIFY(!pane.TellsThatLinesAreLeftOut());
    }

private:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath("import.log");
};

QUADRIX_TEST(TestLogView)
#include "test_LogView.moc"
