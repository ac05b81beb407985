// dabspi check: what a receiver will do with a broadcast, and why.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_check_command(CLI::App& dabspi);

}  // namespace dabspi
