#pragma once

#include "app/history/History.h"
#include "app/importFlow.h"

/// The source rows that a run has given up, as a table of the shape of the source: somebody mends them there, and they
/// alone are imported again.
namespace history {

/// Writes the rows that a run has given up, with what became of each, as `sources::TableWriter` does. A run that read
/// tables of several shapes gives a file for each, with the name of the table behind that of the file.
/// @return the files that were written; none when the run has given up nothing. Raises `ImportError` naming the file.
QStringList WriteRejects(const History& history, qint64 run, const QString& path);
/// Of the files that this would write over, those in which somebody has changed something, or which are of another run.
/// One that cannot be written or read is left to the writing, which tells it.
QStringList ChangedRejects(const History& history, qint64 run, const QString& path);

/// The presses that repeat the rows which a run has given up and none has imported since: a run of several origins has
/// one for each of its procedures that has such rows (its name), the others have one (empty).
/// @param areMended files may hold rows that have been imported since as well
QStringList PressesOf(const History& history, const Run& run, bool areMended);
/// Those rows, to be imported again as their source has them now. Raises `ImportError` when there are none.
/// @param press empty: all of them
std::unique_ptr<contract::RowSelection> RejectsOf(const History& history, qint64 run, const QString& press);
/// The same for those rows that are left in files of `WriteRejects`, with the values that were mended there; null when
/// the files have none of the press. Rows that have been imported with these values are left out. Raises `ImportError`
/// that names every mistake with file, row and column, or says that no row is left.
std::unique_ptr<contract::RowSelection> MendedRejects(const History& history, qint64 run, const QStringList& files,
                                                      const QString& press);
/// Has a press repeat a run: its company, its origin, its button or procedure. Raises `ImportError` when one of them is
/// no longer there, or when the run has written to another database.
/// @param procedure of a run of several origins: that one of them
void Repeat(Session& session, const Run& run, const QString& procedure, ImportRequest& request);
/// What a run that broke off has not reached: each of its procedures goes on where it stopped. Raises `ImportError` for
/// one that was taken back or whose tables a later run has emptied, as what is in front of where it stopped is gone
/// (the same of a run that it goes on with), for a trial, and for one that came to its end.
std::unique_ptr<contract::RowSelection> RestOf(const History& history, const Run& run);

} // namespace history
