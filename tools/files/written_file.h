// A file that is written whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace dabspi::check {

// Writes a new file beside `path` and moves it there; what stood there stays until then. A pipe or device is
// written to as it is, and "-" is left alone. The error's text, or an empty one.
std::string write_whole_file(const std::string& path, std::string_view content);

}  // namespace dabspi::check
