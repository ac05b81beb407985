// For each finding a small broadcast that shows it, and what is said of it. Four tables, as the catalogue
// has.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/tools/check/broadcast.h"

namespace check_test {

constexpr std::size_t kPiLine = 6;  // of today's schedule in a broadcast of with_today()

struct shown {
    dabspi::check::finding_code code;
    std::function<broadcast()> make;
    std::size_t line;    // where it is found; 0: not looked at
    std::string object;  // its content name; empty: none
    std::string text;    // a part of what is said
    bool has_byte = true;
};

std::vector<shown> shown_by_objects();
std::vector<shown> shown_by_programmes();
std::vector<shown> shown_by_schedules();
std::vector<shown> shown_by_logos();

}  // namespace check_test
