#include "testkit/multiplex/checksum.h"

namespace multiplex_builder {

namespace {

// Shift and add, over x^8 + x^4 + x^3 + x^2 + 1.
std::uint8_t product(std::uint8_t a, std::uint8_t b) {
    unsigned result = 0;
    unsigned shifted = a;
    for (unsigned bit = 0; bit < 8; ++bit) {
        if ((b >> bit & 1) != 0) result ^= shifted;
        shifted <<= 1;
        if ((shifted & 0x100) != 0) shifted ^= 0x11D;
    }
    return static_cast<std::uint8_t>(result);
}

}  // namespace

std::uint16_t crc16(const bytes& of) {
    unsigned value = 0xFFFF;
    for (const std::uint8_t byte : of)
        for (unsigned bit = 8; bit-- != 0;) {
            const bool high = (value >> 15 & 1) != (byte >> bit & 1U);
            value = (value << 1 & 0xFFFF) ^ (high ? 0x1021U : 0U);
        }
    return static_cast<std::uint16_t>(~value);
}

bytes with_crc16(bytes of) {
    const std::uint16_t crc = crc16(of);
    of.push_back(static_cast<std::uint8_t>(crc >> 8));
    of.push_back(static_cast<std::uint8_t>(crc));
    return of;
}

bytes reed_solomon_parity(const bytes& data, unsigned count, unsigned first) {
    bytes generator = {1};  // highest power first
    std::uint8_t root = 1;
    for (unsigned i = 0; i < first; ++i)
        root = product(root, 2);
    for (unsigned i = 0; i < count; ++i) {
        bytes next(generator.size() + 1);
        for (std::size_t at = 0; at < generator.size(); ++at) {
            next[at] ^= generator[at];
            next[at + 1] ^= product(generator[at], root);
        }
        generator = next;
        root = product(root, 2);
    }
    bytes rest = data;
    rest.resize(data.size() + count);
    for (std::size_t at = 0; at < data.size(); ++at) {
        const std::uint8_t factor = rest[at];
        for (std::size_t i = 0; i < generator.size(); ++i)
            rest[at + i] ^= product(factor, generator[i]);
    }
    return {rest.end() - static_cast<std::ptrdiff_t>(count), rest.end()};
}

}  // namespace multiplex_builder
