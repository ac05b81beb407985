// SPI objects that are made to cost: elements that claim more than their parents hold, so that closing them
// moves back and the same bytes are read again.
#pragma once

#include <cstddef>

#include "tests/support/spi_builder.h"

namespace soak {

// `count` epg elements, each with a schedule that reaches to the end of the object and a programme without a
// time. `head` stands before them.
spi_builder::bytes nested_schedules(std::size_t count, const spi_builder::bytes& head);

// `count` service information elements whose ensemble, media description and URL all reach to the end of the
// object: by the letter count * (count + 1) * (count + 2) / 6 announcements. `head` stands before them.
spi_builder::bytes nested_logos(std::size_t count, const spi_builder::bytes& head);

}  // namespace soak
