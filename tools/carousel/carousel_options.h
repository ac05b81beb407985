// The options of `dabspi carousel`, as they were given. Plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/encode/local_time_options.h"
#include "tools/transmit/container/multiplex_writer.h"
#include "tools/transmit/mot/sent_carousel.h"

namespace dabspi::carousel {

enum class output_form : std::uint8_t { packets, groups, raw, streamed, framed, edi };

struct carousel_options {
    std::vector<std::string> inputs;
    std::string output;
    std::string form;  // empty: by the ending of `output`
    std::string ensemble;
    std::string carousel;
    std::string data_service;
    std::string label;
    std::string service_label = "SPI";
    std::string clock;
    local_time_options local_time;
    std::string service;
    std::string duration;
    std::string within;
    std::string budget;
    std::string mode = "directory";
    std::string directory = "plain";
    std::string charset = "utf-8";
    unsigned bit_rate = 16;
    unsigned address = 1;
    unsigned sub_channel = 1;
    unsigned packet_size = 0;   // 0: the longest that a frame holds
    unsigned segment_size = 0;  // 0: the usual one
    bool fec = false;
    bool compress = false;
    bool plain_order = false;
    bool tokens = false;
    bool lenient = false;
    bool no_check = false;
    bool follow = false;
};

// Of `--within`: "90s", "logos=30s".
struct wanted_time {
    std::string what;  // "now-next", "logos", "everything"
    double seconds = 0;
};
std::optional<wanted_time> parse_wanted(const std::string& text);

// "90s", "10min", "24h", "90": seconds; at most a year. Nothing for another text.
std::optional<double> parse_seconds(const std::string& text);
// "16kbit/s", "16": kbit/s, a multiple of 8. Nothing for another text.
std::optional<unsigned> parse_bit_rate(const std::string& text);

// By the ending of the output's name where no form was given; nothing when that does not tell.
std::optional<output_form> form_of(const carousel_options& options);
const char* form_text(output_form of);

}  // namespace dabspi::carousel
