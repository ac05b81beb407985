#include "tools/air/crc16.h"

#include <array>
#include <cstddef>

namespace dabspi::air {

namespace {

constexpr std::uint32_t kPolynomial = 0x1021;

// Row n: what a byte with n zero bytes behind it leaves in the register. Sixteen bytes are then one step.
constexpr std::size_t kStep = 16;
using crc_tables = std::array<std::array<std::uint16_t, 256>, kStep>;

constexpr crc_tables make_tables() {
    crc_tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte << 8;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 0x8000) != 0 ? (value << 1) ^ kPolynomial : value << 1;
        tables[0][byte] = static_cast<std::uint16_t>(value);
    }
    for (std::size_t row = 1; row < kStep; ++row)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[row - 1][byte];
            tables[row][byte] = static_cast<std::uint16_t>((before << 8 & 0xFFFF) ^ tables[0][before >> 8]);
        }
    return tables;
}

constexpr crc_tables kTables = make_tables();

std::uint32_t one_step(std::uint32_t value, const std::uint8_t* at) {
    std::uint32_t next =
        kTables[kStep - 1][at[0] ^ (value >> 8)] ^ kTables[kStep - 2][at[1] ^ (value & 0xFF)];
    for (std::size_t i = 2; i < kStep; ++i)
        next ^= kTables[kStep - 1 - i][at[i]];
    return next;
}

}  // namespace

std::uint16_t crc16(byte_view of) {
    std::uint32_t value = 0xFFFF;
    const std::uint8_t* at = of.begin();
    std::size_t left = of.size();
    for (; left >= kStep; left -= kStep, at += kStep)
        value = one_step(value, at);
    for (; left != 0; --left, ++at)
        value = (value << 8 & 0xFFFF) ^ kTables[0][(value >> 8) ^ *at];
    return static_cast<std::uint16_t>(value ^ 0xFFFF);
}

bool ends_with_crc16(byte_view all) {
    if (all.size() < 2) return false;
    const std::size_t end = all.size() - 2;
    return crc16(all.part(0, end)) == all.number(end, 2);
}

}  // namespace dabspi::air
