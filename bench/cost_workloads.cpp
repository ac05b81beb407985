// Fixed workloads, to be counted and not timed: dabspi_cost NAME ROUNDS plays one of them ROUNDS times, and
// prints how often it took memory, and how often it took a mutex or notified a thread. The instructions of a
// round are the difference between two numbers of rounds (scripts/check-cost): what comes before and after is
// the same in both.
//
// Each makes its objects beforehand and runs on this thread as far as it can; where threads take part, each
// round waits until all is at rest.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/counted_locks.h"
#include "bench/event_sink.h"
#include "bench/hand_offs.h"
#include "bench/live_core.h"
#include "bench/material.h"
#include "src/event/payloads.h"
#include "src/event_db/spi_event_db.h"
#include "src/logo_db/spi_logo_db.h"
#include "src/parse/pi_body_parser.h"
#include "src/parse/si_body_parser.h"
#include "testkit/bodies.h"
#include "testkit/counted_heap.h"

namespace {

using namespace bench;
using round_of = std::function<void()>;

// A worker that is called directly, and what it sends is dropped.
struct called_worker {
    event_sink sent{20'000};
    explicit called_worker(spi::event_proc& worker) : worker_(worker) { sent.register_queue(&worker); }
    ~called_worker() { sent.unregister_queue(worker_.queue_id(), false); }

 private:
    spi::event_proc& worker_;
};

// 100 programmes, of which no event is made or one each.
round_of parse_programmes(bool tokens, bool events) {
    const auto parser = std::make_shared<spi::event_proc>(spi::QID_PARSE);
    const auto called = std::make_shared<called_worker>(*parser);
    return [parser, called, object = programme_object(0, 100, {tokens, true, events})] {
        spi::PiBodyParser(*parser, kEnsemble).parse(body_of(object));
        called->sent.clear();
    };
}

// 100 services.
round_of parse_services() {
    const auto parser = std::make_shared<spi::event_proc>(spi::QID_PARSE);
    const auto called = std::make_shared<called_worker>(*parser);
    return [parser, called, object = service_object(100, false)] {
        spi::SiBodyParser(*parser).parse(station(0), body_of(object));
        called->sent.clear();
    };
}

struct called_database {
    spi::SpiEventDb db;
    called_worker worker{db};

    called_database() {
        db.cfu_date_time(clock_at(605));
        db.cfu_service(station(0));
    }
    void fill(unsigned services) {
        for (unsigned service = 0; service < services; ++service)
            for (unsigned minute = 0; minute < kMinutesOfTwoDays; minute += 30)
                db.handle_programme(station(service), programme_at(minute));
        worker.sent.clear();
    }
};

// 960 programmes of 10 services, from an empty store to an empty store.
round_of file_programmes() {
    const auto database = std::make_shared<called_database>();
    return [database] {
        database->fill(10);
        database->db.clear_db();
    };
}

// A day of ticks, with 100 services.
round_of ticks() {
    const auto database = std::make_shared<called_database>();
    database->fill(100);
    return [database] {
        for (unsigned minute = 0; minute < 1440; ++minute)
            database->db.cfu_date_time(clock_at(minute));
        database->worker.sent.clear();
    };
}

// 1,000 logos are announced and taken by their images; none is written.
round_of logos() {
    struct called_store {
        spi::SpiLogoDb db;
        called_worker worker{db};
        spi::SiServiceInfo description;
    };
    const auto store = std::make_shared<called_store>();
    for (unsigned i = 0; i < 1000; ++i) {
        spi::SpiLogoInfo logo;
        logo.service = station(i);
        logo.image_format = spi::LOGO_FORMAT_JPEG;
        logo.size_code = spi::LOGO_SIZE_320x240;
        logo.name = "logos/" + std::to_string(i) + "_320x240.jpg";
        store->description.logos.push_back(logo);
    }
    return [store] {
        store->db.handle_meta(station(0), store->description);
        for (const spi::SpiLogoInfo& logo : store->description.logos)
            store->db.handle_bodyimg({7, 2, 1, logo.name}, spi::MotBody(), station(0));
    };
}

// Ten objects with 100 programmes each, from the host to the listener.
round_of end_to_end() {
    const auto core = std::make_shared<live_core>();
    core->set_clock(600);
    core->tune(0x3000);
    core->settle();
    std::vector<spi_builder::bytes> objects;
    for (unsigned i = 0; i < 10; ++i)
        objects.push_back(programme_object(i, 100, {}));
    return [core, objects] {
        core->forget(0x3000);
        for (std::size_t i = 0; i < objects.size(); ++i)
            core->feed(body_of(objects[i]), "object " + std::to_string(i));
        core->settle();
    };
}

// 1,000 ticks, each to everybody.
round_of broadcasts() {
    const auto core = std::make_shared<live_core>();
    core->tune(0);
    core->settle();
    return [core] {
        for (unsigned i = 0; i < 1000; ++i)
            core->set_clock(i % 2);
        core->settle();
    };
}

// 10,000 events from a worker through the router to another.
round_of hand_off_events() {
    return [] { hand_offs(10'000).play(); };
}

const std::map<std::string, std::function<round_of()>>& workloads() {
    static const std::map<std::string, std::function<round_of()>> all = {
        {"parse-programmes", [] { return parse_programmes(false, false); }},
        {"parse-programmes-tokens", [] { return parse_programmes(true, false); }},
        {"parse-programmes-events", [] { return parse_programmes(false, true); }},
        {"parse-services", parse_services},
        {"file-programmes", file_programmes},
        {"ticks", ticks},
        {"logos", logos},
        {"hand-offs", hand_off_events},
        {"end_to_end", end_to_end},
        {"broadcasts", broadcasts},
    };
    return all;
}

}  // namespace

int main(int count, char** words) {
    if (count != 3 || workloads().count(words[1]) == 0) {
        std::fprintf(stderr, "dabspi_cost NAME ROUNDS\n");
        for (const auto& [name, make] : workloads())
            std::fprintf(stderr, "  %s\n", name.c_str());
        return 2;
    }
    const round_of round = workloads().at(words[1])();
    round();  // what is made once is there
    const counted_heap heap;
    const std::uint64_t before = locks_and_notifications();
    for (int left = std::atoi(words[2]); left > 0; --left)
        round();
    std::printf("%llu %llu\n", static_cast<unsigned long long>(heap.blocks()),
                static_cast<unsigned long long>(locks_and_notifications() - before));
}
