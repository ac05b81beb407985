// Loss and damage, the same for the same seed.
#pragma once

#include <random>
#include <vector>

#include "testkit/multiplex/checksum.h"

namespace multiplex_builder {

// Each of them is lost with this probability.
template <class T>
std::vector<T> with_loss(const std::vector<T>& all, double probability, unsigned seed) {
    std::mt19937 random(seed);
    std::bernoulli_distribution lost(probability);
    std::vector<T> kept;
    for (const T& each : all)
        if (!lost(random)) kept.push_back(each);
    return kept;
}

// `count` bytes anywhere get another value.
inline bytes with_wrong_bytes(bytes of, unsigned count, unsigned seed) {
    std::mt19937 random(seed);
    for (unsigned i = 0; i < count && !of.empty(); ++i)
        of[random() % of.size()] ^= static_cast<std::uint8_t>(1 + random() % 255);
    return of;
}

// `count` stretches of up to `most` bytes anywhere are taken out.
inline bytes with_holes(bytes of, unsigned count, std::size_t most, unsigned seed) {
    std::mt19937 random(seed);
    for (unsigned i = 0; i < count && of.size() > most; ++i) {
        const auto begin = static_cast<std::ptrdiff_t>(random() % (of.size() - most));
        of.erase(of.begin() + begin, of.begin() + begin + static_cast<std::ptrdiff_t>(1 + random() % most));
    }
    return of;
}

}  // namespace multiplex_builder
