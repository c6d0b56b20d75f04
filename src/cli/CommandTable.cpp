#include "cli/CommandTable.h"

#include "cli/AddCommand.h"
#include "cli/CalendarsCommand.h"
#include "cli/BackupCommands.h"
#include "cli/IntentCommands.h"
#include "cli/ListCommand.h"
#include "cli/ParseCommand.h"
#include "cli/PinCommand.h"
#include "cli/RemoveCommand.h"
#include "cli/RenderChipCommand.h"
#include "cli/StatusCommand.h"

std::vector<std::unique_ptr<CliCommand>> allCliCommands()
{
    std::vector<std::unique_ptr<CliCommand>> commands;
    commands.push_back(std::make_unique<AddCommand>());
    commands.push_back(std::make_unique<ListCommand>());
    commands.push_back(std::make_unique<RemoveCommand>());
    commands.push_back(std::make_unique<PinCommand>());
    commands.push_back(std::make_unique<UnpinCommand>());
    commands.push_back(std::make_unique<ParseCommand>());
    commands.push_back(std::make_unique<StatusCommand>());
    commands.push_back(std::make_unique<RenderChipCommand>());
    commands.push_back(std::make_unique<CalendarsCommand>());
    commands.push_back(std::make_unique<CreateCommand>());
    commands.push_back(std::make_unique<NextCommand>());
    commands.push_back(std::make_unique<TimeUntilCommand>());
    commands.push_back(std::make_unique<ExportCommand>());
    commands.push_back(std::make_unique<ImportCommand>());
    return commands;
}
