#pragma once

#include "cli/Command.h"

namespace cli {

// One command each, in a file of its own name.
Command OriginsCommand();
Command CreateDatabaseCommand();
Command ImportCommand();
Command CheckCommand();
Command TemplateCommand();
Command InspectCommand();
Command HistoryCommand();
Command UndoCommand();
Command CodesCommand();
Command ReportCommand();
Command MergeCommand();
Command SequenceCommand();
Command ResetCommand();
Command TruncateCommand();

/// Every command, in the order of the help.
const std::vector<Command>& Commands();
/// The command of that name; null when there is none.
const Command* FindCommand(const QString& name);

} // namespace cli
