// Writes the completion of the command line for bash.
#pragma once

#include <string>
#include <vector>

#include "tools/manual/command_line_model.h"

namespace dabspi {

// A script that defines the function _dabspi and has bash call it for "dabspi". It needs nothing but bash 4
// (compgen and mapfile). Offered are commands, options, the values that an option has, recordings (*.jsonl),
// directories and files.
std::string completion(const std::vector<command_model>& commands);

}  // namespace dabspi
