#pragma once

#include <QStringList>

namespace proof {

/// Which amounts of a table must agree on both sides, and by which columns its rows are grouped for them.
struct Summed {
    QString table;
    QStringList amounts;
    QStringList groups = {}; ///< empty: all rows together
};

/// What is summed of a table (bare name); null for one of which the number of rows says enough.
const Summed* SummedOf(const QString& table);

} // namespace proof
