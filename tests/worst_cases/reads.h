// How far into a body anything was read, by whichever handler: a tag, a length, a number or a string. For
// executables that link reads.cpp, wrap read_string, and compile the parsers themselves, without inlining.
#pragma once

#include <cstdint>

namespace reads {

void forget();
// The last position at which a read began, one that found a byte there; -1 when there was none.
std::int64_t furthest();

}  // namespace reads
