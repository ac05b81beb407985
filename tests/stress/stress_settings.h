// How long and with which seeds the stress tests run, from the environment.
//
// DABSPI_STRESS_ROUNDS: rounds of each test, and of each seed where there are seeds, instead of its own
// number.
//
// DABSPI_STRESS_SEED: the one seed to use, as a failing test prints it, instead of several fixed ones.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

inline unsigned stress_rounds(unsigned usual) {
    const char* const wanted = std::getenv("DABSPI_STRESS_ROUNDS");
    return wanted == nullptr ? usual : static_cast<unsigned>(std::stoul(wanted));
}

inline std::vector<std::uint64_t> stress_seeds() {
    if (const char* const wanted = std::getenv("DABSPI_STRESS_SEED")) return {std::stoull(wanted)};
    return {1, 20260302, 77, 4711};
}

inline std::uint64_t round_seed(std::uint64_t seed, unsigned round) {
    return seed * 1000003 + round;
}

// Printed before the rounds of a seed, so that a test that hangs has told it too.
inline void tell_seed(std::uint64_t seed) {
    std::printf("DABSPI_STRESS_SEED=%llu\n", static_cast<unsigned long long>(seed));
    std::fflush(stdout);
}
