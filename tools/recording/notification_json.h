// A notification as `dabspi replay --json` prints it: one JSON object without blanks outside strings.
#pragma once

#include <string>

#include "tools/recording/notification.h"

namespace dabspi {

// Without the line end. Keys stand in the order of the recording format. A name that is not well-formed UTF-8
// shows one U+FFFD for each maximal ill-formed part and is followed by `name_hex`, all its bytes in
// lower-case hexadecimal.
std::string notification_json(const notification& what);

}  // namespace dabspi
