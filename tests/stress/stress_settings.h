// How long and with which seeds the stress tests run, from the environment.
//
// DABSPI_STRESS_ROUNDS: rounds of each test, and of each seed where there are seeds, instead of its own
// number.
//
// DABSPI_STRESS_SEED: the one seed to use, as a failing test prints it, instead of several fixed ones.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// The number in the environment variable, from 1; nothing where it is not set. Anything else fails the test:
// without a round it would have shown nothing.
inline std::optional<std::uint64_t> stress_setting(const char* variable) {
    const char* const text = std::getenv(variable);
    if (text == nullptr) return {};
    char* end = nullptr;
    errno = 0;
    const std::uint64_t value = std::strtoull(text, &end, 10);
    if (*text < '0' || *text > '9' || *end != '\0' || errno != 0 || value == 0)
        throw std::invalid_argument(std::string(variable) + " is \"" + text +
                                    "\"; it must be a number from 1");
    return value;
}

// The same, or the usual number.
inline unsigned stress_number(const char* variable, unsigned usual) {
    const std::uint64_t number = stress_setting(variable).value_or(usual);
    if (number == 0 || number > std::numeric_limits<unsigned>::max())
        throw std::invalid_argument(std::string(variable) + " is " + std::to_string(number) +
                                    "; it must be from 1 to 4294967295");
    return static_cast<unsigned>(number);
}

inline unsigned stress_rounds(unsigned usual) {
    return stress_number("DABSPI_STRESS_ROUNDS", usual);
}

inline std::vector<std::uint64_t> stress_seeds() {
    if (const auto wanted = stress_setting("DABSPI_STRESS_SEED")) return {*wanted};
    return {1, 20260302, 77, 4711};
}

inline std::uint64_t round_seed(std::uint64_t seed, unsigned round) {
    return seed * 1000003 + round;
}

// Printed before the rounds of a seed, so that a test that hangs has told it too.
inline void print_seed(std::uint64_t seed) {
    std::printf("DABSPI_STRESS_SEED=%llu\n", static_cast<unsigned long long>(seed));
    std::fflush(stdout);
}
