// dabspi replay: plays a recording through the library and prints what its listener receives.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_replay_command(CLI::App& dabspi);

}  // namespace dabspi
