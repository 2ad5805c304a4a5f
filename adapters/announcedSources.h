#pragma once

#include "adapters/sourceSettings.h"

/// How the sources of announced origins open whose settings are like no other's. Each goes with its origin's module.
namespace announced {

/// Asks for user, password and database of the data source "SAM".
bool PrepareSam(Session& session, ovConnection& source);
/// Asks for server and user.
bool PrepareMemphis(Session& session, ovConnection& source);
/// The connection stands in "Solution.ini", beside the settings of this program.
bool PrepareSolution(Session& session, ovConnection& source);

} // namespace announced
