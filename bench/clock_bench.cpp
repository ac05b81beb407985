// The clock and the change of service, with many services whose programmes of two days are stored: what these
// cost the database, and a tick for the whole library. The reference of the database's figures is the same
// with ten services, since services that are not listened to should cost nothing.
#include <memory>

#include "bench/bare_pipeline.h"
#include "bench/event_sink.h"
#include "bench/live_core.h"
#include "bench/paired.h"
#include "bench/placement.h"
#include "src/event_db/spi_event_db.h"

namespace {

using namespace bench;

constexpr unsigned kTicks = 1439;

// A database whose handlers are called here.
struct database {
    event_sink sent{200'000};
    spi::SpiEventDb db;

    explicit database(unsigned services) {
        sent.register_queue(&db);
        db.cfu_date_time(clock_at(0));
        db.cfu_service(station(0));
        fill(services);
        sent.clear();
    }
    ~database() { sent.unregister_queue(spi::QID_EVTDB, false); }

    void fill(unsigned services) {
        for (unsigned service = 0; service < services; ++service) {
            for (unsigned minute = 0; minute < kMinutesOfTwoDays; minute += 30)
                db.handle_programme(station(service), programme_at(minute));
            sent.clear();
        }
    }
    double ticks() {
        const double seconds = seconds_of([&] {
            for (unsigned minute = 1; minute <= kTicks; ++minute)
                db.cfu_date_time(clock_at(minute % 1440));
        });
        sent.clear();
        return seconds;
    }
    double changes() {
        const double seconds = seconds_of([&] {
            for (unsigned i = 0; i < 1000; ++i)
                db.cfu_service(station(i % 2));
        });
        sent.clear();
        return seconds;
    }
};

void tick_database(benchmark::State& state) {
    database many(static_cast<unsigned>(state.range(0)));
    database few(10);
    measure(state, [&] { return many.ticks(); }, {{"10_services", [&] { return few.ticks(); }}}, {kTicks});
}

void change_of_service(benchmark::State& state) {
    database many(static_cast<unsigned>(state.range(0)));
    database few(10);
    many.db.cfu_date_time(clock_at(605));
    few.db.cfu_date_time(clock_at(605));
    measure(state, [&] { return many.changes(); }, {{"10_services", [&] { return few.changes(); }}}, {1000});
}

// The change of date drops a day of each service: that grows with the services, by design. Per programme
// dropped.
void midnight(benchmark::State& state) {
    const auto services = static_cast<unsigned>(state.range(0));
    const double dropped = services * 48.0;
    const auto figure = [&] {
        database db(services);
        spi::MotDateTime tomorrow = clock_at(0);
        ++tomorrow.day;
        return seconds_of([&] { db.db.cfu_date_time(tomorrow); });
    };
    const auto reference = [&] {
        std::map<std::uint16_t, spi::PiScheduleProgramme> all;
        for (unsigned i = 0; i < services * 48; ++i)
            all.emplace_hint(all.end(), static_cast<std::uint16_t>(i), programme_at(i % 1440));
        return seconds_of([&] { all.clear(); }) * dropped /
               static_cast<double>(std::min(services * 48U, 65536U));
    };
    measure(state, figure, {{"bare", reference}}, {dropped});
}

// A server with programmes of some services, of which one is listened to.
struct full_server {
    live_core core;
    unsigned tick = 0;

    explicit full_server(unsigned services) {
        core.set_clock(0);
        core.tune(0);
        for (unsigned i = 0; i < services; ++i)
            core.feed(body_of(programme_object(i, 96, {})), "object " + std::to_string(i));
    }
    // Ticks at which nothing changes, until all is at rest.
    double ticks(unsigned count) {
        live_core::settle();
        return seconds_of([&] {
            for (unsigned i = 0; i < count; ++i)
                core.set_clock(1 + ++tick % 25);
            live_core::settle();
        });
    }
};

// Ticks through the whole server; references are the same with ten services, and the bare broadcast. Where
// the scheduler puts the threads, and on one processor.
void tick_server(benchmark::State& state, processors where, unsigned services) {
    constexpr unsigned kCount = 50;
    constexpr unsigned kStages = 5;
    const placement here(where);
    full_server many(services);
    full_server few(10);
    countdown passed;
    bare_pipeline bare(0, [&] { passed.call(); });
    const auto reference = [&] {
        passed.expect(std::size_t{kCount} * kStages);
        return seconds_of([&] {
            for (unsigned i = 0; i < kCount; ++i)
                bare.post(bare_pipeline::kTick);
            passed.wait();
        });
    };
    measure(state, [&] { return many.ticks(kCount); },
            {{"bare", reference}, {"10_services", [&] { return few.ticks(kCount); }}}, {kCount});
}

BENCHMARK(tick_database)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime();
BENCHMARK(change_of_service)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime();
BENCHMARK(midnight)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime()->Iterations(5);

[[maybe_unused]] const bool registered = [] {
    for (const processors where : {processors::kAnywhere, processors::kOneProcessor}) {
        for (const unsigned services : {10, 100, 1000}) {
            const std::string name = "tick_server/" + std::to_string(services) + name_of(where);
            benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
                tick_server(state, where, services);
            })->UseManualTime();
        }
    }
    return true;
}();

}  // namespace
