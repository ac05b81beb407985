// dabspi guide: the programme guide of a broadcast, for a person.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_guide_command(CLI::App& dabspi);

}  // namespace dabspi
