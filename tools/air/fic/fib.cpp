#include "tools/air/fic/fib.h"

namespace dabspi::air {

const fic_counter kFicLossCounters[kFicLosses] = {
    {"fibs_crc_wrong", "FIBs with a wrong CRC", &fic_statistics::fibs_crc_wrong},
    {"fibs_cut", "frames whose FIC ends inside a FIB", &fic_statistics::fibs_cut},
    {"figs_malformed", "FIGs that are malformed", &fic_statistics::figs_malformed},
    {"figs_over_limit", "FIGs of more services than a multiplex has", &fic_statistics::figs_over_limit},
};

bool fig_walk::next(fig& to, fic_statistics& statistics) {
    constexpr std::uint8_t kEnd = 0xFF;
    for (;;) {
        if (left_.empty() || left_[0] == kEnd) return false;
        const std::size_t length = left_[0] & 0x1F;
        to.type = static_cast<std::uint8_t>(left_[0] >> 5);
        to.data = left_.part(1, length);
        left_ = left_.part(1 + length);
        ++statistics.figs;
        if (to.data.size() == length && length != 0) return true;
        ++statistics.figs_malformed;
    }
}

}  // namespace dabspi::air
