// Gives the data groups of a carousel in their order, again and again, with continuity and CRC. Used on one
// thread. Memory: the carousel, its order, and one data group.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "tools/transmit/packets/packet_writer.h"
#include "tools/transmit/schedule/order.h"

namespace dabspi::transmit {

class carousel_sender final : public group_source {
 public:
    // The order must have a segment at least, and be closed if its stretch is repeated as bytes.
    carousel_sender(sent_carousel carousel, sending_order order)
        : carousel_(std::move(carousel)), order_(std::move(order)) {}

    byte_view next_group() override;
    bool ends_stretch() const override { return next_ == order_.size(); }

    // Another version from the next data group on; the continuity goes on.
    void replace(sent_carousel carousel, sending_order order);

    // Stops at the end of the stretch: then there are no more groups.
    void stop_at_end() { stops_ = true; }
    bool has_ended() const { return stops_ && ended_; }

    const sent_carousel& carousel() const { return carousel_; }
    const sending_order& order() const { return order_; }

    // Called for each group as it is begun, with its place in the order.
    std::function<void(std::size_t)> begins = {};

 private:
    sent_carousel carousel_;
    sending_order order_;
    std::size_t next_ = 0;
    std::array<std::uint8_t, kGroupTypes> continuity_{};
    bytes group_;
    bool stops_ = false;
    bool ended_ = false;
};

}  // namespace dabspi::transmit
