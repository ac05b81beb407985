// The router's table: registration and removal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "src/event/batch_backend.h"
#include "src/event/quiet.h"
#include "testkit/journal.h"
#include "tests/event/log_lines.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"

namespace {

using namespace spi;
using testing::ElementsAre;

TEST(RouterTable, RegisteringMakesAWorkerReachableAndAbleToSend) {
    const watchdog guard;
    batch_backend router;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    EXPECT_EQ(worker.send(numbered(1), QID_PARSE), 1);
    EXPECT_FALSE(router.is_registered(QID_PARSE));
    EXPECT_EQ(router.register_queue(&worker), 0);
    EXPECT_TRUE(router.is_registered(QID_PARSE));
    EXPECT_EQ(worker.send(numbered(2), QID_PARSE), 0);
    EXPECT_THAT(handled.wait_for(1), ElementsAre(2));
    router.destroy_proc();
}

TEST(RouterTable, ASecondWorkerOfTheSameIdentifierIsRefusedAndTheFirstStays) {
    const watchdog guard;
    batch_backend router;
    journal<int> first_handled;
    journal<int> second_handled;
    scripted_worker first(QID_PARSE, [&](event& e) { first_handled.add(number_of(e)); });
    scripted_worker second(QID_PARSE, [&](event& e) { second_handled.add(number_of(e)); });
    EXPECT_EQ(router.register_queue(&first), 0);
    EXPECT_EQ(router.register_queue(&second), 2);
    EXPECT_EQ(router.register_queue(&first), 2);
    router.post(numbered(1), QID_PARSE);
    EXPECT_THAT(first_handled.wait_for(1), ElementsAre(1));
    EXPECT_TRUE(second_handled.all().empty());
    EXPECT_EQ(second.send(numbered(2), QID_PARSE), 1);  // as if it had never been registered
    router.destroy_proc();
}

TEST(RouterTable, RemovalWithoutDestructionLeavesTheWorkerAtWork) {
    const watchdog guard;
    const captured_stderr log;
    batch_backend router;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    router.register_queue(&worker);
    EXPECT_EQ(router.unregister_queue(QID_PARSE, false), 0);
    EXPECT_FALSE(router.is_registered(QID_PARSE));
    worker.post(numbered(1), QID_PARSE);
    EXPECT_THAT(handled.wait_for(1), ElementsAre(1));
    EXPECT_EQ(log.text(), "");
    router.post(numbered(2), QID_PARSE);
    ASSERT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" Event backend - no queue  QID_PARSE / EC_SERVINFO"));
    router.destroy_proc();
}

TEST(RouterTable, RemovalWithDestructionStopsAndDeletesTheWorker) {
    const watchdog guard;
    const captured_stderr log;
    batch_backend router;
    journal<int> stopped;
    const auto alive = std::make_shared<int>(1);
    router.register_queue(new scripted_worker(
        QID_PARSE, [alive](event&) {}, nullptr, [&] { stopped.add(1); }));
    EXPECT_EQ(alive.use_count(), 2);
    EXPECT_EQ(router.unregister_queue(QID_PARSE, true), 0);
    EXPECT_EQ(alive.use_count(), 1);
    EXPECT_THAT(stopped.all(), ElementsAre(1));
    EXPECT_FALSE(router.is_registered(QID_PARSE));
    EXPECT_EQ(log.text(), "");
}

TEST(RouterTable, RemovingWhatIsNotThereReturnsThreeAndLogsOneLine) {
    const captured_stderr log;
    batch_backend router;
    EXPECT_EQ(router.unregister_queue(QID_CBHDL, true), 3);
    EXPECT_EQ(router.unregister_queue(QID_EVTDB, false), 3);
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" event queue unregistered - no queue  QID_CBHDL",
                                                     " event queue unregistered - no queue  QID_EVTDB"));
}

TEST(RouterTable, AnIdentifierMayBeRegisteredAnewAfterItsRemoval) {
    const watchdog guard;
    batch_backend router;
    journal<int> handled;
    scripted_worker first(QID_PARSE, {});
    scripted_worker second(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    router.register_queue(&first);
    router.unregister_queue(QID_PARSE, false);
    EXPECT_EQ(router.register_queue(&second), 0);
    router.post(numbered(1), QID_PARSE);
    EXPECT_THAT(handled.wait_for(1), ElementsAre(1));
    router.destroy_proc();
}

TEST(RouterTable, TheRoutersEndDeletesNoWorker) {
    const watchdog guard;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    {
        batch_backend router;
        router.register_queue(&worker);
    }
    worker.post(numbered(1), QID_PARSE);
    EXPECT_THAT(handled.wait_for(1), ElementsAre(1));
}

TEST(RouterTable, TheRouterDeliversOnWhileItWaitsForAWorkerThatIsRemoved) {
    const watchdog guard;
    batch_backend router;
    journal<int> handled;
    journal<int> begun;
    gate may_return;
    gate removing;
    scripted_worker other(QID_EVTDB, [&](event& e) { handled.add(number_of(e)); });
    router.register_queue(&other);
    auto* const slow = new scripted_worker(QID_PARSE, [&](event&) {
        begun.add(1);
        may_return.wait();
    });
    router.register_queue(slow);
    router.post(numbered(1), QID_PARSE);
    begun.wait_for(1);

    thread_faults threads;
    threads.on_create([&](unsigned) { removing.open(); });  // the thread that watches the wait
    std::thread remover([&] { EXPECT_EQ(router.unregister_queue(QID_PARSE, true), 0); });
    removing.wait();
    router.post(numbered(2), QID_EVTDB);
    EXPECT_THAT(handled.wait_for(1), ElementsAre(2));
    may_return.open();
    remover.join();
    router.destroy_proc();
}

TEST(RouterTable, RegistrationAndRemovalMayRunOnSeveralThreadsDuringDelivery) {
    const watchdog guard;
    const captured_stderr log;  // most events find nobody
    batch_backend router;
    std::vector<std::thread> threads;
    for (const _qid id : {QID_PARSE, QID_EVTDB, QID_LOGODB}) {
        threads.emplace_back([&router, id] {
            for (int round = 0; round < 50; ++round) {
                EXPECT_EQ(router.register_queue(new scripted_worker(id, {})), 0);
                router.post(numbered(round), QID_ALL);
                router.post(numbered(round), id);
                EXPECT_EQ(router.unregister_queue(id, true), 0);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
}

}  // namespace
