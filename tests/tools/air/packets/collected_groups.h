// What a packet decoder hands on, kept.
#pragma once

#include <utility>
#include <vector>

#include "testkit/carousel/packet_mode.h"
#include "tools/air/packets/packet_decoder.h"

namespace air_test {

struct collected_groups final : dabspi::air::data_group_sink {
    using group = std::pair<unsigned, carousel_kit::bytes>;
    void data_group(std::uint16_t address, dabspi::air::byte_view bytes) override {
        groups.emplace_back(address, carousel_kit::bytes(bytes.begin(), bytes.end()));
    }
    std::vector<group> groups;
};

// Bytes that differ from one another and from those of other numbers.
inline carousel_kit::bytes pattern(std::size_t size, unsigned number) {
    carousel_kit::bytes all(size);
    for (std::size_t i = 0; i < size; ++i)
        all[i] = static_cast<std::uint8_t>(i * 7 + i / 251 + number * 31);
    return all;
}

inline carousel_kit::bytes part(const carousel_kit::bytes& of, std::size_t from, std::size_t size) {
    const auto begin = of.begin() + static_cast<std::ptrdiff_t>(from);
    return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

}  // namespace air_test
