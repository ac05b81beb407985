#include "tools/air/calls/multiplex_calls.h"

namespace dabspi::air {

std::optional<call> multiplex_calls::next() {
    constexpr std::uint64_t kFramesBetween = 64;
    for (;;) {
        if (!calls_.error().empty()) return std::nullopt;
        if (auto made = calls_.take()) return made;
        if (finished_) return std::nullopt;
        frame each;
        const bool ended = ++frames_ % kFramesBetween == 0 && given_up_ && given_up_();
        if (!ended && from_.next(each)) {
            reception_.take(each);
            calls_.frame_taken(reception_.frame_number());
        } else {
            finished_ = true;
            reception_.finish();
            calls_.finish();
        }
    }
}

}  // namespace dabspi::air
