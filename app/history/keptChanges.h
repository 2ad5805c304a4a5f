#pragma once

#include "app/history/History.h"
#include "app/history/RowNumbers.h"

namespace history {

/// A written row as the history keeps it.
struct Change {
    TargetChange::Kind kind;
    QString table; ///< physical name
    qint64 id;     ///< RECORD_ID
    QVector<NamedValue> before;
    QStringList columns;
    qint64 digest;
    qint64 procedure; ///< of the run, by its number in the history
    qint64 block = 0; ///< records of one number hold rows that were inserted by turns; 0: the record stands alone
    qint64 place = 0; ///< of an inserted row among all of its block
};

/// Hands on the rows that one record of the history tells, in the order in which they were inserted.
/// @param inserted "id digest" of each, with blanks between them
void ForEachInserted(const QString& inserted, const std::function<void(qint64 id, qint64 digest)>& work);

/// Whether a run has inserted or updated rows of a table (physical name) under one of those numbers. Raises `SqlError`.
bool HasWritten(ovConnection& file, qint64 run, const QString& table, const RowNumbers& numbers);

/// Hands the changes of a run to `work`, the last one first. Raises `SqlError`.
void ForEachChangeBackwards(const History& history, qint64 run, const std::function<void(const Change&)>& work);

} // namespace history
