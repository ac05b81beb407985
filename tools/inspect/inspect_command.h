// dabspi inspect: binary SPI objects as trees.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_inspect_command(CLI::App& dabspi);

}  // namespace dabspi
