// Names in statistics, which are kept for long: a text of the broadcast may have thousands of bytes.
#pragma once

#include <string>

namespace dabspi::air {

// `text` is UTF-8. Its first 200 bytes at most, cut between two characters, with "..." behind.
std::string shortened(const std::string& text);

}  // namespace dabspi::air
