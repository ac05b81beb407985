// How long a call holds the host up. "burst": one call after the other, the library at work; "rest": a call
// into a library at rest, whose router has to be woken by a call of the kernel: where the scheduler puts the
// threads, on one processor where the router may run before the call returns, and where it may not.
//
// References of a body: a copy of its bytes into memory that is there ("memcpy"), and into an array that is
// made for it ("copy"), which no host call can do without since the host keeps its own. Of every call: a bare
// hand-off to one thread ("bare").
#include <time.h>

#include <algorithm>
#include <atomic>
#include <fstream>

#include "bench/bare_pipeline.h"
#include "bench/material.h"
#include "bench/paired.h"
#include "bench/placement.h"
#include "bench/references.h"
#include "spi_wrap/to_spi_server.h"
#include "src/event/quiet.h"
#include "testkit/sandbox.h"

namespace {

using namespace bench;

struct silent_listener final : spi_wrap::ISpiListener {
    void ProgramInfoReceived(const spi_wrap::ServElemId&, spi_wrap::SpiProgramInfo&) override {}
    void ProgramNowNextUpdated(spi_wrap::SpiProgramInfo&, spi_wrap::SpiProgramInfo&) override {}
    void StationLogoReceived(spi_wrap::SpiLogoInfo&) override {}
};

// The host's interface, with a shared block and directories of its own.
struct live_host {
    sandbox here;
    silent_listener listener;
    std::unique_ptr<spi_wrap::toSpiServer> server;

    live_host() {
        here.notes_calls = false;
        std::string block(5140, '\0');
        block[0] = 0x10;  // the payload's size, 5136, little-endian; then an empty path
        block[1] = 0x14;
        std::ofstream(here.block(), std::ios::binary | std::ios::trunc) << block;
        server = std::make_unique<spi_wrap::toSpiServer>(&listener);
        settle();
    }
    static void settle() { spi::wait_until_quiet(std::chrono::minutes(1)); }
};

void rest() {
    const timespec length{0, 100'000};
    nanosleep(&length, nullptr);
}

// `calls` calls in a row into a library at rest: 1 finds the router asleep, many keep it awake.
void host_call(benchmark::State& state, unsigned calls, const std::function<void()>& call,
               const std::vector<side>& references) {
    const auto figure = [&] {
        live_host::settle();
        if (calls == 1) rest();
        return seconds_of([&] {
            for (unsigned i = 0; i < calls; ++i)
                call();
        });
    };
    measure(state, figure, references, {static_cast<double>(calls), 0, true});
}

// Hand-offs to one thread that does nothing with them.
class bare_hand_off {
 public:
    double operator()(unsigned calls) {
        if (calls == 1) rest();
        const double seconds = seconds_of([&] {
            for (unsigned i = 0; i < calls; ++i)
                stage_.post({0, std::make_shared<bare_payload>()});
        });
        while (handled_ != calls)
            std::this_thread::yield();
        handled_ = 0;
        return seconds;
    }

 private:
    std::atomic<unsigned> handled_{0};
    bare_stage stage_{[this](bare_item&) { ++handled_; }};
};

void feed(benchmark::State& state, std::size_t size, bool burst, processors where) {
    const placement here(where);
    const unsigned calls =
        burst ? static_cast<unsigned>(std::clamp<std::size_t>(4'000'000 / (size + 1), 4, 200)) : 1;
    live_host host;
    const std::vector<unsigned char> bytes(size, 0x55);
    // Of a kind that the parser remembers and does not read: the same object every time.
    spi_wrap::MotBodyMetadata metadata{0, 7, 2, "20260310_E1C00221.EHB"};
    spi_wrap::MotBody body{static_cast<std::uint32_t>(size), bytes.data()};
    spi_wrap::ServElemId service{0xE1C00221, 0, 0};

    warm_copy warm(size);
    const auto memory = [&] {
        return seconds_of([&] {
            for (unsigned i = 0; i < calls; ++i)
                warm(bytes.data(), size);
        });
    };
    const auto copy = [&] {
        std::vector<std::unique_ptr<unsigned char[]>> copies(calls);
        return seconds_of([&] {
            for (std::unique_ptr<unsigned char[]>& one : copies) {
                one.reset(new unsigned char[size]);
                if (size != 0) std::memcpy(one.get(), bytes.data(), size);
                benchmark::DoNotOptimize(one.get());
            }
        });
    };
    bare_hand_off bare;
    host_call(state, calls, [&] { host.server->FeedMotBody(metadata, body, service); },
              {{"memcpy", memory}, {"copy", copy}, {"bare", [&] { return bare(calls); }}});
}

void small_call(benchmark::State& state, bool burst, processors where,
                const std::function<void(live_host&)>& call) {
    const placement here(where);
    const unsigned calls = burst ? 200 : 1;
    live_host host;
    bare_hand_off bare;
    warm_copy warm(0);
    const auto memory = [&] {
        return seconds_of([&] {
            for (unsigned i = 0; i < calls; ++i)
                warm(nullptr, 0);
        });
    };
    host_call(state, calls, [&] { call(host); }, {{"bare", [&] { return bare(calls); }}, {"memcpy", memory}});
}

void set_date_time(live_host& host) {
    spi_wrap::MotDateTime now{2026, 3, 10, 10, 30};
    host.server->SetDateTime(now);
}
void set_current_service(live_host& host) {
    spi_wrap::ServElemId service{0x1000, kEcc, 0};
    host.server->SetCurrentService(service, kEnsemble);
}

void add(const std::string& name, bool burst, processors where,
         const std::function<void(benchmark::State&, bool, processors)>& call) {
    benchmark::RegisterBenchmark(("host/" + name + (burst ? "/burst" : "/rest") + name_of(where)).c_str(),
                                 [=](benchmark::State& state) { call(state, burst, where); })
        ->UseManualTime()
        ->Iterations(burst ? 40 : 200);
}

void add_all(bool burst, processors where) {
    for (const auto& [name, size] :
         {std::pair("0B", 0), {"1kB", 1 << 10}, {"64kB", 64 << 10}, {"1MB", 1 << 20}}) {
        add("feed/" + std::string(name), burst, where,
            [size = static_cast<std::size_t>(size)](benchmark::State& state, bool in_burst,
                                                    processors there) {
                feed(state, size, in_burst, there);
            });
    }
    for (const auto& [name, call] :
         {std::pair("set_date_time", &set_date_time), {"set_current_service", &set_current_service}}) {
        add(name, burst, where, [call = call](benchmark::State& state, bool in_burst, processors there) {
            small_call(state, in_burst, there, call);
        });
    }
}

[[maybe_unused]] const bool registered = [] {
    add_all(true, processors::kAnywhere);
    for (const processors where :
         {processors::kAnywhere, processors::kOneProcessor, processors::kOneProcessorBatch})
        add_all(false, where);
    return true;
}();

}  // namespace
