// Reading objects: programmes and services, with and without token tables, with and without the events that
// are made of them.
#include <algorithm>

#include "bench/event_sink.h"
#include "bench/material.h"
#include "bench/paired.h"
#include "bench/references.h"
#include "src/parse/pi_body_parser.h"
#include "src/parse/si_body_parser.h"
#include "testkit/bodies.h"

namespace {

using namespace bench;

// A worker that only lends its name to the parsers.
class sender final : public spi::event_proc {
 public:
    sender() : event_proc(spi::QID_PARSE, deferred{}) {}
    ~sender() override { destroy_proc(); }
};

enum class kind { kProgrammes, kServices };

void parse(benchmark::State& state, kind what, const spi_builder::bytes& object, unsigned items) {
    // Small objects are read many at a time: the clock takes part in what it measures.
    const unsigned objects = std::max(1U, 200'000 / static_cast<unsigned>(object.size()));
    event_sink sink(std::size_t{objects} * items);
    sender worker;
    sink.register_queue(&worker);
    warm_copy copy(object.size());

    const auto figure = [&] {
        std::vector<spi::MotBody> bodies;
        for (unsigned i = 0; i < objects; ++i)
            bodies.push_back(body_of(object));
        const double seconds = seconds_of([&] {
            for (spi::MotBody& body : bodies) {
                if (what == kind::kProgrammes) {
                    spi::PiBodyParser(worker, kEnsemble).parse(std::move(body));
                } else {
                    spi::SiBodyParser(worker).parse(station(0), std::move(body));
                }
            }
        });
        sink.clear();
        return seconds;
    };
    const auto scan = [&] {
        return seconds_of([&] {
            for (unsigned i = 0; i < objects; ++i)
                benchmark::DoNotOptimize(byte_scan(object).sum());
        });
    };
    const auto memory = [&] {
        return seconds_of([&] {
            for (unsigned i = 0; i < objects; ++i)
                copy(object.data(), object.size());
        });
    };
    measure(state, figure, {{"scan", scan}, {"memcpy", memory}},
            {double{1} * items * objects, static_cast<double>(object.size()) * objects});
    sink.unregister_queue(spi::QID_PARSE, false);
}

[[maybe_unused]] const bool registered = [] {
    const auto add = [](const std::string& name, kind what, const spi_builder::bytes& object,
                        unsigned items) {
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
            parse(state, what, object, items);
        })->UseManualTime();
    };
    for (const unsigned items : {10U, 100U, 1000U}) {
        for (const bool tokens : {false, true}) {
            const std::string rest = "/" + std::to_string(items) + (tokens ? "/tokens" : "");
            add("parse/programmes" + rest + "/no_events", kind::kProgrammes,
                programme_object(0, items, {tokens, true, false}), items);
            add("parse/programmes" + rest, kind::kProgrammes,
                programme_object(0, items, {tokens, true, true}), items);
            add("parse/services" + rest, kind::kServices, service_object(items, tokens), items);
        }
    }
    add("parse/lean_programmes/100/no_events", kind::kProgrammes,
        programme_object(0, 100, {false, false, false}), 100);
    add("parse/lean_programmes/100", kind::kProgrammes, programme_object(0, 100, {false, false, true}), 100);
    return true;
}();

}  // namespace
