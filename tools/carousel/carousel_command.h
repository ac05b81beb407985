// dabspi carousel: from XML documents and logos to what a multiplexer sends.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_carousel_command(CLI::App& dabspi);

}  // namespace dabspi
