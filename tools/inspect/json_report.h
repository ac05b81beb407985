// An object as one line of JSON. Keys and their meaning are in the manual.
#pragma once

#include <string>

#include "tools/inspect/report.h"

namespace dabspi {

std::string json_report(const object_report& of, bool hex);
std::string json_of_other(const inspected_body& of);

}  // namespace dabspi
