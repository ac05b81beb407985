// From a recorded multiplex to what its FIC says: five minutes of raw ETI, as full as multiplexes are,
// against reading the file in blocks of 1 MiB.
#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <memory>

#include "bench/paired.h"
#include "testkit/multiplex/eti_writer.h"
#include "testkit/multiplex/fic_builder.h"
#include "testkit/temporary_directory.h"
#include "tools/air/container/open_frames.h"
#include "tools/air/fic/fic_decoder.h"

namespace {

using namespace bench;
namespace mb = multiplex_builder;

constexpr unsigned kFrames = 12500;

// Twelve services of 96 kbit/s, one of SPI, and a FIC that goes round in four frames.
std::vector<mb::logical_frame> full_multiplex() {
    constexpr unsigned kServices = 12;
    auto frames = mb::noise_frames(1000);
    for (mb::logical_frame& each : frames) {
        std::vector<mb::bytes> figs = {mb::fig_0_0(0xC185, each.count), mb::fig_0_10(61100, 7, 30)};
        for (unsigned i = each.count % 4; i < kServices; i += 4) {
            figs.push_back(mb::fig_0_1_long(i, 72 * i, 0, 2, 72));
            figs.push_back(mb::fig_0_2(0xC221 + i, {{0, i, true, false, 63}}));
        }
        if (each.count % 4 == 0)
            figs.push_back(mb::service_label(0xC221 + each.count / 4 % kServices, "A service"));
        each.fic = mb::fic(figs);
        each.sub_channels.clear();
        for (unsigned i = 0; i < kServices; ++i)
            each.sub_channels.push_back({static_cast<std::uint8_t>(i), static_cast<std::uint16_t>(72 * i),
                                         0x22, mb::bytes(288, static_cast<std::uint8_t>(each.count + i))});
    }
    return frames;
}

class recorded {
 public:
    recorded() : path_(directory_ / "multiplex.eti") {
        const mb::bytes file = mb::raw_eti(full_multiplex());
        std::ofstream out(path_, std::ios::binary);
        for (unsigned written = 0; written < kFrames; written += 1000)
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

void multiplex(benchmark::State& state, bool with_fic) {
    static const recorded file;
    const auto figure = [&] {
        return seconds_of([&] {
            auto in = dabspi::air::open_frames(file.path());
            dabspi::air::fic_decoder fic;
            for (dabspi::air::frame each; in.frames->next(each);)
                if (with_fic) fic.feed(each);
            benchmark::DoNotOptimize(fic.statistics().figs);
        });
    };
    const auto read = [&] { return seconds_of([&] { read_in_blocks(file.path()); }); };
    shape turn;
    turn.items = kFrames;
    turn.bytes = 6144.0 * kFrames;
    measure(state, figure, {{"read", read}}, turn);
}

BENCHMARK_CAPTURE(multiplex, frames, false)->UseManualTime();
BENCHMARK_CAPTURE(multiplex, fic, true)->UseManualTime();

}  // namespace
