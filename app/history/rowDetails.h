#pragma once

#include "app/history/History.h"

namespace history {

/// What is known of a source row that a run told of: its values, and beside them what stands in Quadrix now.
struct RowDetails {
    QVector<NamedValue> source;
    QString sourceTrouble; ///< why its values are not shown; empty when they are

    /// A column of Quadrix that the row feeds.
    struct Field {
        QString column;
        QString value; ///< as it stands there now; empty where no row was found
        QString sources;
        QString sourceValue;
        QString rule;
    };
    /// A table of Quadrix that the row feeds.
    struct Target {
        QString table;   ///< physical name
        QString trouble; ///< why no row of it is shown; empty when one is
        std::vector<Field> fields;
    };
    std::vector<Target> targets; ///< none when the procedure writes by no mapping from that table
};

/// Looks for the row of a note. The values of a row given up are kept; those of another one are read again by its name:
/// the source of the run's origin is opened for that and closed again, after what it asks has been answered. The row of
/// Quadrix is the only one that has the row's code in a column which a mapping feeds with it. Raises `SqlError` of the
/// history only.
RowDetails LookUp(Session& session, const History& history, const Run& run, const Note& note);

} // namespace history
