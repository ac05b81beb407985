// One SPI carousel on its way through a multiplex: the component that announces it, where it is, and its
// objects. Owned by a multiplex_reception, used on its thread.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/air/fic/ensemble.h"
#include "tools/air/mot/carousel.h"
#include "tools/air/reception/reception_sink.h"

namespace dabspi::air {

// A packet address of a sub-channel.
struct carousel_place {
    std::uint8_t sub_channel = 0;
    std::uint16_t address = 0;

    bool operator==(const carousel_place& other) const {
        return sub_channel == other.sub_channel && address == other.address;
    }
    bool operator<(const carousel_place& other) const {
        return sub_channel != other.sub_channel ? sub_channel < other.sub_channel : address < other.address;
    }
};

class spi_carousel final : private object_sink {
 public:
    spi_carousel(reception_sink& sink, spi_component component, delivery which, const carousel_limits& limits)
        : memory(limits.memory),
          sink_(sink),
          component_(std::move(component)),
          carousel_(*this, which, limits) {}

    void take(byte_view group, std::uint64_t frame) { carousel_.take(group, frame); }
    void finish() { carousel_.finish(); }

    const spi_component& component() const { return component_; }
    void set_component(const spi_component& now) { component_ = now; }
    carousel_place place() const { return {component_.sub_channel, component_.address}; }
    carousel_statistics statistics() const { return carousel_.statistics(); }

    const std::size_t memory;  // bytes: its share

 private:
    void object(const mot_object& received) override { sink_.object(component_, received); }

    reception_sink& sink_;
    spi_component component_;
    carousel carousel_;
};

// For each place one component: where several announce the same carousel, that with the 32-bit identifier of
// a data service, then the lowest identifier.
std::vector<spi_component> carousels_announced(const ensemble& in);

}  // namespace dabspi::air
