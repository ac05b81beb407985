// The end of a server whose queues are all full: the threads of the library are held back, thousands of
// events are queued in front of each, and then the server is destroyed. And broadcasts while objects are
// parsed.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/integration/noting_listener.h"
#include "tests/stress/shuffled_fixture.h"
#include "tests/support/counted_heap.h"

namespace {

// The order in which a server makes its threads, as bits.
enum : std::uint32_t {
    kServer = 1 << 1,
    kRouter = 1 << 2,
    kNotifier = 1 << 3,
    kParser = 1 << 4,
    kLogoStore = 1 << 5,
    kDatabase = 1 << 6,
    kAllWorkers = kServer | kNotifier | kParser | kLogoStore | kDatabase
};
constexpr int kEvents = 3000;  // in front of each thread

// Tells when it is released.
struct marker final : spi::i_evt_base {
    explicit marker(gate& gone) : i_evt_base(spi::EC_SPI), gone_(gone) {}
    ~marker() override { gone_.open(); }

 private:
    gate& gone_;
};

struct FullQueues : testing::Test {
    const watchdog guard{std::chrono::minutes(5)};
    captured_debug debug;
    captured_stderr log;
    temporary_directory logos;
    broadcast sent;

    void SetUp() override {  // what the process keeps for good is made before any count
        const auto server = make_server(logos.path().string());
        sent.feed_all(*server);
    }

    // In front of parser, logo store and database each kEvents of their own, and as many broadcasts to
    // everybody.
    void flood(spi::SpiServer& server) {
        for (int i = 0; i < kEvents; ++i) {
            sent.feed_object(server, static_cast<std::uint16_t>(i % 2), i % 2 == 0 ? sent.si : sent.pi,
                             std::to_string(i));
            sent.feed_logo(server);
            server.ResendNowNext();
            server.SetCurrentService(sent.service, broadcast::kEnsemble);
            spi::MotDateTime now = sent.now;
            now.minute = static_cast<std::uint8_t>(i % 60);
            server.SetDateTime(now);
        }
    }
    // Everything sent so far has gone through the router.
    static void pass_the_router(spi::SpiServer& server) {
        gate passed;
        server.send(std::make_shared<marker>(passed), spi::QID_NONE);
        passed.wait();
    }

    void destroyed_full(bool router_too) {
        const auto listener = std::make_shared<noting_listener>();
        const counted_heap heap;
        std::uint64_t full = 0;
        {
            const thread_faults threads;
            auto server = std::make_unique<spi::SpiServer>(listener, "/temp/dab", logos.path().string());
            sent.tune(*server);
            sent.feed_si(*server);
            sent.feed_pi(*server);
            ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
            held_threads held(kAllWorkers);
            flood(*server);
            pass_the_router(*server);
            held.wait_until_stopped(kAllWorkers);  // with a queue of thousands each
            if (router_too) {
                held.hold(kAllWorkers | kRouter);
                flood(*server);
                held.wait_until_stopped(kRouter);
            }
            full = heap.live();
            gate begun;
            std::thread destroyer([&] {
                begun.open();
                server.reset();
            });
            begun.wait();
            held.hold(0);
            destroyer.join();
        }
        EXPECT_GT(full, std::uint64_t{kEvents} * 5 * 100);  // it was all there, and takes its room
        EXPECT_TRUE(no_thread_of_the_library_lives());
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));  // every payload is released
        EXPECT_EQ(listener.use_count(), 1);                                // nobody is left to call it
        listener->calls.take();
        EXPECT_TRUE(debug.take().empty());
        EXPECT_EQ(heap.live(), 0U);
    }
};

TEST_F(FullQueues, OfEveryWorkerAreReleasedWithTheServer) {
    destroyed_full(false);
}

TEST_F(FullQueues, OfTheRouterTooAreReleasedWithTheServer) {
    destroyed_full(true);
}

// The listener does not return while thousands of notifications wait for it and the server is being
// destroyed.
TEST_F(FullQueues, BehindAListenerThatDoesNotReturnAreReleasedAfterIt) {
    gate may_return;
    gate called;
    const auto listener = std::make_shared<noting_listener>([&](const std::string&) {
        called.open();
        may_return.wait();
    });
    const counted_heap heap;
    {
        auto server = std::make_unique<spi::SpiServer>(listener, "/temp/dab", logos.path().string());
        sent.feed_all(*server);
        called.wait();
        flood(*server);
        pass_the_router(*server);
        std::thread destroyer([&] { server.reset(); });
        may_return.open();
        destroyer.join();
    }
    const std::size_t calls = listener->calls.all().size();
    EXPECT_GE(calls, 1U);
    EXPECT_TRUE(no_thread_of_the_library_lives());
    EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    EXPECT_EQ(listener.use_count(), 1);
    EXPECT_EQ(listener->calls.take().size(), calls);
    EXPECT_EQ(heap.live(), 0U);
}

// Broadcasts go to all workers between thousands of objects.
TEST_F(FullQueues, OfBroadcastsDuringParsingLoseNothing) {
    const auto listener = std::make_shared<noting_listener>();
    spi::SpiServer server(listener, "/temp/dab", logos.path().string());
    sent.tune(server);
    flood(server);
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(2)));
    sent.feed_logo(server);  // uses up what the images that overtook their announcements have left
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(2)));
    std::size_t programmes = 0;
    std::size_t updates = 0;
    std::size_t written = 0;
    for (const std::string& text : listener->texts()) {
        if (text.compare(0, 9, "programme") == 0) ++programmes;
        if (text.compare(0, 3, "now") == 0) ++updates;
        if (text.compare(0, 4, "logo") == 0) ++written;
    }
    EXPECT_EQ(programmes, 2U);  // every object carries the same two
    EXPECT_GE(updates, std::size_t{kEvents});
    EXPECT_EQ(written, std::size_t{kEvents} / 2);  // once for each announcement
    EXPECT_TRUE(debug.take().empty());
}

}  // namespace
