#pragma once

#include "sql/engine.h"

/// What the user of a connection to a MySQL or MariaDB server may do, whichever way it is reached.
namespace mySqlRights {

/// "'anna'@'%'", as the server knows the user; as a GRANT names him. Raises `SqlError`.
QString CurrentUser(Engine& engine);
/// Name of the database, as a GRANT names it. Raises `SqlError`.
QString Database(Engine& engine);
/// Whether what the user was granted names a privilege for a table of the database. Raises `SqlError`.
bool IsGranted(Engine& engine, const QString& privilege, const QString& table);
/// As `Engine::LackingRights`. Each right is tried on no row.
QStringList Lacking(Engine& engine, const QString& table, const QString& column, bool writes);

} // namespace mySqlRights
