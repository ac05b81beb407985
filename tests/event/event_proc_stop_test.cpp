// How a worker stops: on request, with events left, before it was complete, or never started.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "src/event/event_proc.h"
#include "src/event/quiet.h"
#include "testkit/journal.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"

namespace {

using namespace spi;
using testing::ElementsAre;

TEST(StoppedWorker, LeavesQueuedEventsUnhandledAndReleasesThemWhenDestroyed) {
    const watchdog guard;
    thread_faults threads;
    journal<std::string> calls;
    gate may_return;
    // Stopping makes a thread that watches the wait: by then the worker has been told to stop.
    threads.on_create([&](unsigned n) {
        if (n == 2) may_return.open();
    });
    auto worker = std::make_unique<scripted_worker>(
        QID_PARSE,
        [&](event& e) {
            calls.add(std::to_string(number_of(e)));
            may_return.wait();
        },
        nullptr, [&] { calls.add("post"); });
    worker->post(numbered(1), QID_PARSE);
    calls.wait_for(1);
    auto left = numbered(2);
    const std::weak_ptr<i_evt_base> unhandled = left;
    worker->post(std::move(left), QID_PARSE);
    worker->post(numbered(3), QID_PARSE);
    worker->destroy_proc();
    EXPECT_THAT(calls.all(), ElementsAre("1", "post"));
    EXPECT_FALSE(unhandled.expired());
    worker.reset();
    EXPECT_TRUE(unhandled.expired());
    EXPECT_THAT(calls.all(), ElementsAre("1", "post"));
}

TEST(StoppedWorker, BlockedOnAnEmptyQueueItLeavesAndCallsPost) {
    const watchdog guard;
    for (int round = 0; round < 300; ++round) {
        journal<std::string> calls;
        scripted_worker worker(
            QID_PARSE, {}, [&] { calls.add("pre"); }, [&] { calls.add("post"); });
        if (round % 2 == 0) calls.wait_for(1);
        worker.destroy_proc();
        // Stopped so early that the loop was never entered, it still runs both hooks: its gate was open.
        EXPECT_THAT(calls.all(), ElementsAre("pre", "post"));
    }
}

TEST(StoppedWorker, SecondStopDoesNothing) {
    const watchdog guard;
    const captured_debug debug;
    const thread_faults threads;
    journal<int> post;
    scripted_worker worker(QID_PARSE, {}, nullptr, [&] { post.add(1); });
    worker.destroy_proc();
    EXPECT_EQ(threads.attempts(), 2U);  // the worker's, and the one that watched the wait
    worker.destroy_proc();
    EXPECT_EQ(threads.attempts(), 2U);
    EXPECT_EQ(post.all().size(), 1U);
}

TEST(StoppedWorker, StillTakesEventsAndHandlesNone) {
    const watchdog guard;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    worker.destroy_proc();
    EXPECT_EQ(worker.post(numbered(1), QID_PARSE), 0);
    EXPECT_TRUE(handled.all().empty());
}

TEST(StoppedWorker, IsStoppedByItsBaseDestructorToo) {
    const watchdog guard;
    for (int round = 0; round < 300; ++round) {
        event_proc bare(QID_PARSE);
        bare.post(numbered(1), QID_PARSE);
    }
    EXPECT_TRUE(wait_until_quiet(std::chrono::milliseconds(0)));
}

// A class whose constructor never comes to its end.
class incomplete_worker final : public event_proc {
 public:
    explicit incomplete_worker(std::atomic<int>& calls)
        : event_proc(QID_PARSE, worker_duties{}), calls_(calls) {}
    ~incomplete_worker() override { destroy_proc(); }
    using event_proc::post;
    void pre() override { ++calls_; }
    void post() override { ++calls_; }
    void process_event(event&) override { ++calls_; }

 private:
    std::atomic<int>& calls_;
};

TEST(StoppedWorker, BeforeItWasCompleteItRunsNeitherHookNorHandler) {
    const watchdog guard;
    std::atomic<int> calls{0};
    for (int round = 0; round < 300; ++round) {
        incomplete_worker worker(calls);
        worker.post(numbered(1), QID_PARSE);
        worker.post(numbered(2), QID_PARSE);
        std::this_thread::yield();
    }
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(wait_until_quiet(std::chrono::milliseconds(0)));
}

// Opens the gate in its own time.
class late_worker final : public event_proc {
 public:
    explicit late_worker(journal<std::string>& calls)
        : event_proc(QID_PARSE, worker_duties{}), calls_(calls) {}
    ~late_worker() override { destroy_proc(); }
    using event_proc::post;
    void open() { begin(*this); }
    void pre() override { calls_.add("pre"); }
    void process_event(event&) override { calls_.add("event"); }

 private:
    journal<std::string>& calls_;
};

TEST(DeferredWorker, WaitsForBeginAndThenHandlesWhatCameBefore) {
    const watchdog guard;
    for (int round = 0; round < 300; ++round) {
        journal<std::string> calls;
        late_worker worker(calls);
        worker.post(numbered(1), QID_PARSE);
        std::this_thread::yield();
        calls.add("begin");
        worker.open();
        ASSERT_THAT(calls.wait_for(3), ElementsAre("begin", "pre", "event"));
    }
}

TEST(UnstartedWorker, ReportsItAndStopsAtOnce) {
    const watchdog guard;
    captured_debug debug;
    const thread_faults threads([](unsigned) { return true; });
    journal<std::string> calls;
    const auto note = [&](const char* what) { return [&calls, what] { calls.add(what); }; };
    auto worker = std::make_unique<scripted_worker>(
        QID_PARSE, [&](event&) { calls.add("event"); }, note("pre"), note("post"));
    EXPECT_FALSE(worker->started());
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].channel, ZebDebugMessage::kDebug);
    EXPECT_EQ(messages[0].function, "Start");
    EXPECT_EQ(messages[0].line, 223);
    EXPECT_EQ(messages[0].tag, 1);
    EXPECT_EQ(messages[0].text, "ZebThread::Start() failed !! [dabspi]\r\n");

    auto payload = numbered(1);
    const std::weak_ptr<i_evt_base> kept = payload;
    EXPECT_EQ(worker->post(std::move(payload), QID_PARSE), 0);
    EXPECT_FALSE(kept.expired());
    worker->destroy_proc();
    EXPECT_EQ(threads.attempts(), 1U);  // no wait, so nobody to watch it
    EXPECT_FALSE(kept.expired());
    worker.reset();
    EXPECT_TRUE(kept.expired());
    EXPECT_TRUE(calls.all().empty());
    EXPECT_TRUE(debug.take().empty());
}

TEST(StartedWorker, IsNamedLikeEveryThreadOfTheLibrary) {
    const watchdog guard;
    journal<std::string> names;
    scripted_worker worker(QID_PARSE, [&](event&) {
        char name[16] = {};
        pthread_getname_np(pthread_self(), name, sizeof name);
        names.add(name);
    });
    worker.post(numbered(1), QID_PARSE);
    EXPECT_THAT(names.wait_for(1), ElementsAre("dabspi"));
}

}  // namespace
