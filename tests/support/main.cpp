#include "tests/support/QuadrixTest.h"

#ifdef QT_WIDGETS_LIB
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif
#include <QTest>

#include <algorithm>
#include <iterator>
#include <vector>

/// Runs last. A class that is left out as a whole (QSKIP in initTestCase) silently takes all that follow with it.
class EveryClassRan : public QObject {
    Q_OBJECT

public:
    bool Seen = false;

private slots:
    void IsReached() { Seen = true; }
};

namespace {

using Arguments = std::vector<char*>;
using Classes = std::vector<std::unique_ptr<QObject>>;

/// Whether an argument names a function of the class: "Function" or "Function:row".
bool IsFunctionOf(const QObject& test, const char* argument) {
    const QByteArray name = QByteArray(argument).split(':').first() + "()";
    return test.metaObject()->indexOfSlot(name.constData()) >= test.metaObject()->methodOffset();
}

/// The arguments without the functions that other classes have; none when only functions of others are named.
Arguments ArgumentsFor(const QObject& test, const Arguments& all, const Classes& classes) {
    const auto isFunction = [&](const char* argument) {
        return std::any_of(classes.begin(), classes.end(),
                           [argument](const auto& each) { return IsFunctionOf(*each, argument); });
    };
    Arguments own;
    std::copy_if(all.begin(), all.end(), std::back_inserter(own),
                 [&](const char* argument) { return !isFunction(argument) || IsFunctionOf(test, argument); });
    const bool names = std::any_of(own.begin(), own.end(), isFunction);
    const bool othersNamed = own.size() < all.size();
    return othersNamed && !names ? Arguments() : own;
}

} // namespace

int main(int argc, char** argv) {
    const Application application(argc, argv);
    // Qt's own handler answers an exception that nobody caught with its words without end; without it the text is
    // shown.
    Arguments arguments(argv, argv + argc);
    char noHandler[] = "-nocrashhandler";
    arguments.push_back(noHandler);
    Classes classes;
    for (const auto& make : QuadrixTests()) {
        classes.push_back(make());
    }
    int failures = 0;
    for (auto& test : classes) {
        Arguments own = ArgumentsFor(*test, arguments, classes);
        if (!own.empty()) {
            failures += QTest::qExec(test.get(), static_cast<int>(own.size()), own.data());
        }
    }
    EveryClassRan last;
    failures += QTest::qExec(&last, 1, argv);
    if (!last.Seen) {
        qCritical("Some classes did not run: leave tests out in init(), not in initTestCase().");
    }
    return failures + (last.Seen ? 0 : 1);
}

#include "main.moc"
