// Simulates the receiver and records why each item was kept or dropped. The library's own functions decide:
// its parsers, its table of read objects, and the rules of its server and stores. disagreements() compares
// the outcome with what the library's listener was called with.
#pragma once

#include <string>
#include <vector>

#include "tools/check/history.h"
#include "tools/check/replay_result.h"

namespace dabspi::check {

history make_history(const recording& from, const replay_result& replayed);

// Where the history and the listener's calls differ, line by line: a fault of this program. Empty in
// every other case.
std::vector<std::string> disagreements(const history& simulated, const replay_result& replayed);

}  // namespace dabspi::check
