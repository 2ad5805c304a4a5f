#include "tests/support/QuadrixTest.h"

#ifdef QT_WIDGETS_LIB
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif
#include <QTest>

#include <vector>

/// Runs last. A class that is left out as a whole (QSKIP in initTestCase) silently takes all that follow with it.
class EveryClassRan : public QObject {
    Q_OBJECT

public:
    bool Seen = false;

private slots:
    void IsReached() { Seen = true; }
};

int main(int argc, char** argv) {
    const Application application(argc, argv);
    // Qt's own handler answers an exception that nobody caught with its words without end; without it the text is
    // shown.
    std::vector<char*> arguments(argv, argv + argc);
    char noHandler[] = "-nocrashhandler";
    arguments.push_back(noHandler);
    int failures = 0;
    for (const auto& make : QuadrixTests()) {
        const auto test = make();
        failures += QTest::qExec(test.get(), static_cast<int>(arguments.size()), arguments.data());
    }
    EveryClassRan last;
    failures += QTest::qExec(&last, 1, argv);
    if (!last.Seen) {
        qCritical("Some classes did not run: leave tests out in init(), not in initTestCase().");
    }
    return failures + (last.Seen ? 0 : 1);
}

#include "main.moc"
