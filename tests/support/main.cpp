#include "tests/support/QuadrixTest.h"

#include <QCoreApplication>
#include <QTest>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    int failures = 0;
    for (const auto& make : QuadrixTests()) {
        const auto test = make();
        failures += QTest::qExec(test.get(), argc, argv);
    }
    return failures;
}
