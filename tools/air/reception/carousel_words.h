// What is said of carousels in more than one place.
#pragma once

#include <string>

#include "tools/air/mot/carousel_statistics.h"

namespace dabspi::air {

// Why an object was not received whole and usable: "12 of 20 segments", "dropped: ...".
std::string why_not_received(const object_statistics& of);

}  // namespace dabspi::air
