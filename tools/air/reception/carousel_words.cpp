#include "tools/air/reception/carousel_words.h"

namespace dabspi::air {

std::string why_not_received(const object_statistics& of) {
    switch (of.state) {
        case object_state::scrambled: return "under conditional access";
        case object_state::unusable: return std::string("dropped: ") + drop_text(of.cause);
        case object_state::incomplete:
        case object_state::received: break;
    }
    if (of.segments_held == 0) return "nothing of it";
    if (of.segments == 0) return std::to_string(of.segments_held) + " segments";
    return std::to_string(of.segments_held) + " of " + std::to_string(of.segments) + " segments";
}

}  // namespace dabspi::air
