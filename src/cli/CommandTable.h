#pragma once

#include "cli/CliCommand.h"

#include <memory>
#include <vector>

// Every subcommand of `tarrow`, in the order `tarrow help` lists them.
std::vector<std::unique_ptr<CliCommand>> allCliCommands();
