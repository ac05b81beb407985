// End to end: objects are fed, until the listener has received every programme. The reference passes as many
// payloads over the same threads and queues, and does nothing with them. Measured where the scheduler puts
// the threads, and on one processor.
#include <vector>

#include "bench/bare_pipeline.h"
#include "bench/live_core.h"
#include "bench/paired.h"
#include "bench/placement.h"

namespace {

using namespace bench;

void end_to_end(benchmark::State& state, processors where, unsigned objects, unsigned programmes) {
    const placement here(where);
    std::vector<spi_builder::bytes> coded;
    for (unsigned i = 0; i < objects; ++i)
        coded.push_back(programme_object(i, programmes, {}));
    const std::size_t all = std::size_t{objects} * programmes;

    live_core core;
    core.set_clock(600);
    core.tune(0x3000);  // a station without programmes: every call of the listener is a programme
    const auto figure = [&] {
        core.forget(0x3000);
        std::vector<spi::MotBody> bodies;
        for (const spi_builder::bytes& one : coded)
            bodies.push_back(body_of(one));
        core.listener->programmes.expect(all);
        return seconds_of([&] {
            for (unsigned i = 0; i < objects; ++i)
                core.feed(std::move(bodies[i]), "object " + std::to_string(i));
            core.listener->programmes.wait();
        });
    };

    countdown received;
    bare_pipeline bare(programmes, [&] { received.call(); });
    const auto reference = [&] {
        received.expect(all);
        return seconds_of([&] {
            for (unsigned i = 0; i < objects; ++i)
                bare.post(bare_pipeline::kParser);
            received.wait();
        });
    };
    measure(state, figure, {{"bare", reference}}, {static_cast<double>(all)});
}

[[maybe_unused]] const bool registered = [] {
    for (const processors where : {processors::kAnywhere, processors::kOneProcessor}) {
        for (const auto& [objects, programmes] : {std::pair(1000U, 10U), {100U, 100U}, {10U, 1000U}}) {
            const std::string name = "end_to_end/objects_" + std::to_string(objects) + "_programmes_" +
                                     std::to_string(programmes) + name_of(where);
            benchmark::RegisterBenchmark(name.c_str(), [=, objects = objects,
                                                        programmes = programmes](benchmark::State& state) {
                end_to_end(state, where, objects, programmes);
            })->UseManualTime();
        }
    }
    return true;
}();

}  // namespace
