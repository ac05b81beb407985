// A multiplex as an input of the check: the calls of its receiver, and what is known of its carousels.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/air/container/open_frames.h"
#include "tools/air/reception/multiplex_reception.h"
#include "tools/check/input.h"

namespace dabspi::check {

// What only the carousels show.
struct received_carousels {
    std::vector<air::carousel_report> carousels;
    std::vector<air::sub_channel_report> sub_channels;
    std::vector<std::string> unreadable;  // SPI that is announced, and cannot be read
    std::uint64_t frames = 0;
    bool has_clock = false;
};

// Repetitions that tell nothing new are left out: of each version of an object the first three stand, and
// again after anything has changed and on each day. `limit`: MiB of bodies.
checked_input receive(air::opened_frames& in, const std::string& path, const folder_options& options);

}  // namespace dabspi::check
