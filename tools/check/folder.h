// A folder of MOT bodies, as receivers write them, as recordings, one for each ensemble: one clock, one
// service, and each body once, service information first and images last, since a folder does not tell in
// which order they came. A single body is a folder of one.
#pragma once

#include "tools/check/input.h"

namespace dabspi::check {

// At least one; with errors in it nothing can be checked.
std::vector<checked_input> read_folders(const std::string& path, const folder_options& options);

}  // namespace dabspi::check
