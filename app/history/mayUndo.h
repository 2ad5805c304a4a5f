#pragma once

#include "app/history/History.h"

namespace history {

/// Whether there may be something to take back.
bool CanUndo(const Run& run);

/// Whether a procedure writes into the database of a CAM software alone: it needs no table of Quadrix.
bool WorksOutside(const ProcedureRun& run);

/// Raises `ImportError` saying why a run cannot be taken back: it was a trial, is under way, is no import, has worked
/// outside Quadrix alone or into another database, has been taken back before, or has written tables that know no
/// transactions.
void CheckMayUndo(Session& session, const Run& run);

} // namespace history
