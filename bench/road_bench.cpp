// The whole road: objects are fed, until the listener has heard every programme. The ceiling passes as many
// payloads over the same threads and queues, and does nothing with them. Measured where the scheduler puts
// the threads, and on one processor.
#include <vector>

#include "bench/bare_pipeline.h"
#include "bench/live_core.h"
#include "bench/paired.h"
#include "bench/placement.h"

namespace {

using namespace bench;

void road(benchmark::State& state, room where, unsigned objects, unsigned programmes) {
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

    countdown heard;
    bare_pipeline bare(programmes, [&] { heard.call(); });
    const auto ceiling = [&] {
        heard.expect(all);
        return seconds_of([&] {
            for (unsigned i = 0; i < objects; ++i)
                bare.post(bare_pipeline::kParser);
            heard.wait();
        });
    };
    measure(state, figure, {{"bare", ceiling}}, {static_cast<double>(all)});
}

[[maybe_unused]] const bool registered = [] {
    for (const room where : {room::kAnywhere, room::kOneProcessor}) {
        for (const auto& [objects, programmes] : {std::pair(1000U, 10U), {100U, 100U}, {10U, 1000U}}) {
            const std::string name = "road/objects_" + std::to_string(objects) + "_programmes_" +
                                     std::to_string(programmes) + name_of(where);
            benchmark::RegisterBenchmark(name.c_str(), [=, objects = objects,
                                                        programmes = programmes](benchmark::State& state) {
                road(state, where, objects, programmes);
            })->UseManualTime();
        }
    }
    return true;
}();

}  // namespace
