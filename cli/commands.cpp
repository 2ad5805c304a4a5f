#include "cli/commands.h"

namespace cli {

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands{
        OriginsCommand(),  CreateDatabaseCommand(), TemplateCommand(), InspectCommand(),  CheckCommand(),
        ImportCommand(),   HistoryCommand(),        CodesCommand(),    UndoCommand(),     ReportCommand(),
        SequenceCommand(), MergeCommand(),          ResetCommand(),    TruncateCommand(),
    };
    return commands;
}

const Command* FindCommand(const QString& name) {
    for (const Command& command : Commands()) {
        if (command.name == name) {
            return &command;
        }
    }
    return nullptr;
}

} // namespace cli
