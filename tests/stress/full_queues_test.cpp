// The end of a server whose queues are all full: the threads of the library are held back, thousands of
// events are queued in front of each, and then the server is destroyed. And broadcasts while objects are
// parsed.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "src/event/payloads.h"
#include "testkit/counted_heap.h"
#include "tests/integration/noting_listener.h"
#include "tests/server/ending_server.h"
#include "tests/server/queue_marker.h"
#include "tests/stress/shuffled_fixture.h"

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
    // What such a flood takes at least, one turn being in the hands of the held threads: five payloads, with
    // two objects, and their places in the queues, of which a broadcast has `copies`.
    std::int64_t least_heap(std::size_t copies) const {
        const std::size_t turn = sizeof(spi::spi_body_event) + std::min(sent.si.size(), sent.pi.size()) +
                                 sizeof(spi::image_body_event) + sent.png.size() +
                                 sizeof(spi::resend_nownext_event) + sizeof(spi::set_service_event) +
                                 sizeof(spi::date_time_event) + (4 + copies) * sizeof(spi::event);
        return static_cast<std::int64_t>((kEvents - 1) * turn);
    }

    void destroyed_full(bool router_too) {
        const auto listener = std::make_shared<noting_listener>();
        const counted_heap heap;
        std::int64_t full = 0;
        {
            const thread_faults threads;
            auto server = std::make_unique<spi::SpiServer>(listener, "/temp/dab", logos.path().string());
            sent.tune(*server);
            sent.feed_si(*server);
            sent.feed_pi(*server);
            ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
            held_threads held(kAllWorkers);
            flood(*server);
            wait_until_passed(*server, spi::QID_NONE);
            held.wait_until_stopped(kAllWorkers);  // with a queue of thousands each
            if (router_too) {
                held.hold(kAllWorkers | kRouter);
                flood(*server);
                held.wait_until_stopped(kRouter);
            }
            full = heap.live();
            counted_payloads::forget();
            spi::SpiServer& ending = *server;
            std::thread destroyer([&] { server.reset(); });
            EXPECT_TRUE(counted_payloads::wait_until(&all_are_asked_and_none_answers));
            if (!router_too) wait_until_passed(ending, spi::QID_NONE);  // the destructor waits meanwhile
            EXPECT_TRUE(all_are_asked_and_none_answers());
            held.hold(0);
            destroyer.join();
        }
        listener->calls.take();
        const bool silent = debug.take().empty();
        const std::int64_t left = heap.live();  // before anything fails: the text of a failure is on the heap
        EXPECT_EQ(left, 0);
        EXPECT_GT(full, least_heap(5) + (router_too ? least_heap(1) : 0));  // it was all there
        EXPECT_TRUE(no_thread_of_the_library_lives());
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));  // every payload is released
        EXPECT_EQ(listener.use_count(), 1);                                // nobody is left to call it
        EXPECT_TRUE(silent);
    }
};

TEST_F(FullQueues, OfEveryWorkerAreReleasedWithTheServer) {
    destroyed_full(false);
}

TEST_F(FullQueues, OfTheRouterTooAreReleasedWithTheServer) {
    destroyed_full(true);
}

// The listener does not return while thousands of notifications wait for it and the server is being
// destroyed: the destructor waits, and what was queued before its request is delivered.
TEST_F(FullQueues, BehindAListenerThatDoesNotReturnAreReleasedAfterIt) {
    gate may_return;
    gate called;
    const auto listener = std::make_shared<noting_listener>([&](const std::string&) {
        called.open();
        may_return.wait();
    });
    const counted_heap heap;
    std::size_t notifications = 0;
    {
        auto server = std::make_unique<spi::SpiServer>(listener, "/temp/dab", logos.path().string());
        sent.feed_all(*server);
        called.wait();
        flood(*server);
        wait_until_only_the_notifier_is_busy(*server);
        for (const spi::event_code code : {spi::EC_EVTINFO, spi::EC_NOWNEXT, spi::EC_LOGOCB})
            notifications += static_cast<std::size_t>(counted_payloads::alive(code));
        counted_payloads::forget();
        std::atomic<bool> ended{false};
        std::thread destroyer([&] {
            server.reset();
            ended = true;
        });
        EXPECT_TRUE(counted_payloads::wait_until(&one_worker_alone_has_not_answered));
        EXPECT_FALSE(ended);
        EXPECT_EQ(listener->calls.all().size(), 1U);
        may_return.open();
        destroyer.join();
    }
    const std::size_t received = listener->calls.take().size();
    const std::int64_t left = heap.live();
    EXPECT_EQ(left, 0);
    EXPECT_EQ(received, notifications);
    EXPECT_GT(notifications, std::size_t{kEvents});
    EXPECT_TRUE(no_thread_of_the_library_lives());
    EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    EXPECT_EQ(listener.use_count(), 1);
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
