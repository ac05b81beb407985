// dabspi encode: XML documents into binary SPI objects.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_encode_command(CLI::App& dabspi);

}  // namespace dabspi
