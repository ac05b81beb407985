// A whole multiplex with SPI, frame by frame: a FIC that goes round, a clock, audio services and carousels in
// packet mode. For tests, benchmarks and fuzz seeds; independent of tools/.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "testkit/carousel/mot_carousel.h"
#include "testkit/multiplex/logical_frame.h"

namespace on_air {

using bytes = std::vector<std::uint8_t>;

struct audio_service {
    std::uint32_t sid = 0xC221;
    std::string label = "Radio 1";
    unsigned sub_channel = 1;
};

struct packet_sub_channel {
    unsigned id = 30;
    std::size_t frame_bytes = 192;  // of one frame: 3 for each kbit/s
    bytes stream;                   // from the first frame on; then padding packets
    bool fec = false;
};

struct spi_component {
    std::uint32_t sid = 0xE1C00098;
    unsigned scids = 0;
    unsigned scid = 7;
    unsigned sub_channel = 30;
    unsigned address = 5;
    std::string label = "Guide";
    unsigned announced_from = 0;  // frame with the first FIG 0/13
};

struct multiplex {
    std::uint16_t eid = 0xC185;
    unsigned ecc = 0xE1;
    std::string label = "Test ensemble";
    std::vector<audio_service> audio = {{}};
    std::vector<packet_sub_channel> sub_channels;
    std::vector<spi_component> spi;
    bool has_clock = true;
    unsigned day = 61101;          // Modified Julian Date: 2026-03-02
    unsigned minute_of_day = 630;  // UTC, when the first frame begins
    unsigned milliseconds = 0;     // of that minute
    int offset_half_hours = 0;
    unsigned audio_bytes = 24;  // of each audio sub-channel in a frame
};

// `count` frames counted from `first` on.
std::vector<multiplex_builder::logical_frame> frames_of(const multiplex& sent, unsigned count,
                                                        unsigned first = 0);

// The packets of these data groups, one after another.
bytes stream_of(unsigned address, const std::vector<bytes>& groups, bool fec = false, unsigned cells = 4);

// As many frames as the longest stream takes.
unsigned frames_needed(const multiplex& sent);

}  // namespace on_air
