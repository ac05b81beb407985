// A day of a carousel: 200 objects at 16 kbit/s, as packets, without and with FEC; made anew, and as the
// stretch that is repeated. Beside it the reference: the CRC of every packet and every data group.
#include <benchmark/benchmark.h>

#include "tools/air/crc16.h"
#include "tools/transmit/schedule/carousel_sender.h"
#include "tools/transmit/schedule/stretch.h"

namespace {

using namespace dabspi::transmit;

constexpr std::size_t kFramesOfDay = 24 * 3600 * 1000 / 24;
constexpr std::size_t kPacket = 48;

struct sample {
    std::vector<sent_object> objects;
    std::vector<importance> importances;
    sent_carousel carousel;
    sending_order order;

    sample() {
        for (unsigned i = 0; i < 200; ++i) {
            bytes body(500 + i % 7 * 700);
            for (std::size_t n = 0; n < body.size(); ++n)
                body[n] = static_cast<std::uint8_t>(n * n / 7 + i);
            sent_object each;
            each.name = "object " + std::to_string(i);
            each.content_type = 7;
            each.body = std::make_shared<const bytes>(std::move(body));
            objects.push_back(each);
            importances.push_back(static_cast<importance>(i == 0 ? 0 : 1 + i % 4));
        }
        carousel = carousel_maker({}).make(objects);
        order = computed_order(carousel, importances);
        close_order(order, carousel);
    }
};

packet_settings settings(bool fec) {
    packet_settings made;
    made.fec = fec;
    return made;
}

void count_days(benchmark::State& state) {
    state.counters["days_per_second"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// Every packet of the day is made.
void carousel_day_made(benchmark::State& state, bool fec) {
    const sample of;
    for (auto _ : state) {
        carousel_sender sender(of.carousel, of.order);
        packet_writer packets(settings(fec), sender);
        std::uint8_t frame[kPacket];
        for (std::size_t i = 0; i < kFramesOfDay; ++i) {
            packets.write_frame(frame);
            benchmark::DoNotOptimize(frame);
        }
    }
    count_days(state);
}

// As the command does it: one stretch, and then the same bytes again and again, by portions.
void carousel_day_repeated(benchmark::State& state, bool fec) {
    const sample of;
    bytes portion;
    for (auto _ : state) {
        const stretch sent = make_stretch(of.carousel, of.order, settings(fec));
        for (std::size_t i = 0; i < kFramesOfDay; ++i) {
            append_bytes(portion, byte_view(sent.packets).part(i % sent.frames * kPacket, kPacket));
            if (portion.size() < 1 << 18) continue;
            benchmark::DoNotOptimize(portion.data());
            portion.clear();
        }
    }
    count_days(state);
}

void carousel_day_crc(benchmark::State& state) {
    const bytes group(516);
    for (auto _ : state)
        for (std::size_t i = 0; i < kFramesOfDay; ++i) {
            benchmark::DoNotOptimize(dabspi::air::crc16(byte_view(group).part(0, kPacket - 2)));
            if (i % 12 == 0) benchmark::DoNotOptimize(dabspi::air::crc16(group));
        }
    count_days(state);
}

BENCHMARK(carousel_day_crc)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(carousel_day_made, plain, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(carousel_day_made, fec, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(carousel_day_repeated, plain, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(carousel_day_repeated, fec, true)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
