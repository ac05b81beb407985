// dabspi scan: what is on a recorded multiplex, and where its SPI is.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_scan_command(CLI::App& dabspi);

}  // namespace dabspi
