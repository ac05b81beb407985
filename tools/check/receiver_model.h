// The receiver's rules, told again for explaining: which objects are read, which programmes are stored, which
// logos are written. Wherever the library's own code can be asked it is: its reader, its table of read
// objects, its conditions and names of logos. disagreements() holds the rest to what the library's listener
// heard.
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
