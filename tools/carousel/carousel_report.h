// What `dabspi carousel` says of a carousel: what is sent how often, how long receivers wait, which images
// they will write. Lines for a person, printable.
#pragma once

#include <string>

#include "tools/carousel/prepared_carousel.h"

namespace dabspi::carousel {

std::string carousel_report(const prepared_carousel& of, const carousel_options& options);

// What --budget says. Lines, and whether the time can be kept.
std::string budget_report(const prepared_carousel& of, const left_out_objects& gone, wanted_wait wanted,
                          double seconds);

// "1:02:03", "61.2 s"
std::string seconds_text(double seconds);

}  // namespace dabspi::carousel
