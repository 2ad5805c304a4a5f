#include "tests/support/QuadrixTest.h"

#ifdef QT_WIDGETS_LIB
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif
#include <QTest>

int main(int argc, char** argv) {
    const Application application(argc, argv);
    int failures = 0;
    for (const auto& make : QuadrixTests()) {
        const auto test = make();
        failures += QTest::qExec(test.get(), argc, argv);
    }
    return failures;
}
