// Where a call stands, in words: on a line of a recording, or in a frame of a multiplex.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dabspi::check {

struct call_place {
    std::uint64_t frame = 0;
    std::string clock;  // "2026-03-02 10:31"; empty before it is known
};

// "line 12"; with `places`, which are those of a multiplex by line, "frame 1234, 2026-03-02 10:31".
std::string place_words(const std::vector<call_place>& places, std::size_t line);

}  // namespace dabspi::check
