// dabspi explain: the catalogue of findings.
#pragma once

#include "tools/command_line/command.h"

namespace dabspi {

command add_explain_command(CLI::App& dabspi);

}  // namespace dabspi
