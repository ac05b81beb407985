// A server whose four workers record: the vocabulary of the tests of its events.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "src/server/spi_server.h"
#include "testkit/bodies.h"
#include "tests/event/watchdog.h"
#include "tests/server/recording_worker.h"

class idle_listener final : public spi::ISpiListener {
 public:
    void ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo&) override {}
    void ProgramNowNextUpdated(spi::SpiProgramInfo&, spi::SpiProgramInfo&) override {}
    void StationLogoReceived(spi::SpiLogoInfo&) override {}
};

struct RecordedServer : testing::Test {
    const watchdog guard;
    std::shared_ptr<idle_listener> listener = std::make_shared<idle_listener>();
    std::unique_ptr<spi::SpiServer> server;
    spi::ServElemId service{0xC221, 0xE1, 3};

    RecordedServer() {
        recording_worker::forget_all();
        start();
        quiet();
        started = recording_worker::delivered().take();
        recording_worker::handled().take();
    }
    void start() { server = std::make_unique<spi::SpiServer>(listener, "/temp/dab", "/mnt/logos/"); }

    static void quiet() { ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1))); }

    // What was delivered since the last call, once nothing is on its way any more.
    std::vector<delivery> deliveries() {
        quiet();
        return recording_worker::delivered().take();
    }
    static std::vector<std::string> briefs(const std::vector<delivery>& all) {
        std::vector<std::string> texts;
        for (const delivery& d : all)
            texts.push_back(brief(d));
        return texts;
    }
    std::vector<std::string> events() { return briefs(deliveries()); }
    // The same, with a broadcast counted once: the order among the workers is the table's.
    std::vector<std::string> sent() {
        std::vector<std::string> texts;
        const void* last = nullptr;
        for (const delivery& d : deliveries()) {
            if (d.destination != spi::QID_ALL) {
                texts.push_back(brief(d));
            } else if (d.payload != last) {
                texts.push_back(std::string("ALL<-") + spi::event_name(d.code));
            }
            last = d.payload;
        }
        return texts;
    }

    void feed(std::uint8_t content_type, const spi_builder::bytes& bytes = {1, 2, 3}) {
        spi::MotBodyMetadata metadata;
        metadata.user_application_type = 7;
        metadata.content_type = content_type;
        metadata.content_name = "a content name that is too long to be kept in place";
        server->FeedMotBody(metadata, body_of(bytes), service);
    }

    std::vector<delivery> started;  // what construction caused
};
