#pragma once

#include "sql/engine.h"

// The triggers of a table of a MySQL or MariaDB database, whichever way it is reached. The server has no switch for
// them: they are dropped, and their text waits in table QDX_TRIGGERS_OFF until they are made again, so that it is not
// lost when the program ends in between. That table goes with its last row.

/// Switches them. Within a transaction, which would end there, and while there are obstacles it raises `SqlError`
/// unless there is nothing to switch.
void SwitchMySqlTriggers(Engine& engine, const QString& table, bool enabled, bool inTransaction);
/// Why they could not be made again as they are, each with the statement that would help; empty when they can. It is
/// tried out on a table of its own, but not within a transaction, which is an obstacle itself. Raises `SqlError`.
QStringList MySqlTriggerObstacles(Engine& engine, const QString& table, bool inTransaction);
/// Whether they can be seen: the server hides them from a user without the right to them. Raises `SqlError`.
bool SeesMySqlTriggers(Engine& engine, const QString& table);
