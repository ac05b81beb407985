#include "tools/transmit/schedule/stretch.h"

#include "tools/transmit/schedule/carousel_sender.h"

namespace dabspi::transmit {

stretch make_stretch(const sent_carousel& carousel, const sending_order& order,
                     const packet_settings& settings) {
    stretch made;
    made.groups.reserve(order.size());
    carousel_sender sender(carousel, order);
    sender.stop_at_end();
    packet_writer packets(settings, sender);
    sender.begins = [&](std::size_t) {
        if (!made.groups.empty()) made.groups.back().end = packets.cells();
        made.groups.push_back({packets.cells(), 0});
    };
    bool ended = false;
    while (!(ended && packets.at_seam())) {
        made.packets.resize(made.packets.size() + settings.frame_size);
        packets.write_frame(made.packets.data() + made.packets.size() - settings.frame_size);
        ++made.frames;
        if (ended || !sender.ends_stretch() || !packets.between_groups()) continue;
        ended = true;
        made.groups.back().end = packets.cells();
    }
    made.cells = packets.cells();
    return made;
}

}  // namespace dabspi::transmit
