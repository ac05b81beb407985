// What comes out of a multiplex, kept.
#pragma once

#include <string>
#include <vector>

#include "testkit/multiplex/logical_frame.h"
#include "tools/air/reception/multiplex_reception.h"

namespace air_test {

struct received_from_air {
    std::uint32_t sid;
    unsigned address;
    std::string name;
    std::vector<std::uint8_t> body;
    std::uint64_t frame;
};

class received_multiplex final : public dabspi::air::reception_sink {
 public:
    explicit received_multiplex(dabspi::air::delivery which = dabspi::air::delivery::every,
                                const dabspi::air::reception_limits& limits = {})
        : reception(*this, which, limits) {}

    void minute(const dabspi::air::local_minute& begun) override { minutes.push_back(minute_text(begun)); }
    void object(const dabspi::air::spi_component& from, const dabspi::air::mot_object& received) override {
        objects.push_back({from.sid, from.address, received.header.name.value_or(std::string()),
                           *received.body, received.frame});
    }

    // Without a container around it.
    void feed(const multiplex_builder::logical_frame& sent, std::uint32_t missing_before = 0) {
        dabspi::air::frame frame;
        frame.index = fed++;
        frame.missing_before = missing_before;
        frame.fic = sent.fic;
        for (const multiplex_builder::sub_channel& each : sent.sub_channels)
            frame.sub_channels.push_back({each.id, each.start, each.tpl, each.content});
        reception.take(frame);
    }
    void feed_all(const std::vector<multiplex_builder::logical_frame>& sent) {
        for (const auto& each : sent)
            feed(each);
        reception.finish();
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const received_from_air& each : objects)
            all.push_back(each.name);
        return all;
    }

    std::vector<std::string> minutes;
    std::vector<received_from_air> objects;
    std::uint64_t fed = 0;
    dabspi::air::multiplex_reception reception;
};

}  // namespace air_test
