#include "tools/air/crc16.h"

#include <array>
#include <cstddef>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

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

std::uint32_t after(std::uint32_t value, const std::uint8_t* at, std::size_t left) {
    for (; left >= kStep; left -= kStep, at += kStep)
        value = one_step(value, at);
    if (left == 0) return value;
    if (left == 1) return (value << 8 & 0xFFFF) ^ kTables[0][(value >> 8) ^ *at];
    // No look-up waits for another one.
    std::uint32_t next = kTables[left - 1][at[0] ^ (value >> 8)] ^ kTables[left - 2][at[1] ^ (value & 0xFF)];
    for (std::size_t i = 2; i < left; ++i)
        next ^= kTables[left - 1 - i][at[i]];
    return next;
}

#if defined(__x86_64__)
// Whole frames have a CRC over all of their bytes: with carry-less multiplication it costs next to nothing.
// Four stretches of 16 bytes are multiplied on by x^512 with each 64 bytes added, modulo the polynomial; in
// the end 16 bytes are left with the same remainder as all that was folded into them.
constexpr std::size_t kFold = 64;

constexpr long long power_of_x(unsigned exponent) {
    std::uint32_t value = 1;
    for (; exponent != 0; --exponent)
        value = (value & 0x8000) != 0 ? (value << 1 & 0xFFFF) ^ kPolynomial : value << 1;
    return value;
}

__attribute__((target("pclmul,ssse3"))) inline __m128i load(const std::uint8_t* at) {
    const __m128i reversed = _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), reversed);
}

// `of` times x^n, plus `next`; `by` holds x^(n + 64) and x^n.
__attribute__((target("pclmul,ssse3"))) inline __m128i folded(__m128i of, __m128i by, __m128i next) {
    return _mm_xor_si128(
        next, _mm_xor_si128(_mm_clmulepi64_si128(of, by, 0x11), _mm_clmulepi64_si128(of, by, 0x00)));
}

// `left` is a multiple of kFold, and not 0. Begun with 0xFFFF.
__attribute__((target("pclmul,ssse3"))) std::uint32_t after_folding(const std::uint8_t* at,
                                                                    std::size_t left) {
    const __m128i by_512 = _mm_set_epi64x(power_of_x(512 + 64), power_of_x(512));
    const __m128i by_128 = _mm_set_epi64x(power_of_x(128 + 64), power_of_x(128));
    __m128i first = _mm_xor_si128(load(at), _mm_set_epi64x(static_cast<long long>(0xFFFF000000000000U), 0));
    __m128i second = load(at + 16);
    __m128i third = load(at + 32);
    __m128i fourth = load(at + 48);
    for (at += kFold, left -= kFold; left != 0; at += kFold, left -= kFold) {
        first = folded(first, by_512, load(at));
        second = folded(second, by_512, load(at + 16));
        third = folded(third, by_512, load(at + 32));
        fourth = folded(fourth, by_512, load(at + 48));
    }
    const __m128i all = folded(folded(folded(first, by_128, second), by_128, third), by_128, fourth);
    alignas(16) std::uint8_t rest[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(rest), all);
    _mm_store_si128(reinterpret_cast<__m128i*>(rest), load(rest));
    return after(0, rest, sizeof rest);
}

bool can_fold() {
    static const bool can = __builtin_cpu_supports("pclmul") != 0 && __builtin_cpu_supports("ssse3") != 0;
    return can;
}
#endif

}  // namespace

std::uint16_t crc16(byte_view of) {
    std::uint32_t value = 0xFFFF;
    std::size_t done = 0;
#if defined(__x86_64__)
    if (of.size() >= 2 * kFold && can_fold()) {
        done = of.size() / kFold * kFold;
        value = after_folding(of.begin(), done);
    }
#endif
    return static_cast<std::uint16_t>(after(value, of.begin() + done, of.size() - done) ^ 0xFFFF);
}

bool ends_with_crc16(byte_view all) {
    if (all.size() < 2) return false;
    const std::size_t end = all.size() - 2;
    return crc16(all.part(0, end)) == all.number(end, 2);
}

}  // namespace dabspi::air
