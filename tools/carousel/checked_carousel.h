// Plays a carousel to the library, as a receiver that tunes in at its beginning, and says what `dabspi check`
// finds.
#pragma once

#include <string>

#include "tools/carousel/prepared_carousel.h"
#include "tools/recording/recording.h"

namespace dabspi::carousel {

// The calls of such a receiver's host: the clock, a service of the schedules, every object once, in the order
// in which they are whole.
recording calls_of(const prepared_carousel& of);

// Lines, printable. Throws std::runtime_error when the library cannot be played.
std::string check_report_of(const prepared_carousel& of);

}  // namespace dabspi::carousel
