#include "testkit/on_air/spi_multiplex.h"

#include <algorithm>

#include "testkit/multiplex/fic_builder.h"

namespace on_air {

namespace {

namespace mb = multiplex_builder;

constexpr std::size_t kFic = 96;
constexpr unsigned kMillisecondsOfFrame = 24;
constexpr unsigned kMillisecondsOfMinute = 60'000;
constexpr unsigned kMinutesOfDay = 1440;

unsigned audio_start(std::size_t index) {
    return static_cast<unsigned>(400 + 6 * index);
}

// All that the FIC repeats.
std::vector<mb::bytes> repeated_figs(const multiplex& sent, unsigned frame) {
    std::vector<mb::bytes> figs = {mb::ensemble_label(sent.eid, sent.label)};
    if (sent.has_clock) figs.push_back(mb::fig_0_9(sent.offset_half_hours, sent.ecc));
    for (std::size_t i = 0; i < sent.audio.size(); ++i) {
        const audio_service& each = sent.audio[i];
        figs.push_back(mb::fig_0_1_long(each.sub_channel, audio_start(i), 0, 2, 6));
        figs.push_back(mb::fig_0_2(each.sid, {{0, each.sub_channel, true, false, 63}}));
        figs.push_back(mb::service_label(each.sid, each.label));
    }
    unsigned start = 0;
    for (const packet_sub_channel& each : sent.sub_channels) {
        const auto units = static_cast<unsigned>(each.frame_bytes / 4);
        figs.push_back(mb::fig_0_1_long(each.id, start, 0, 2, units));
        if (each.fec) figs.push_back(mb::fig_0_14(each.id, 1));
        start += units;
    }
    for (const spi_component& each : sent.spi) {
        figs.push_back(mb::fig_0_2(each.sid, {{3, each.scid}}));
        figs.push_back(mb::fig_0_3(each.scid, each.sub_channel, each.address));
        figs.push_back(mb::fig_0_8(each.sid, each.scids, true, each.scid));
        figs.push_back(mb::service_label(each.sid, each.label));
        if (frame >= each.announced_from) figs.push_back(mb::fig_0_13(each.sid, each.scids, {{7, {0x01}}}));
    }
    return figs;
}

// Those of one frame: the first is where the frame before ended.
mb::bytes fic_of(const multiplex& sent, unsigned frame, std::size_t& next) {
    const std::uint64_t minute =
        sent.minute_of_day +
        (sent.milliseconds + std::uint64_t{frame} * kMillisecondsOfFrame) / kMillisecondsOfMinute;
    std::vector<mb::bytes> figs = {mb::fig_0_0(sent.eid, frame % 5000)};
    if (sent.has_clock) {
        const auto day = static_cast<unsigned>(sent.day + minute / kMinutesOfDay);
        const auto of_day = static_cast<unsigned>(minute % kMinutesOfDay);
        figs.push_back(mb::fig_0_10(day, of_day / 60, of_day % 60));
    }
    const std::vector<mb::bytes> repeated = repeated_figs(sent, frame);
    for (std::size_t taken = 0; taken < repeated.size(); ++taken) {
        figs.push_back(repeated[next % repeated.size()]);
        if (mb::fibs(figs).size() > kFic) {
            figs.pop_back();
            break;
        }
        ++next;
    }
    return mb::fic(figs);
}

}  // namespace

std::vector<mb::logical_frame> frames_of(const multiplex& sent, unsigned count, unsigned first) {
    std::vector<std::vector<bytes>> packets;
    for (const packet_sub_channel& each : sent.sub_channels)
        packets.push_back(carousel_kit::logical_frames(each.stream, each.frame_bytes));
    std::vector<mb::logical_frame> frames;
    std::size_t next = 0;
    for (unsigned i = 0; i < count; ++i) {
        mb::logical_frame frame;
        frame.count = static_cast<std::uint16_t>((first + i) % 5000);
        frame.fic = fic_of(sent, first + i, next);
        unsigned start = 0;
        for (std::size_t n = 0; n < sent.sub_channels.size(); ++n) {
            const packet_sub_channel& each = sent.sub_channels[n];
            bytes content = i < packets[n].size() ? packets[n][i]
                                                  : carousel_kit::logical_frames(
                                                        carousel_kit::padding_packet(), each.frame_bytes)[0];
            frame.sub_channels.push_back({static_cast<std::uint8_t>(each.id),
                                          static_cast<std::uint16_t>(start), 0x22, std::move(content)});
            start += static_cast<unsigned>(each.frame_bytes / 4);
        }
        for (std::size_t n = 0; n < sent.audio.size(); ++n)
            frame.sub_channels.push_back({static_cast<std::uint8_t>(sent.audio[n].sub_channel),
                                          static_cast<std::uint16_t>(audio_start(n)), 0x22,
                                          bytes(sent.audio_bytes)});
        frames.push_back(std::move(frame));
    }
    return frames;
}

bytes stream_of(unsigned address, const std::vector<bytes>& groups, bool fec, unsigned cells) {
    carousel_kit::packetizer packets(cells);
    std::vector<bytes> all;
    for (const bytes& group : groups)
        carousel_kit::append(all, packets.packets(address, group));
    if (fec) return carousel_kit::with_fec(all);
    bytes joined;
    for (const bytes& each : all)
        carousel_kit::append(joined, each);
    return joined;
}

unsigned frames_needed(const multiplex& sent) {
    std::size_t most = 0;
    for (const packet_sub_channel& each : sent.sub_channels)
        most = std::max(most, (each.stream.size() + each.frame_bytes - 1) / each.frame_bytes);
    return static_cast<unsigned>(most);
}

}  // namespace on_air
