// From a sub-channel's bytes to MOT objects: how many times faster than the broadcast. Beside it the
// reference: the CRC of every packet and every data group, which no reader can leave out.
#include <benchmark/benchmark.h>

#include "testkit/carousel/mot_carousel.h"
#include "tools/air/crc16.h"
#include "tools/air/mot/carousel.h"
#include "tools/air/packets/packet_decoder.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;

constexpr std::size_t kFrameBytes = 192;  // 64 kbit/s
constexpr double kSecondsOfFrame = 0.024;

struct object_count final : object_sink {
    void object(const mot_object& received) override { bytes += received.body->size(); }
    std::size_t bytes = 0;
};

struct chain final : data_group_sink {
    explicit chain(packet_fec fec) : packets(*this, fec) {}
    void data_group(std::uint16_t, byte_view group) override { objects.take(group, frame); }
    object_count sink;
    carousel objects{sink};
    packet_decoder packets;
    std::uint64_t frame = 0;
};

// About a minute of 64 kbit/s: sixty objects of up to 16 KB, a third of them compressed.
std::vector<kit::bytes> minute(unsigned cells, std::size_t segment, bool fec) {
    std::vector<kit::object> objects(60);
    for (unsigned i = 0; i < objects.size(); ++i) {
        objects[i].transport_id = 100 + i;
        objects[i].name = "object " + std::to_string(i);
        for (unsigned n = 0; n < 2000 + 200 * i; ++n)
            objects[i].body.push_back(static_cast<std::uint8_t>(n * n / 7 + i));
        if (i % 3 != 0) continue;
        objects[i].body = kit::gzip(objects[i].body);
        objects[i].more_parameters = kit::parameter(0x11, {1});
    }
    kit::packetizer packets(cells);
    std::vector<kit::bytes> all;
    for (const kit::bytes& group : kit::directory_round(7, objects, segment))
        kit::append(all, packets.packets(1, group));
    if (fec) return kit::logical_frames(kit::with_fec(all), kFrameBytes);
    kit::bytes stream;
    for (const kit::bytes& each : all)
        kit::append(stream, each);
    return kit::logical_frames(stream, kFrameBytes);
}

void air(benchmark::State& state, unsigned cells, std::size_t segment, packet_fec fec) {
    const std::vector<kit::bytes> frames = minute(cells, segment, fec != packet_fec::none);
    chain chain(fec);
    for (auto _ : state)
        for (const kit::bytes& frame : frames) {
            chain.packets.feed(frame);
            ++chain.frame;
        }
    if (chain.sink.bytes == 0) state.SkipWithError("no object came out");
    const double seconds = kSecondsOfFrame * static_cast<double>(frames.size());
    state.counters["times_real_time"] =
        benchmark::Counter(seconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void air_crc(benchmark::State& state) {
    const std::vector<kit::bytes> frames = minute(4, 8189, false);
    for (auto _ : state)
        for (const kit::bytes& frame : frames) {
            for (std::size_t at = 0; at < frame.size(); at += 96)
                benchmark::DoNotOptimize(crc16(byte_view(frame).part(at, 96)));
            benchmark::DoNotOptimize(crc16(frame));
        }
    const double seconds = kSecondsOfFrame * static_cast<double>(frames.size());
    state.counters["times_real_time"] =
        benchmark::Counter(seconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(air, packets_of_96, 4, std::size_t{8189}, packet_fec::none);
BENCHMARK_CAPTURE(air, packets_of_96_small_segments, 4, std::size_t{256}, packet_fec::none);
BENCHMARK_CAPTURE(air, packets_of_24, 1, std::size_t{1000}, packet_fec::none);
BENCHMARK_CAPTURE(air, packets_of_96_with_fec, 4, std::size_t{8189}, packet_fec::rs_12_9);
BENCHMARK(air_crc);

}  // namespace

BENCHMARK_MAIN();
