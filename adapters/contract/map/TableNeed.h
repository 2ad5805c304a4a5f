#pragma once

#include <QStringList>

#include <vector>

namespace contract {

/// A table and the columns of it that a procedure uses.
struct TableNeed {
    QString table; ///< of the source by its logical name; of the target the bare name
    QStringList columns;
    QStringList optional = {}; ///< of the source: read, but the procedure works without them
    bool mayLack = false;      ///< of the source: some releases do not have the table, and so no rows of it
    QStringList days = {};     ///< of the source: columns whose days have to be readable (`DayColumn`)
    bool isLookedUp = false;   ///< of the target: only read, else its rows are inserted, changed and deleted
};

/// A table of the target that is only read.
inline TableNeed LookedUp(const QString& table, const QStringList& columns) {
    return {.table = table, .columns = columns, .isLookedUp = true};
}

inline std::vector<TableNeed> operator+(std::vector<TableNeed> first, const std::vector<TableNeed>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace contract
