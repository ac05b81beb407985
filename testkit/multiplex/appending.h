// Writing into bytes, for the builders of this folder.
#pragma once

#include "testkit/multiplex/checksum.h"

namespace multiplex_builder {

// The lowest `count` bytes of a number, most significant first.
inline void put(bytes& to, std::uint64_t value, unsigned count) {
    while (count-- != 0)
        to.push_back(static_cast<std::uint8_t>(value >> 8 * count));
}

// The same, least significant first.
inline void put_little(bytes& to, std::uint64_t value, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        to.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

inline void append(bytes& to, const bytes& what) {
    to.insert(to.end(), what.begin(), what.end());
}

}  // namespace multiplex_builder
