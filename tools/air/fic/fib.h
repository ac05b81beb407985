// Fast information blocks and groups (EN 300 401, 5.2.1 and 5.2.2): 30 bytes of FIGs and a CRC.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

constexpr std::size_t kFib = 32;

// What was read of the FIC, and what was not, by cause.
struct fic_statistics {
    std::uint64_t fibs = 0;
    std::uint64_t fibs_crc_wrong = 0;   // dropped
    std::uint64_t fibs_cut = 0;         // FIC bytes that make no whole FIB, of so many frames
    std::uint64_t figs = 0;             // of FIBs with a right CRC
    std::uint64_t figs_malformed = 0;   // skipped: too short for what they say
    std::uint64_t figs_not_needed = 0;  // skipped: of a type or an extension that nothing here needs
    std::uint64_t figs_of_others = 0;   // skipped: of other ensembles
    std::uint64_t figs_over_limit = 0;  // skipped: more services or components than any multiplex has
    std::uint64_t reconfigurations = 0;
    std::uint64_t changes_of_ensemble = 0;  // another ensemble identifier: everything begins anew
};

struct fic_counter {
    const char* key;   // of JSON
    const char* text;  // for a person
    std::uint64_t fic_statistics::*value;
};

// Those that tell of something lost or left out, in an array of kFicLosses.
constexpr std::size_t kFicLosses = 4;
extern const fic_counter kFicLossCounters[kFicLosses];

struct fig {
    std::uint8_t type = 0;
    byte_view data;  // behind the byte of type and length; never empty
};

// One FIB's groups, one after another. `fib` is of kFib bytes, and its CRC is right.
class fig_walk {
 public:
    explicit fig_walk(byte_view fib) : left_(fib.part(0, kFib - 2)) {}

    // False at the end; a group that reaches behind it is malformed, which ends the FIB.
    bool next(fig& to, fic_statistics& statistics);

 private:
    byte_view left_;
};

}  // namespace dabspi::air
