// From a recorded multiplex to what its FIC says, and to the objects of its carousel: five minutes of raw
// ETI, as full as multiplexes are, against reading the file in blocks of 1 MiB. Without the file: from frames
// in memory to objects, against the broadcast's own time.
#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <memory>

#include "bench/paired.h"
#include "testkit/multiplex/eti_writer.h"
#include "testkit/on_air/spi_multiplex.h"
#include "testkit/temporary_directory.h"
#include "tools/air/container/open_frames.h"
#include "tools/air/fic/fic_decoder.h"
#include "tools/air/reception/multiplex_reception.h"
#include "tools/scan/multiplex_scan.h"

namespace {

using namespace bench;
namespace mb = multiplex_builder;

constexpr unsigned kFrames = 12500;

constexpr unsigned kPart = 1000;  // frames that are repeated

// Eleven services of 96 kbit/s and SPI of 64: thirty objects, and what is left of a round padding.
std::vector<mb::logical_frame> full_multiplex() {
    std::vector<carousel_kit::object> objects(30);
    for (unsigned i = 0; i < objects.size(); ++i) {
        objects[i].transport_id = 100 + i;
        objects[i].name = "object " + std::to_string(i);
        for (unsigned n = 0; n < 2000 + 250 * i; ++n)
            objects[i].body.push_back(static_cast<std::uint8_t>(n * n / 7 + i));
    }
    on_air::multiplex sent;
    sent.audio.clear();
    for (unsigned i = 0; i < 11; ++i)
        sent.audio.push_back({0xC221 + i, "A service", i});
    sent.audio_bytes = 288;
    sent.spi.emplace_back();
    sent.sub_channels.push_back(
        {30, 192, on_air::stream_of(5, carousel_kit::directory_round(9, objects, 8189)), false});
    return on_air::frames_of(sent, kPart);
}

class recorded {
 public:
    recorded() : path_(directory_ / "multiplex.eti") {
        const mb::bytes file = mb::raw_eti(full_multiplex());
        std::ofstream out(path_, std::ios::binary);
        for (unsigned written = 0; written < kFrames; written += kPart)
            out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
    }
    const std::string& path() const { return path_; }

 private:
    temporary_directory directory_;
    std::string path_;
};

void read_in_blocks(const std::string& path) {
    constexpr std::size_t kBlock = 1024 * 1024;
    static const std::unique_ptr<char[]> block(new char[kBlock]);
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (::read(file, block.get(), kBlock) > 0) {
    }
    ::close(file);
}

enum class depth { frames, fic, objects };

void multiplex(benchmark::State& state, depth down_to) {
    static const recorded file;
    const auto figure = [&] {
        return seconds_of([&] {
            auto in = dabspi::air::open_frames(file.path());
            dabspi::air::fic_decoder fic;
            dabspi::scan::multiplex_scan scan;
            for (dabspi::air::frame each; in.frames->next(each);) {
                if (down_to == depth::fic) fic.feed(each);
                if (down_to == depth::objects) scan.take(each);
            }
            benchmark::DoNotOptimize(fic.statistics().figs);
            if (down_to == depth::objects) benchmark::DoNotOptimize(scan.result().carousels.size());
        });
    };
    const auto read = [&] { return seconds_of([&] { read_in_blocks(file.path()); }); };
    shape turn;
    turn.items = kFrames;
    turn.bytes = 6144.0 * kFrames;
    measure(state, figure, {{"read", read}}, turn);
}

// Frames that are in memory.
struct object_bytes final : dabspi::air::reception_sink {
    void object(const dabspi::air::spi_component&, const dabspi::air::mot_object& received) override {
        bytes += received.body->size();
    }
    std::size_t bytes = 0;
};

void reception(benchmark::State& state) {
    const std::vector<mb::logical_frame> sent = full_multiplex();
    std::vector<dabspi::air::frame> frames;
    for (const mb::logical_frame& each : sent) {
        dabspi::air::frame frame;
        frame.fic = each.fic;
        for (const mb::sub_channel& one : each.sub_channels)
            frame.sub_channels.push_back({one.id, one.start, one.tpl, one.content});
        frames.push_back(frame);
    }
    object_bytes sink;
    dabspi::air::multiplex_reception reception(sink);
    for (auto _ : state)
        for (const dabspi::air::frame& each : frames)
            reception.take(each);
    if (sink.bytes == 0) state.SkipWithError("no object came out");
    const double seconds = dabspi::air::seconds_of(frames.size());
    state.counters["times_real_time"] =
        benchmark::Counter(seconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(multiplex, frames, depth::frames)->UseManualTime();
BENCHMARK_CAPTURE(multiplex, fic, depth::fic)->UseManualTime();
BENCHMARK_CAPTURE(multiplex, scan, depth::objects)->UseManualTime();
BENCHMARK(reception);

}  // namespace
