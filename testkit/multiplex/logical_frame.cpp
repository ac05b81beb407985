#include "testkit/multiplex/logical_frame.h"

#include <random>

namespace multiplex_builder {

std::vector<logical_frame> noise_frames(unsigned count, std::uint16_t first, unsigned seed) {
    std::mt19937 random(seed);
    const auto noise = [&](std::size_t size) {
        bytes result(size);
        for (auto& byte : result)
            byte = static_cast<std::uint8_t>(random());
        return result;
    };
    std::vector<logical_frame> frames;
    for (unsigned i = 0; i < count; ++i) {
        logical_frame each;
        each.count = static_cast<std::uint16_t>((first + i) % 5000);
        each.fic = noise(96);
        each.sub_channels = {{3, 0, 0x22, noise(24)}, {30, 6, 0x21, noise(48)}};
        frames.push_back(each);
    }
    return frames;
}

}  // namespace multiplex_builder
