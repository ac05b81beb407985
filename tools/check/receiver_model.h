// Simulates the receiver and records why each item was kept or dropped. The library's own functions decide:
// its parsers, its table of read objects, and the rules of its server and stores. disagreements() compares
// the outcome with what the library's listener was called with.
#pragma once

#include <string>
#include <vector>

#include "tools/check/heard.h"
#include "tools/check/history.h"

namespace dabspi::check {

history make_history(const recording& from, const hearing& heard);

// Where the history and the listener tell different things, line by line: a fault of this program. Empty in
// every other case.
std::vector<std::string> disagreements(const history& told, const hearing& heard);

}  // namespace dabspi::check
