#pragma once

#include "cli/Command.h"

namespace cli {

/// Options that every command knows: --config, --trace, --json, --help.
const QList<QCommandLineOption>& GlobalOptions();

/// Help of the program: its commands and the options of all of them.
QString ProgramHelp();
/// Help of one command.
QString CommandHelp(const Command& command);

} // namespace cli
