// What a carousel comes to, in words.
#pragma once

#include <string>
#include <vector>

#include "tools/scan/scanned_multiplex.h"

namespace dabspi::scan {

// One line or more: first whether all of it was received, then what is wrong besides. Names are as they were
// broadcast: to be made printable.
std::vector<std::string> verdict_of(const air::carousel_report& carousel, const air::packet_counts& packets);

// Objects of the carousel that were received whole at least once.
std::size_t objects_received(const air::carousel_statistics& of);

// "service information", "programme information", "PNG image", ...
std::string kind_words(const air::object_statistics& of);

}  // namespace dabspi::scan
