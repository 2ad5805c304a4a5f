#pragma once

#include "cli/Command.h"

namespace cli {

/// Raises `UsageError` for an option that a command line gives and the command would not heed: one that the way in
/// which the command is used does not take, one that counts once and comes again, one whose text is blank.
void CheckOptions(const Command& command, const QCommandLineParser& options);

} // namespace cli
