// The whole command line of dabspi: what main reads, and what the manual and the completion are made from.
#pragma once

#include <vector>

#include "tools/command_line/command.h"

namespace dabspi {

// Gives `app` its description, its options and every subcommand.
std::vector<command> add_command_line(CLI::App& app);

}  // namespace dabspi
