#pragma once

#include "core/Session.h"

/// Settings of "Quadrix.ini" of which no part may be read for the whole: what is left of a path or a condition would
/// mean something else.
namespace modMain {

/// Raises `ImportError` naming a key that has more characters than are read of one.
void RequireWhole(Session& session, const QString& section, const QString& key);
/// `GetAppConfig` of such a key. Raises as `RequireWhole`.
QString GetWholeConfig(Session& session, const QString& section, const QString& key, const QString& defaultValue);

} // namespace modMain
