// What a scan found, for a person and for scripts.
#pragma once

#include <string>

#include "tools/scan/scanned_multiplex.h"

namespace dabspi::scan {

std::string text_report(const scanned_multiplex& of);

// One JSON object and a line end.
std::string json_report(const scanned_multiplex& of);

}  // namespace dabspi::scan
