// dabspi compare: what differs between two broadcasts, or a broadcast and what a station published.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_compare_command(CLI::App& dabspi);

}  // namespace dabspi
