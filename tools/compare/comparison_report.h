// A comparison as text and as JSON. The manual page describes the JSON.
#pragma once

#include <string>
#include <vector>

#include "tools/compare/difference.h"

namespace dabspi::compare {

struct compared_side {
    std::vector<std::string> inputs;
    const guide::programme_guide* guide = nullptr;
};

// `most` differences of a kind are listed; 0: all.
std::string text_report(const comparison& of, const compared_side& a, const compared_side& b,
                        std::size_t most);

// `tolerance` in seconds.
std::string json_report(const comparison& of, const compared_side& a, const compared_side& b,
                        std::int64_t tolerance);

}  // namespace dabspi::compare
