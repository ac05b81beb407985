#include "tools/transmit/schedule/stretch.h"

#include "tools/transmit/schedule/carousel_sender.h"

namespace dabspi::transmit {

stretch make_stretch(const sent_carousel& carousel, const sending_order& order,
                     const packet_settings& settings) {
    stretch made;
    made.groups.reserve(order.size());
    carousel_sender sender(carousel, order);
    sender.stop_at_end();
    sender.begins = [&](std::size_t) {
        if (!made.groups.empty()) made.groups.back().last = made.frames;
        made.groups.push_back({made.frames, made.frames});
    };
    packet_writer packets(settings, sender);
    while (!(sender.ends_stretch() && packets.at_seam())) {
        made.packets.resize(made.packets.size() + settings.frame_size);
        packets.write_frame(made.packets.data() + made.packets.size() - settings.frame_size);
        if (sender.ends_stretch() && !made.groups.empty() && !packets.between_groups())
            made.groups.back().last = made.frames + 1;
        ++made.frames;
    }
    return made;
}

}  // namespace dabspi::transmit
