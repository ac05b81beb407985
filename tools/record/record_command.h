// dabspi record: a plan becomes a recording.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_record_command(CLI::App& dabspi);

}  // namespace dabspi
