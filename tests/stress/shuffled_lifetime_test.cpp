// Servers that are made and destroyed while the timing of their threads is shuffled.
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/integration/noting_listener.h"
#include "tests/stress/shuffled_fixture.h"

namespace {

struct ShuffledLifetime : shuffled_rounds {
    broadcast sent;
};

TEST_F(ShuffledLifetime, DestroyedAtOnceEnds) {
    play(60, [this](unsigned) { make_server(logos.path().string()); });
    EXPECT_EQ(log.text(), "");
}

TEST_F(ShuffledLifetime, FedAndDestroyedEnds) {
    play(48, [this](unsigned) {
        const auto server = make_server(logos.path().string());
        sent.feed_all(*server);
    });
}

// The last call before the end, each in turn.
TEST_F(ShuffledLifetime, DestroyedRightAfterAnyCallEnds) {
    play(48, [this](unsigned round) {
        const auto listener = std::make_shared<noting_listener>();
        {
            spi::SpiServer server(listener, "/temp/dab", logos.path().string());
            sent.tune(server);
            switch (round % 6) {
                case 0: server.SetDateTime(sent.now); break;
                case 1: server.SetCurrentService(sent.service, 0x1001); break;
                case 2: server.SetCurrentService(sent.service, 0); break;
                case 3: server.ResendNowNext(); break;
                case 4: sent.feed_pi(server); break;
                default: sent.feed_logo(server); break;
            }
        }
        EXPECT_EQ(listener.use_count(), 1);  // nobody is left to call it
    });
}

TEST_F(ShuffledLifetime, WithAThrowingListenerEnds) {
    play(40, [this](unsigned round) {
        const auto listener = std::make_shared<noting_listener>(
            [](const std::string&) { throw std::runtime_error("a listener's"); });
        {
            spi::SpiServer server(listener, "/temp/dab", logos.path().string());
            sent.feed_all(server);
            // Dead already, or dying while the server ends.
            if (round % 2 == 0) listener->calls.wait_for(1);
        }
        EXPECT_LE(listener->calls.all().size(), 1U);
        EXPECT_EQ(listener.use_count(), 1);
        for (const ZebDebugMessage& message : debug.take())
            EXPECT_TRUE(message.line == 431 || message.line == 432) << message.text;
    });
}

// Each set of missing threads in turn, all six among them.
TEST_F(ShuffledLifetime, WithoutSomeOfItsThreadsEnds) {
    play(
        63,
        [this](unsigned) {
            const auto server = make_server(logos.path().string());
            sent.feed_all(*server);
        },
        [](unsigned round, unsigned thread) {
            const unsigned missing = round % 63 + 1;
            return thread <= 6 && (missing >> (thread - 1) & 1) != 0;
        });
}

// On three threads at the same time, each with a listener of its own.
TEST_F(ShuffledLifetime, OfSeveralServersAtTheSameTimeDoesNotMix) {
    play(12, [this](unsigned) {
        std::vector<std::thread> hosts;
        for (std::uint32_t host = 0; host < 3; ++host)
            hosts.emplace_back([this, host] {
                broadcast own;
                own.service.sid += host;
                const auto listener = std::make_shared<noting_listener>();
                for (int turn = 0; turn < 2; ++turn) {
                    spi::SpiServer server(listener, "/temp/dab", logos.path().string());
                    own.tune(server);
                    own.pi = spi_builder::pi_object(
                        {{spi_builder::service_id{0xE1, broadcast::kEnsemble, own.service.sid, 0},
                          spi_builder::utc_time{spi_builder::mjd(2026, 3, 2), 0, 0},
                          spi_builder::utc_time{spi_builder::mjd(2026, 3, 3), 0, 0},
                          {{{"", "Own " + std::to_string(host), ""},
                            {spi_builder::mjd(2026, 3, 2), 10, 0},
                            3600}}}});
                    own.feed_pi(server);
                    // In the second turn the listener gets everything, in the first perhaps not.
                    if (turn == 1) listener->calls.wait_for(1);
                }
                EXPECT_EQ(listener.use_count(), 1);
                const std::string name = "Own " + std::to_string(host);
                for (const std::string& text : listener->texts())
                    EXPECT_NE(text.find(name), std::string::npos) << text;
            });
        for (std::thread& host : hosts)
            host.join();
    });
}

}  // namespace
