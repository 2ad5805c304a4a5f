#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Tells, in the log and the result, what earlier imports have written and the source no longer has: it stays in
/// Quadrix, where somebody has to look at it. Says nothing for a count of 0.
/// @param kind of what is told, in capitals, e.g. "RIGHE" @param what it is, or what it belongs to
void TellNoLongerThere(ImportRun& run, const QString& kind, const QString& what, qint64 count);

/// The same at the end of a whole run: of what it has not met, where it has given rows up, it says that it may be
/// theirs.
void TellNotMetAgain(ImportRun& run, const QString& kind, const QString& what, qint64 count);

/// Tells of rows of earlier imports that the source still has, where this run leaves them out: they stay as they were.
/// Says nothing for a count of 0. @param kind,what as above; the kind in small letters
void TellNotRewritten(ImportRun& run, const QString& kind, const QString& what, qint64 count);

} // namespace contract
