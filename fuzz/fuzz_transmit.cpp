// A carousel of any objects, sizes and settings: two rounds of its packets come back as the same objects,
// without a seam, whatever its mode, its packets and its FEC.
#include <map>

#include "fuzz/fuzz_support.h"
#include "tools/air/mot/carousel.h"
#include "tools/air/packets/packet_decoder.h"
#include "tools/transmit/schedule/stretch.h"

namespace {

namespace air = dabspi::air;
using namespace dabspi::transmit;

struct receiver final : air::data_group_sink, air::object_sink {
    explicit receiver(bool fec) : packets(*this, fec ? air::packet_fec::rs_12_9 : air::packet_fec::none) {}
    void data_group(std::uint16_t, byte_view group) override { carousel.take(group, 0); }
    void object(const air::mot_object& received) override {
        expect(received.header.name.has_value(), "a name");
        bodies[*received.header.name] = *received.body;
    }
    std::map<std::string, bytes> bodies;
    air::carousel carousel{*this, air::delivery::once};
    air::packet_decoder packets;
};

struct input {
    byte_view left;
    unsigned byte() {
        const unsigned value = left[0];
        left = left.part(1);
        return value;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 8 || size > 4000) return 0;
    input from{{data, size}};
    const unsigned flags = from.byte();
    carousel_settings settings;
    settings.mode = (flags & 1) != 0 ? carousel_mode::header : carousel_mode::directory;
    settings.directory = static_cast<directory_form>((flags >> 1) % 3);
    settings.segment_size = 16 + from.byte() * 8;
    packet_settings packets;
    packets.fec = (flags & 8) != 0;
    packets.frame_size = 24 * (1 + from.byte() % 16);
    packets.packet_size = 24 * (1 + from.byte() % 4);
    std::vector<sent_object> objects;
    std::vector<importance> importances;
    while (!from.left.empty() && objects.size() < 12) {
        sent_object each;
        each.name = std::to_string(objects.size());
        each.content_type = static_cast<std::uint8_t>(from.byte() & 0x3F);
        each.content_subtype = static_cast<std::uint16_t>(1 + from.byte());
        importances.push_back(static_cast<importance>(from.byte() % kImportances));
        const byte_view body = from.left.part(0, from.byte() * 4);
        from.left = from.left.part(body.size());
        each.body = std::make_shared<const bytes>(body.begin(), body.end());
        if ((flags & 16) != 0) compress_where_it_helps(each);
        objects.push_back(std::move(each));
    }
    const sent_carousel carousel = carousel_maker(settings).make(objects);
    sending_order order = (flags & 32) != 0 ? plain_order(carousel) : computed_order(carousel, importances);
    close_order(order, carousel);
    const stretch sent = make_stretch(carousel, order, packets);
    expect(sent.packets.size() == std::size_t{sent.frames} * packets.frame_size, "whole logical frames");
    expect(sent.groups.size() == order.size(), "every group was sent");

    receiver got(packets.fec);
    for (int round = 0; round < 2; ++round)
        for (std::size_t i = 0; i < sent.frames; ++i)
            got.packets.feed(byte_view(sent.packets).part(i * packets.frame_size, packets.frame_size));
    got.packets.finish();
    got.carousel.finish();
    for (const auto cause : {air::packet_drop::lost_packets, air::packet_drop::repeated_packet,
                             air::packet_drop::unfinished_group, air::packet_drop::wrong_crc})
        expect(got.packets.counts().of(cause) == 0, "no seam");
    expect(got.bodies.size() == objects.size(), "every object came back");
    for (const sent_object& each : objects)
        expect(got.bodies[each.name] == *each.body, "as it was sent");
    return 0;
}
