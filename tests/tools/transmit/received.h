// What a receiver makes of a sub-channel: packets, data groups and MOT, as tools/air has them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/air/data_groups/data_group.h"
#include "tools/air/mot/carousel.h"
#include "tools/air/packets/packet_decoder.h"

namespace transmit_test {

using dabspi::air::byte_view;
using dabspi::spi_object::bytes;

struct received_body {
    dabspi::air::object_header header;
    std::uint16_t transport_id = 0;
    bytes body;
};

class receiver final : public dabspi::air::data_group_sink, public dabspi::air::object_sink {
 public:
    explicit receiver(bool fec = false, std::uint16_t address = 1)
        : packets(*this, fec ? dabspi::air::packet_fec::rs_12_9 : dabspi::air::packet_fec::none),
          carousel(*this, dabspi::air::delivery::once),
          address_(address) {}

    void data_group(std::uint16_t address, byte_view group) override {
        if (address != address_) return;
        dabspi::air::data_group read;
        if (read_data_group(group, read) == dabspi::air::group_fault::none) {
            const auto [last, fresh] = continuity_.emplace(read.type, read.continuity);
            if (!fresh && (last->second + 1) % 16 != read.continuity) ++continuity_jumps;
            last->second = read.continuity;
            ++groups;
        }
        carousel.take(group, frame);
    }
    void object(const dabspi::air::mot_object& received) override {
        objects[received.header.name.value_or("")] = {received.header, received.transport_id, *received.body};
        ++deliveries;
    }
    void feed(byte_view all, std::size_t frame_size) {
        for (; !all.empty(); all = all.part(frame_size)) {
            packets.feed(all.part(0, frame_size));
            ++frame;
        }
    }
    void finish() {
        packets.finish();
        carousel.finish();
    }

    dabspi::air::packet_decoder packets;
    dabspi::air::carousel carousel;
    std::map<std::string, received_body> objects;
    std::size_t deliveries = 0;
    std::size_t groups = 0;
    std::size_t continuity_jumps = 0;
    std::uint64_t frame = 0;

 private:
    const std::uint16_t address_;
    std::map<std::uint8_t, unsigned> continuity_;
};

}  // namespace transmit_test
