#pragma once

#include "app/codes/Worklist.h"
#include "app/importFlow.h"

#include <QMap>

namespace codes {

/// The source rows that a run has imported without the translation of codes which have one by now.
struct RowsToRepeat {
    qint64 run = 0;
    QString origin;
    QString press = {};                   ///< of a run of several origins the procedure; else empty
    std::vector<Code> codes = {};         ///< those that were translated since, with their rows
    QMap<QString, QStringList> rows = {}; ///< names of the rows, each once, by procedure

    qsizetype Count() const;
    /// A line for each code: what it has become, where it goes, how many rows wait and the first of them.
    QStringList Lines(Worklist& worklist) const;
};

/// The rows of the company under work, run by run, the oldest first. Runs of several origins that do not tell whose
/// their procedures were are left out. Raises `SqlError`.
std::vector<RowsToRepeat> FindRowsToRepeat(Worklist& worklist);

/// What that finds once every code that rows of the company under work wait for is translated, with some of its rows.
std::vector<RowsToRepeat> FindWaitingRows(Session& session);

/// What `Repeat` does, as it is pressed. Raises `ImportError` when the run cannot be repeated, as its origin or company
/// is gone.
ImportRequest RequestFor(Session& session, const RowsToRepeat& rows);
/// Imports the rows of a run again, alone: rows that are there get the codes that they lack. A row that fails is given
/// up. The results of the procedures are appended to those of the session. Raises `ImportError` when the run cannot be
/// repeated, as its origin or company is gone.
FlowOutcome Repeat(Session& session, const RowsToRepeat& rows);
/// The same as a trial: what is done is taken back at the end, the history keeps nothing of it. @param look at what it
/// does to the database; its `before` is not empty
FlowOutcome Try(Session& session, const RowsToRepeat& rows, const TrialLook& look);

} // namespace codes
