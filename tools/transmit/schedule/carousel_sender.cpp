#include "tools/transmit/schedule/carousel_sender.h"

namespace dabspi::transmit {

byte_view carousel_sender::next_group() {
    if (next_ == order_.size()) {
        ended_ = true;
        if (stops_) return {};
        next_ = 0;
    }
    const planned_segment which = order_[next_];
    const sent_entity& entity = carousel_.entities[which.entity];
    group_ = entity.groups[which.segment];
    std::uint8_t& continuity = continuity_[static_cast<std::size_t>(entity.type)];
    finish_group(group_, continuity);
    continuity = static_cast<std::uint8_t>((continuity + 1) & 0xF);
    if (begins) begins(next_);
    ++next_;
    return group_;
}

void carousel_sender::replace(sent_carousel carousel, sending_order order) {
    carousel_ = std::move(carousel);
    order_ = std::move(order);
    next_ = 0;
}

}  // namespace dabspi::transmit
