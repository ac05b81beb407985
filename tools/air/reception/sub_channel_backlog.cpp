#include "tools/air/reception/sub_channel_backlog.h"

namespace dabspi::air {

void sub_channel_backlog::add(std::uint64_t frame, byte_view sent) {
    if (sent.size() > kHalfBytes) return;
    if (newer_.frames.size() >= kHalfFrames || newer_.bytes.size() + sent.size() > kHalfBytes) {
        std::swap(older_, newer_);
        newer_.bytes.clear();
        newer_.frames.clear();
    }
    newer_.bytes.insert(newer_.bytes.end(), sent.begin(), sent.end());
    newer_.frames.emplace_back(frame, sent.size());
}

}  // namespace dabspi::air
