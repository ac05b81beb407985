// What a carousel hands on, kept; and rounds played to it, one data group a frame.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "testkit/carousel/mot_carousel.h"
#include "tools/air/mot/carousel.h"

namespace air_test {

struct received_object {
    unsigned transport_id;
    std::string name;
    carousel_kit::bytes body;
    std::uint64_t frame;
    bool is_new;
    bool was_compressed;
    dabspi::air::object_header header;
};

struct received_objects final : dabspi::air::object_sink {
    void object(const dabspi::air::mot_object& received) override {
        all.push_back({received.transport_id, received.header.name.value_or(std::string()), *received.body,
                       received.frame, received.is_new, received.was_compressed, received.header});
    }
    std::vector<std::string> names() const {
        std::vector<std::string> list;
        for (const received_object& each : all)
            list.push_back(each.name);
        return list;
    }
    std::vector<received_object> all;
};

inline carousel_kit::object object_of(unsigned transport_id, const std::string& name,
                                      carousel_kit::bytes body) {
    carousel_kit::object made;
    made.transport_id = transport_id;
    made.name = name;
    made.body = std::move(body);
    return made;
}

// One carousel and what comes out of it.
struct played_carousel {
    explicit played_carousel(dabspi::air::delivery which = dabspi::air::delivery::every,
                             const dabspi::air::carousel_limits& limits = {})
        : carousel(sink, which, limits) {}
    void play(const carousel_kit::bytes& group) { carousel.take(group, frame++); }
    void play(const std::vector<carousel_kit::bytes>& groups) {
        for (const carousel_kit::bytes& group : groups)
            play(group);
    }
    std::uint64_t dropped(dabspi::air::carousel_drop cause) const { return carousel.counts().of(cause); }
    std::optional<dabspi::air::object_statistics> object(const std::string& name) const {
        for (const auto& each : carousel.statistics().objects)
            if (each.name == name) return each;
        return std::nullopt;
    }

    received_objects sink;
    dabspi::air::carousel carousel;
    std::uint64_t frame = 0;
};

}  // namespace air_test
