// What the tests of the programme database speak in. Handlers are called on the test's own thread; what the
// database sends is read as lines: "stored News", "now News, next Talk".
//
// Unless a test says otherwise the service is `station`, and programmes start on 2 March 2026 (`today`).
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "src/event/payloads.h"
#include "src/event_db/spi_event_db.h"
#include "testkit/spi_builder.h"
#include "tests/support/recording_router.h"

namespace event_db {

inline const spi::ServElemId station{0xC221, 0xE1, 0};
inline const spi::ServElemId other_station{0xC222, 0xE1, 0};

inline spi::MotDateTime date_time(const std::string& date, const std::string& time) {
    spi::MotDateTime t;
    t.put_date(date);
    t.put_time(time);
    return t;
}

// A programme that starts at the UTC date and time given; `minutes` long, `lto` half-hours from UTC.
inline spi::PiScheduleProgramme programme(const std::string& date, const std::string& time, int minutes,
                                          const std::string& title, int lto = 0) {
    const spi::MotDateTime start = date_time(date, time);
    spi::PiScheduleProgramme p;
    p.name = title;
    p.time.mjd = spi_builder::mjd(start.year, start.month, start.day);
    p.time.hour = start.hour;
    p.time.minute = start.minute;
    p.time.lto = static_cast<std::int8_t>(lto);
    p.duration = static_cast<std::uint16_t>(minutes * 60);
    return p;
}

inline std::string line_of(const spi::event& e) {
    const std::string wrong = e.destination == spi::QID_CBHDL ? "" : "to the wrong queue: ";
    const auto title = [](const spi::PiScheduleProgramme& p) { return p.name.empty() ? "-" : p.name; };
    switch (e.code()) {
        case spi::EC_EVTINFO: {
            const auto& stored = payload_of<spi::pi_programme_event>(e);
            const bool own = stored.service == station;
            return wrong + "stored " + title(stored.programme) + (own ? "" : " for another service");
        }
        case spi::EC_NOWNEXT: {
            const auto& update = payload_of<spi::nownext_update_event>(e);
            return wrong + "now " + title(update.now) + ", next " + title(update.next);
        }
        default: return wrong + spi::event_name(e.code());
    }
}

class EventDb : public ::testing::Test {
 protected:
    static constexpr const char* yesterday = "20260301";
    static constexpr const char* today = "20260302";
    static constexpr const char* tomorrow = "20260303";
    static constexpr const char* day_after = "20260304";

    EventDb() { router.register_queue(&db); }

    int at(const std::string& date, const std::string& time) {
        return db.cfu_date_time(date_time(date, time));
    }
    int at(const std::string& time) { return at(today, time); }
    int listen_to(const spi::ServElemId& service) { return db.cfu_service(service); }

    int file(const spi::PiScheduleProgramme& p, const spi::ServElemId& service = station) {
        return db.handle_programme(service, p);
    }
    // A programme of `station`, today by default, without a local time offset.
    int on_air(const std::string& time, int minutes, const std::string& title) {
        return on_air(today, time, minutes, title);
    }
    int on_air(const std::string& date, const std::string& time, int minutes, const std::string& title) {
        return file(programme(date, time, minutes, title));
    }

    void handle(std::shared_ptr<spi::i_evt_base> payload) {
        spi::event e(spi::QID_EVTDB, std::move(payload));
        db.process_event(e);
    }

    // What was sent since it was last asked for.
    std::vector<std::string> sent() {
        std::vector<std::string> lines;
        for (const spi::event& e : router.take())
            lines.push_back(line_of(e));
        return lines;
    }
    void forget_sent() { router.take(); }

    void expect_sent(const std::vector<std::string>& lines) { EXPECT_EQ(sent(), lines); }
    void expect_nothing_sent() { expect_sent({}); }
    void expect_now_next(const std::string& now, const std::string& next) {
        expect_sent({"now " + now + ", next " + next});
    }
    // Now and next as they stand, sent or not.
    std::string standing() {
        forget_sent();
        handle(std::make_shared<spi::resend_nownext_event>());
        const std::vector<std::string> lines = sent();
        return lines.size() == 1 ? lines.front() : "not one line";
    }

    recording_router router;
    spi::SpiEventDb db;
};

}  // namespace event_db
