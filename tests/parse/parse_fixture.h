// The parser worker between a test that feeds it objects and a router that keeps what it sends. The handler
// runs on the test's own thread; the worker's thread stays idle.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "src/event/payloads.h"
#include "src/parse/worker/spi_parser.h"
#include "testkit/spi_builder_objects.h"
#include "tests/parse/reading.h"
#include "tests/support/recording_router.h"

struct sent_programme {
    spi::ServElemId service;
    spi::PiScheduleProgramme programme;
};

struct sent_service {
    spi::ServElemId received_with;
    spi::SiServiceInfo info;
};

class parse_fixture : public ::testing::Test {
 protected:
    static constexpr std::uint16_t kServiceInformation = 0;
    static constexpr std::uint16_t kProgrammeInformation = 1;
    static constexpr std::uint16_t kEnsemble = 0xC185;

    parse_fixture() { router.register_queue(&parser); }

    static spi::event event_of(std::shared_ptr<spi::i_evt_base> payload) {
        return spi::event(spi::QID_PARSE, std::move(payload));
    }
    void handle(std::shared_ptr<spi::i_evt_base> payload) {
        spi::event e = event_of(std::move(payload));
        parser.process_event(e);
    }

    void feed(std::uint16_t subtype, const std::string& name, const spi_builder::bytes& object,
              const spi::ServElemId& received_with = service_of(0xE1, 0xD001)) {
        handle(std::make_shared<spi::spi_body_event>(metadata_of(subtype, name), body_of(object),
                                                     received_with));
    }
    // Under a name of its own, so that it is never taken for one that was parsed before.
    void feed_si(const spi_builder::bytes& object,
                 const spi::ServElemId& received_with = service_of(0xE1, 0xD001)) {
        feed(kServiceInformation, fresh_name(), object, received_with);
    }
    void feed_pi(const spi_builder::bytes& object) { feed(kProgrammeInformation, fresh_name(), object); }

    void set_ensemble(std::uint16_t eid) { handle(std::make_shared<spi::set_ensemble_event>(eid)); }
    void set_clock(const spi::MotDateTime& now) { handle(std::make_shared<spi::date_time_event>(now)); }
    void clear() { handle(std::make_shared<spi::db_clear_event>()); }

    // What was sent since the last look: programmes to the programme database and nothing else.
    std::vector<sent_programme> take_programmes() {
        std::vector<sent_programme> out;
        for (const spi::event& e : router.take()) {
            EXPECT_EQ(e.destination, spi::QID_EVTDB);
            EXPECT_EQ(e.code(), spi::EC_EVTINFO);
            const auto& sent = payload_of<spi::pi_programme_event>(e);
            out.push_back({sent.service, sent.programme});
        }
        return out;
    }
    // Services to the logo store and nothing else.
    std::vector<sent_service> take_services() {
        std::vector<sent_service> out;
        for (const spi::event& e : router.take()) {
            EXPECT_EQ(e.destination, spi::QID_LOGODB);
            EXPECT_EQ(e.code(), spi::EC_SERVINFO);
            const auto& sent = payload_of<spi::si_service_event>(e);
            out.push_back({sent.service, sent.info});
        }
        return out;
    }

    // The names of the programmes that an object yields.
    std::vector<std::string> names_in_pi(const spi_builder::bytes& object) {
        feed_pi(object);
        std::vector<std::string> out;
        for (const sent_programme& sent : take_programmes())
            out.push_back(sent.programme.name);
        return out;
    }
    std::vector<std::string> names_in_si(const spi_builder::bytes& object) {
        feed_si(object);
        std::vector<std::string> out;
        for (const sent_service& sent : take_services())
            out.push_back(sent.info.name);
        return out;
    }

    recording_router router;
    spi::SpiParser parser;

 private:
    static spi::MotBodyMetadata metadata_of(std::uint16_t subtype, const std::string& name) {
        spi::MotBodyMetadata metadata;
        metadata.user_application_type = 7;
        metadata.content_type = 7;
        metadata.content_subtype = subtype;
        metadata.content_name = name;
        return metadata;
    }
    std::string fresh_name() { return "object " + std::to_string(++fed_); }

    unsigned fed_ = 0;
};
