#pragma once

#include <QStringList>

#include <vector>

namespace contract {

/// A table and the columns of it that a procedure needs.
struct TableNeed {
    QString table; ///< of the source as it is named there; of the target the bare name
    QStringList columns;
    bool isWritten = false; ///< rows of it are inserted, changed and deleted; else they are only looked up
};

inline std::vector<TableNeed> operator+(std::vector<TableNeed> first, const std::vector<TableNeed>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace contract
