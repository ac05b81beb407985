// What a receiver takes from an object, in lines like those of a replay.
#pragma once

#include <string>

#include "tools/inspect/report.h"
#include "tools/terminal/colours.h"

namespace dabspi {

std::string receiver_text(const object_report& of, const colouring& colours);

}  // namespace dabspi
