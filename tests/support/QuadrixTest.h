#pragma once

#include "tests/support/TimeLimit.h"

#include <QTest>

#include <functional>
#include <memory>
#include <vector>

/// The test classes of a program; each file of tests adds its own with QUADRIX_TEST.
inline std::vector<std::function<std::unique_ptr<QObject>()>>& QuadrixTests() {
    static std::vector<std::function<std::unique_ptr<QObject>()>> tests;
    return tests;
}

/// A test class of which each case, a function with one row of its data, has a time of its own, and ends alone when an
/// exception leaves it: Qt would end the program.
template<class Test>
class Contained final : public Test {
public:
    const QMetaObject* metaObject() const override {
        static const QMetaObject own = [] {
            QMetaObject copy = Test::staticMetaObject;
            copy.d.static_metacall = &Call;
            return copy;
        }();
        return &own;
    }

private:
    static void Call(QObject* test, QMetaObject::Call call, int method, void** arguments) {
        const TimeLimit limit;
        try {
            Test::staticMetaObject.d.static_metacall(test, call, method, arguments);
        } catch (const std::exception& error) {
            QTest::qFail(error.what(), __FILE__, __LINE__);
        }
    }
};

/// Adds a test class to the program.
// NOLINTBEGIN(bugprone-macro-parentheses): a name of a class
#define QUADRIX_TEST(Class)                                                                                            \
    namespace {                                                                                                        \
    const bool added##Class =                                                                                          \
        (QuadrixTests().emplace_back([] { return std::make_unique<Contained<Class>>(); }), true);                      \
    }
// NOLINTEND(bugprone-macro-parentheses)
