#pragma once

#include "app/brokenReferences.h"
#include "app/history/History.h"

namespace history {

/// A row that stays as it is: somebody has changed it since, or it cannot be put back.
struct KeptRow {
    QString table; ///< physical name
    qint64 id;     ///< RECORD_ID
    QString why;
};

/// What the undoing of a run has done.
struct UndoResult {
    static constexpr size_t MostKept = 1000;

    qint64 removed = 0;        ///< rows that the run had inserted
    qint64 restored = 0;       ///< rows that it had updated
    qint64 brought = 0;        ///< rows that it had deleted one by one, which are there again
    qint64 keptCount = 0;      ///< rows that stay
    std::vector<KeptRow> kept; ///< the first 1000 of them
    /// Rows that are left referring to what was removed: of a hand, of a merge.
    std::vector<brokenReferences::Broken> left;
    /// The same of earlier runs, whose rows had those codes before the run brought what they mean: nothing of it is
    /// left.
    std::vector<brokenReferences::Broken> leftAsBefore;
    qint64 emptied = 0;     ///< rows that the run had emptied tables of: they are gone
    QStringList outside;    ///< procedures of the run that work outside Quadrix: what they did stays
    bool isPartial = false; ///< the history does not keep all that the run wrote: the rest is not taken back
    bool wasKilled = false; ///< the history may lack what the run wrote in its last half second
};

/// Takes back what a run has written into the target: rows that it inserted are removed, those that it updated get back
/// what they had, those that it deleted come back under their numbers, which others may refer to. A row that has been
/// changed since, by whomever, stays and is named; the codes that SYS_IMP has taken in stay too. It is one transaction;
/// within an open one (a trial) it is a part of that, and the history is not told. Raises `ImportError` for a run that
/// was a trial, that is under way, has been taken back before, has worked outside Quadrix alone or into another
/// database, or of which a later run that was not taken back has deleted or changed rows, or written rows that refer to
/// them, which is named; or `SqlError`.
UndoResult Undo(Session& session, const History& history, qint64 run);
/// The same while nobody else works on the company. Raises `ImportError` naming who does.
UndoResult UndoAlone(Session& session, const History& history, qint64 run);
/// What `UndoAlone` would do, found out by doing it: everything is put back at the end.
UndoResult TryUndo(Session& session, const History& history, qint64 run);

/// What was done, or would be, for the operator: one line each, the rows that stay among them.
QStringList LinesOf(const UndoResult& result);
/// The same in few lines, without those rows; and a line for each of these.
QStringList SummaryOf(const UndoResult& result);
QStringList KeptLines(const UndoResult& result);

} // namespace history
