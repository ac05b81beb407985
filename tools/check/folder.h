// A folder of MOT bodies, as receivers write them, as a recording: one clock, one service, and each body
// once, service information first and images last, since a folder does not tell in which order they came.
#pragma once

#include "tools/check/input.h"

namespace dabspi::check {

checked_input read_folder(const std::string& path, const folder_options& options);

}  // namespace dabspi::check
