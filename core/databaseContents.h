#pragma once

#include <QStringList>

#include <span>

/// Rows that a new database starts with.
struct StartRows {
    const char* table;
    const char* columns; ///< with a blank between
    /// Values of all rows, one after the other, as many as there are columns to each.
    std::span<const char* const> values;
};

/// Codes of the shared base tables.
std::span<const StartRows> BaseTableRows();
