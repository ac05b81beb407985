#include "tools/air/container/frame_counter.h"

namespace dabspi::air {

void frame_counter::number(frame& of, std::optional<std::uint16_t> count, container_statistics& statistics) {
    const auto expected = static_cast<std::uint16_t>(frames_ == 0 ? 0 : (last_ + 1) % modulus_);
    of.count = count && *count < modulus_ ? *count : expected;
    of.count_modulus = modulus_;
    of.index = frames_;
    of.missing_before = 0;
    // The same count once more is no round of frames lost, but a writer that does not count.
    if (frames_ != 0 && of.count == last_) {
        ++statistics.count_repeated;
    } else if (frames_ != 0) {
        of.missing_before = static_cast<std::uint32_t>((of.count + modulus_ - expected) % modulus_);
    }
    statistics.frames_missing += of.missing_before;
    statistics.gaps += of.missing_before != 0 ? 1U : 0U;
    statistics.frames_damaged += of.damaged ? 1U : 0U;
    ++statistics.frames;
    ++frames_;
    last_ = of.count;
}

}  // namespace dabspi::air
