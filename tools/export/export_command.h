// dabspi export: what a broadcast says of programmes and services, in the formats of other programs.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_export_command(CLI::App& dabspi);

}  // namespace dabspi
