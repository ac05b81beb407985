// What a scan found, for a person and for scripts.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "tools/scan/scanned_multiplex.h"

namespace dabspi::scan {

std::string text_report(const scanned_multiplex& of);

// One JSON object and a line end.
std::string json_report(const scanned_multiplex& of);

// The parts of these about one carousel; `packets` are those of its sub-channel.
std::string carousel_text(const air::carousel_report& of, const air::packet_counts& packets);
nlohmann::ordered_json carousel_json(const air::carousel_report& of, const air::packet_counts& packets);

}  // namespace dabspi::scan
