// All frames of a recording, kept.
#pragma once

#include <string>
#include <vector>

#include "testkit/multiplex/logical_frame.h"
#include "tools/air/container/container_statistics.h"
#include "tools/air/container/open_frames.h"

namespace air_tests {

struct collected {
    std::vector<multiplex_builder::logical_frame> frames;  // counts as the container shows them
    std::vector<std::uint32_t> missing_before;
    std::vector<bool> damaged;
    std::string kind;   // what the input was taken for
    std::string error;  // not opened
    dabspi::air::container_statistics statistics;
};

// `step`: the input gives so many bytes at a time.
collected collect(const multiplex_builder::bytes& file, std::size_t step = static_cast<std::size_t>(-1),
                  const std::string& flow = {});

// The same frames, in what both containers can show: counts modulo 250.
void expect_same(const std::vector<multiplex_builder::logical_frame>& got,
                 const std::vector<multiplex_builder::logical_frame>& expected);

bool same_content(const multiplex_builder::logical_frame& a, const multiplex_builder::logical_frame& b);

}  // namespace air_tests
