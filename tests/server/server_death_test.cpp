// A server some of whose threads could not be created, or died: its destruction always returns, and leaves
// nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "testkit/temporary_directory.h"
#include "tests/event/allocation_faults.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/server/fed_server.h"
#include "tests/server/live_threads.h"
#include "tests/support/captured_debug.h"
#include "tests/support/captured_stderr.h"

namespace {

// The order in which a server makes its threads.
enum : unsigned { kServer = 1, kRouter, kCallback, kParser, kLogoStore, kDatabase, kThreads = kDatabase };

struct ServerDeath : testing::Test {
    const watchdog guard;
    captured_debug debug;
    captured_stderr log;  // a dead router's log lines
    temporary_directory logos;
    broadcast sent;

    // What the process keeps for good is made before any memory is missing.
    void SetUp() override {
        const thread_faults threads;
        const auto server = make_server(logos.path().string());
        sent.feed_all(*server);
    }
    void TearDown() override {
        EXPECT_TRUE(live_threads_become(0));
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    }
    // How often each line of messages was printed.
    std::size_t printed(int line, const std::string& text) {
        std::size_t count = 0;
        for (const ZebDebugMessage& message : messages) {
            if (message.line != line) continue;
            EXPECT_EQ(message.text, text);
            EXPECT_EQ(message.tag, 1);
            ++count;
        }
        return count;
    }
    std::vector<ZebDebugMessage> messages;

    // A server without the threads whose bits are set in `missing` (bit 0: the first).
    void run_without(unsigned missing) {
        const auto count = static_cast<std::size_t>(__builtin_popcount(missing));
        debug.take();
        {
            const thread_faults threads(
                [missing](unsigned n) { return n <= kThreads && (missing >> (n - 1) & 1) != 0; });
            const auto server = make_server(logos.path().string());
            EXPECT_EQ(threads.attempts(), kThreads);
            EXPECT_TRUE(live_threads_become(kThreads - count));
            sent.feed_all(*server);
        }
        messages = debug.take();
        EXPECT_EQ(messages.size(), count);
        EXPECT_EQ(printed(223, "ZebThread::Start() failed !! [dabspi]\r\n"), count);
        for (const ZebDebugMessage& message : messages)
            EXPECT_EQ(message.function, "Start");
        ASSERT_TRUE(live_threads_become(0));
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    }
    static constexpr unsigned bit(unsigned thread) { return 1U << (thread - 1); }
};

TEST_F(ServerDeath, EachThreadMayBeMissing) {
    for (unsigned thread = kServer; thread <= kThreads; ++thread)
        run_without(bit(thread));
}

TEST_F(ServerDeath, SeveralThreadsMayBeMissing) {
    for (unsigned missing = 1; missing < 1U << kThreads; ++missing) {
        run_without(missing);
    }
}

TEST_F(ServerDeath, WithoutWatchersTheThreadsAreJoinedAllTheSame) {
    {
        const thread_faults threads([](unsigned n) { return n > kThreads; });
        const auto server = make_server(logos.path().string());
        sent.feed_all(*server);
    }
    messages = debug.take();
    EXPECT_EQ(messages.size(), 6U);
    EXPECT_EQ(printed(257, "Error, pthread_create failed.\n"), 6U);
}

// Each worker in turn runs out of memory: at its n-th allocation, once or from then on.
struct ServerWithoutMemory : ServerDeath, testing::WithParamInterface<std::tuple<unsigned, int>> {
    unsigned worker() const { return std::get<0>(GetParam()); }
    allocation_faults::how how() const {
        return std::get<1>(GetParam()) == 0 ? allocation_faults::kOnce : allocation_faults::kFromThenOn;
    }
};

TEST_P(ServerWithoutMemory, WhileItWorksIsDestroyedAllTheSame) {
    int deaths = 0;
    for (long n = 1; n <= 40; ++n) {
        const thread_faults threads;
        auto server = make_server(logos.path().string());
        // A time reaches every worker: then each has made the entry of its thread in the platform's table,
        // which does without memory.
        server->SetDateTime(sent.now);
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        const allocation_faults fault(static_cast<int>(worker()), n, how());
        sent.feed_all(*server);
        server.reset();
        ASSERT_TRUE(live_threads_become(0));
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
        messages = debug.take();
        const std::size_t reports =
            printed(431, "catch exception. thread name [dabspi], what [std::bad_alloc]\n");
        EXPECT_LE(reports, 1U);
        if (how() == allocation_faults::kOnce) {
            // The report itself takes memory in this test: it is complete only where one allocation failed.
            EXPECT_EQ(reports, fault.struck() ? 1U : 0U) << "allocation " << n;
        }
        if (fault.struck()) ++deaths;
        if (!fault.struck()) break;
    }
    if (worker() != kServer) {
        EXPECT_GE(deaths, 1);  // the server's own thread only counts
    }
}

TEST_P(ServerWithoutMemory, WhenItIsDestroyedIsDestroyedAllTheSame) {
    for (long n = 1; n <= 8; ++n) {
        const thread_faults threads;
        auto server = make_server(logos.path().string());
        sent.feed_all(*server);
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        const allocation_faults fault(static_cast<int>(worker()), n, how());
        server.reset();
        ASSERT_TRUE(live_threads_become(0));
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    }
}

std::string fault_name(const testing::TestParamInfo<std::tuple<unsigned, int>>& fault) {
    const char* const workers[] = {"", "Server", "Router", "Notifier", "Parser", "LogoStore", "Database"};
    return workers[std::get<0>(fault.param)] +
           std::string(std::get<1>(fault.param) == 0 ? "Once" : "FromThenOn");
}

INSTANTIATE_TEST_SUITE_P(OfEachThread, ServerWithoutMemory,
                         testing::Combine(testing::Range(unsigned{kServer}, kThreads + 1U),
                                          testing::Values(0, 1)),
                         &fault_name);

TEST_F(ServerDeath, OnAHostWithoutMemoryReturns) {
    for (const auto how : {allocation_faults::kOnce, allocation_faults::kFromThenOn}) {
        for (long n = 1; n <= 12; ++n) {
            auto server = make_server(logos.path().string());
            sent.feed_all(*server);
            const allocation_faults fault(0, n, how);
            server.reset();
        }
    }
}

TEST_F(ServerDeath, WithoutMemoryAnywhereReturns) {
    for (long n = 1; n <= 60; ++n) {
        auto server = make_server(logos.path().string());
        const allocation_faults fault(allocation_faults::kEveryThread, n, allocation_faults::kFromThenOn);
        try {
            sent.feed_all(*server);
        } catch (const std::bad_alloc&) {
        }
        server.reset();
    }
}

}  // namespace
