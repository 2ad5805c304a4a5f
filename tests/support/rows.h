#pragma once

#include <QTest>

/// The columns of a test's data, by their types and names: `Columns<QString, int>("text", "length")`.
template<typename... Types, typename... Names>
void Columns(const Names*... names) {
    static_assert(sizeof...(Types) == sizeof...(Names), "a type for each name");
    (QTest::addColumn<Types>(names), ...);
}

/// A row of a test's data: its name, then a value for each column.
template<typename... Values>
void Row(const char* name, const Values&... values) {
    (QTest::newRow(name) << ... << values);
}
