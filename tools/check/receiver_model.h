// The receiver's rules, told again for explaining: which objects are read, which programmes are stored, which
// logos are written. Wherever the library's own code can be asked it is: its reader, its table of read
// objects, its conditions and names of logos. disagreements() holds the rest to what the library's listener
// heard.
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
