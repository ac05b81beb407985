// What was found, as one JSON object in one line. Keys and their meaning are in the manual.
#pragma once

#include <string>

#include "tools/check/report.h"

namespace dabspi::check {

std::string json_report(const check_report& of);

}  // namespace dabspi::check
