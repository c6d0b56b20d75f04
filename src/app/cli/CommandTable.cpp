#include "app/cli/CommandTable.h"

#include "app/cli/AddCommand.h"
#include "app/cli/ListCommand.h"
#include "app/cli/ParseCommand.h"
#include "app/cli/PinCommand.h"
#include "app/cli/RemoveCommand.h"
#include "app/cli/StatusCommand.h"

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
    return commands;
}
