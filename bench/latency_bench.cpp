// From a host call into a library at rest until the listener is called: every thread on the way is asleep and
// has to be woken. The reference is a bare chain of the same threads. Each is measured where the scheduler
// puts the threads, and on one processor.
#include <time.h>

#include "bench/bare_pipeline.h"
#include "bench/live_core.h"
#include "bench/paired.h"
#include "bench/placement.h"

namespace {

using namespace bench;
using clock = std::chrono::steady_clock;

// Lets every thread fall asleep.
void rest() {
    const timespec length{0, 100'000};
    nanosleep(&length, nullptr);
}

double seconds(clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

void compare(benchmark::State& state, countdown& received, const std::function<void()>& prepare,
             const std::function<void()>& call, int bare_destination) {
    const auto figure = [&] {
        prepare();
        live_core::settle();
        received.expect(1);
        rest();
        const auto begin = clock::now();
        call();
        return seconds(received.wait() - begin);
    };
    countdown bare_received;
    bare_pipeline bare(1, [&] { bare_received.call(); });
    const auto reference = [&] {
        bare_received.expect(1);
        rest();
        const auto begin = clock::now();
        bare.post(bare_destination);
        return seconds(bare_received.wait() - begin);
    };
    measure(state, figure, {{"bare", reference}}, {1, 0, true});
}

// Host, router, database, router, notifier.
void latency_resend(benchmark::State& state, processors where) {
    const placement here(where);
    live_core core;
    compare(
        state, core.listener->updates, [] {}, [&] { core.server.ResendNowNext(); }, bare_pipeline::kDatabase);
}

// Host, router, parser, router, database, router, notifier: an object with one new programme.
void latency_object(benchmark::State& state, processors where) {
    const placement here(where);
    live_core core;
    core.set_clock(600);
    core.tune(0x3000);
    live_core::settle();
    const spi_builder::bytes object = programme_object(0, 1, {});
    spi::MotBody body;
    compare(
        state, core.listener->programmes,
        [&] {
            core.forget(0x3000);
            body = body_of(object);
        },
        [&] { core.feed(std::move(body), "object"); }, bare_pipeline::kParser);
}

// A tick of the clock at which the programme changes: to everybody, and from the database to the notifier.
void latency_tick(benchmark::State& state, processors where) {
    const placement here(where);
    live_core core;
    core.set_clock(0);
    core.tune(0);
    core.feed(body_of(programme_object(0, 96, {})), "object");
    live_core::settle();
    unsigned minute = 0;
    compare(
        state, core.listener->updates, [] {},
        [&] {
            minute = (minute + 30) % 1440;
            core.set_clock(minute + 1);
        },
        bare_pipeline::kEverybody);
}

[[maybe_unused]] const bool registered = [] {
    for (const processors where :
         {processors::kAnywhere, processors::kOneProcessor, processors::kOneProcessorBatch}) {
        for (const auto& [name, latency] :
             {std::pair("resend", &latency_resend), {"object", &latency_object}, {"tick", &latency_tick}}) {
            benchmark::RegisterBenchmark(
                ("latency_" + std::string(name) + name_of(where)).c_str(),
                [latency = latency, where](benchmark::State& state) { latency(state, where); })
                ->UseManualTime()
                ->Iterations(400);
        }
    }
    return true;
}();

}  // namespace
