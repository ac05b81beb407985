#include "tools/air/fic/protection.h"

#include <array>

namespace dabspi::air {

namespace {

struct unequal_protection {
    std::uint16_t bit_rate;
    std::uint8_t level;
    std::uint16_t size;
};

// clang-format off
constexpr std::array<unequal_protection, 64> kUnequal = {{
    {32, 5, 16},   {32, 4, 21},   {32, 3, 24},   {32, 2, 29},   {32, 1, 35},
    {48, 5, 24},   {48, 4, 29},   {48, 3, 35},   {48, 2, 42},   {48, 1, 52},
    {56, 5, 29},   {56, 4, 35},   {56, 3, 42},   {56, 2, 52},
    {64, 5, 32},   {64, 4, 42},   {64, 3, 48},   {64, 2, 58},   {64, 1, 70},
    {80, 5, 40},   {80, 4, 52},   {80, 3, 58},   {80, 2, 70},   {80, 1, 84},
    {96, 5, 48},   {96, 4, 58},   {96, 3, 70},   {96, 2, 84},   {96, 1, 104},
    {112, 5, 58},  {112, 4, 70},  {112, 3, 84},  {112, 2, 104},
    {128, 5, 64},  {128, 4, 84},  {128, 3, 96},  {128, 2, 116}, {128, 1, 140},
    {160, 5, 80},  {160, 4, 104}, {160, 3, 116}, {160, 2, 140}, {160, 1, 168},
    {192, 5, 96},  {192, 4, 116}, {192, 3, 140}, {192, 2, 168}, {192, 1, 208},
    {224, 5, 116}, {224, 4, 140}, {224, 3, 168}, {224, 2, 208}, {224, 1, 232},
    {256, 5, 128}, {256, 4, 168}, {256, 3, 192}, {256, 2, 232}, {256, 1, 280},
    {320, 5, 160}, {320, 4, 208}, {320, 2, 280},
    {384, 5, 192}, {384, 3, 280}, {384, 1, 416}}};
// clang-format on

// Capacity units for each step of the bit rate, by level.
constexpr std::array<std::uint16_t, 4> kUnitsA = {12, 8, 6, 4};     // for 8 kbit/s
constexpr std::array<std::uint16_t, 4> kUnitsB = {27, 21, 18, 15};  // for 32 kbit/s

}  // namespace

void set_unequal_protection(sub_channel& of, std::uint8_t index) {
    const unequal_protection& entry = kUnequal[index & 0x3F];
    // With the table switch there is another table, which is not defined.
    const bool defined = (index & 0x40) == 0;
    of.equal = false;
    of.option = 0;
    of.level = defined ? entry.level : std::uint8_t{0};
    of.size = defined ? entry.size : std::uint16_t{0};
    of.bit_rate = defined ? entry.bit_rate : std::uint16_t{0};
}

void set_equal_protection(sub_channel& of, std::uint8_t option, std::uint8_t level, std::uint16_t size) {
    of.equal = true;
    of.option = option;
    of.level = static_cast<std::uint8_t>((level & 3) + 1);
    of.size = size;
    of.bit_rate = 0;
    if (option == 0) of.bit_rate = static_cast<std::uint16_t>(size / kUnitsA[level & 3] * 8);
    if (option == 1) of.bit_rate = static_cast<std::uint16_t>(size / kUnitsB[level & 3] * 32);
}

std::string protection_text(const sub_channel& of) {
    if (!of.equal) return of.level == 0 ? "unknown" : "UEP " + std::to_string(of.level);
    const std::string profile = of.option == 0   ? "A"
                                : of.option == 1 ? "B"
                                                 : "option " + std::to_string(of.option);
    return "EEP " + std::to_string(of.level) + "-" + profile;
}

}  // namespace dabspi::air
