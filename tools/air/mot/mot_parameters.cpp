#include "tools/air/mot/mot_parameters.h"

namespace dabspi::air {

std::optional<mot_parameter> take_parameter(byte_view& from) {
    if (from.empty()) return std::nullopt;
    const std::uint8_t first = from[0];
    std::size_t begin = 1;
    std::size_t length = 0;
    switch (first >> 6) {
        case 0: break;
        case 1: length = 1; break;
        case 2: length = 4; break;
        default:
            if (from.size() < 2) return std::nullopt;
            begin = (from[1] & 0x80) != 0 ? 3 : 2;
            length = begin == 3 ? from.number(1, 2) & 0x7FFF : from[1];
    }
    if (from.size() < begin + length) return std::nullopt;
    const mot_parameter taken{static_cast<std::uint8_t>(first & 0x3F), from.part(begin, length)};
    from = from.part(begin + length);
    return taken;
}

std::vector<mot_parameter> parameters_of(byte_view all) {
    std::vector<mot_parameter> list;
    while (const auto taken = take_parameter(all))
        list.push_back(*taken);
    return list;
}

std::optional<mot_time> read_mot_time(byte_view from) {
    if (from.size() < 4) return std::nullopt;
    const std::uint32_t first = from.number(0, 4);
    mot_time time;
    time.now = first >> 31 == 0;
    time.mjd = first >> 14 & 0x1FFFF;
    time.hour = first >> 6 & 0x1F;
    time.minute = first & 0x3F;
    const bool long_form = (first >> 11 & 1) != 0;
    if (long_form && from.size() >= 6) {
        const std::uint32_t second = from.number(4, 2);
        time.second = second >> 10;
        time.millisecond = second & 0x3FF;
    }
    return time;
}

}  // namespace dabspi::air
