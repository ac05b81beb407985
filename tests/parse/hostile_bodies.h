// Bodies made to cost, and what reading one takes and gives, counted.
#pragma once

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>

#include "src/event/payloads.h"
#include "src/parse/body/pi_body_parser.h"
#include "src/parse/body/si_body_parser.h"
#include "src/parse/reader/spi_tags.h"
#include "src/parse/worker/spi_parser.h"
#include "testkit/overlapping_elements.h"
#include "tests/parse/reading.h"
#include "tests/support/recording_router.h"

namespace hostile {

using namespace spi_builder;

// Counts what is sent, and lets it go unless it is to be kept: then it lies there as in the queue of a worker
// that does not keep up.
class counting_router final : public spi::event_backend {
 public:
    counting_router() : event_backend(nullptr) { begin(*this); }
    ~counting_router() override { destroy_proc(); }

    int post_event(spi::event e) override {
        ++events;
        if (e.code() == spi::EC_EVTINFO) text += payload_of<spi::pi_programme_event>(e).programme.name.size();
        if (e.code() == spi::EC_SERVINFO) {
            const spi::SiServiceInfo& info = payload_of<spi::si_service_event>(e).info;
            text += info.name.size();
            logos += info.logos.size();
            for (const spi::SpiLogoInfo& logo : info.logos)
                text += logo.name.size();
        }
        if (keep) kept.push_back(std::move(e));
        return 0;
    }

    std::uint64_t events = 0;
    std::uint64_t logos = 0;
    std::uint64_t text = 0;  // bytes
    bool keep = false;
    std::list<spi::event> kept;
};

// What reading one body took and gave.
struct work {
    std::uint64_t scopes;
    std::uint64_t string_bytes;
    std::uint64_t events;
    std::uint64_t logos;
    std::uint64_t text;
    bool exhausted;  // its budget ran out, and it counted as ended
};

class HostileBodies : public ::testing::Test {
 protected:
    HostileBodies() { router.register_queue(&parser); }

    // The walk of a body with the buffer in sight.
    work of_pi(const bytes& body) {
        spi::PiBodyParser pi(parser, 0);
        return count(body, [&](spi::spi_parseable& e) {
            if (e.tag == spi::tag::epg) pi.parse_epg(e);
        });
    }
    work of_si(const bytes& body) {
        spi::SiBodyParser si(parser);
        return count(body, [&](spi::spi_parseable& e) {
            if (e.tag == spi::tag::service_information) si.parse_si(e);
        });
    }
    template <class Handle>
    work count(const bytes& body, Handle handle) {
        reset();
        spi::ReadBuffer buffer = buffer_of(body);
        const std::uint64_t scopes = buffer.scopes_left();
        const std::uint64_t string_bytes = buffer.string_bytes_left();
        while (buffer.in_body()) {
            spi::spi_parseable element(buffer);
            handle(element);
        }
        return {scopes - buffer.scopes_left(),
                string_bytes - buffer.string_bytes_left(),
                router.events,
                router.logos,
                router.text,
                !body.empty() && buffer.size == 0};
    }

    // The same through the worker: what it sends.
    std::uint64_t events_of(std::uint16_t subtype, const bytes& body) {
        reset();
        spi::MotBodyMetadata metadata;
        metadata.content_subtype = subtype;
        metadata.content_name = std::to_string(++fed_);
        spi::event e(spi::QID_PARSE,
                     std::make_shared<spi::spi_body_event>(metadata, body_of(body), service_of(1, 2)));
        parser.process_event(e);
        return router.events;
    }
    void reset() { router.events = router.logos = router.text = 0; }

    counting_router router;
    spi::SpiParser parser;

 private:
    unsigned fed_ = 0;
};

// Names the service, on ensemble 0, for every programme behind it.
inline bytes service_named_first() {
    return elem(tag::epg, {elem(tag::default_content_id, content_id(0xE1, 0, 0xC221))});
}

inline bytes nested_schedules(std::size_t count) {
    return spi_builder::nested_schedules(count, service_named_first());
}

inline void expect_within_budget(const work& done, std::size_t size) {
    EXPECT_LE(done.scopes, 2 * size + 4096);
    EXPECT_LE(done.string_bytes, 4 * size + 65536);
    EXPECT_LE(done.events, done.scopes);
    EXPECT_LE(done.logos, done.scopes);
    EXPECT_LE(done.text, done.string_bytes);
}

}  // namespace hostile
