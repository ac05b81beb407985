// Seeded numbers, the same on every machine.
#pragma once

#include <cstdint>
#include <random>

namespace soak {

class dice {
 public:
    // Equal seeds, equal numbers; neighbouring seeds have nothing in common.
    explicit dice(std::uint64_t a, std::uint64_t b = 0, std::uint64_t c = 0) {
        std::seed_seq seed{static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(a >> 32),
                           static_cast<std::uint32_t>(b), static_cast<std::uint32_t>(c)};
        random_.seed(seed);
    }
    int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
    int between(int first, int last) { return first + below(last - first + 1); }
    bool one_in(int n) { return below(n) == 0; }

 private:
    std::mt19937 random_;  // its numbers are laid down; those of the distributions are not
};

}  // namespace soak
