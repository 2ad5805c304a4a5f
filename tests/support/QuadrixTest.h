#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

/// The test classes of a program; each file of tests adds its own with QUADRIX_TEST.
inline std::vector<std::function<std::unique_ptr<QObject>()>>& QuadrixTests() {
    static std::vector<std::function<std::unique_ptr<QObject>()>> tests;
    return tests;
}

/// Adds a test class to the program.
#define QUADRIX_TEST(Class)                                                                                            \
    namespace {                                                                                                        \
    const bool added##Class = (QuadrixTests().emplace_back([] { return std::make_unique<Class>(); }), true);           \
    }
