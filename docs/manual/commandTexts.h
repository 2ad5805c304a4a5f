#pragma once

#include "docs/manual/manualPages.h"

namespace manual {

/// What the command line says of itself, command by command. @param program the path of quadrix-import-cli
/// @return nothing when it cannot be run
QList<CommandText> CommandTexts(const QString& program);

} // namespace manual
