// The router: where events go, and what is logged when they go nowhere.
#include "src/event/batch_backend.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "src/event/quiet.h"
#include "testkit/journal.h"
#include "tests/event/log_lines.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/watchdog.h"

namespace {

using namespace spi;
using testing::ElementsAre;
using testing::IsEmpty;

struct seen {
    _qid worker;
    _qid destination;
    const i_evt_base* payload;
};

// A router with one worker for each identifier that a server registers.
struct Router : testing::Test {
    static scripted_worker::handler record(journal<seen>& into, _qid id) {
        return [&into, id](event& e) { into.add({id, e.destination, e.payload.get()}); };
    }
    void wait_quiet() { ASSERT_TRUE(wait_until_quiet(std::chrono::minutes(1))); }

    const watchdog guard;
    journal<seen> handled;
    batch_backend router;
    scripted_worker server{QID_SERV, record(handled, QID_SERV)};
    scripted_worker parser{QID_PARSE, record(handled, QID_PARSE)};
    scripted_worker database{QID_EVTDB, record(handled, QID_EVTDB)};

    void SetUp() override {
        for (event_proc* worker : {&server, &parser, &database})
            ASSERT_EQ(router.register_queue(worker), 0);
    }
    void TearDown() override { router.destroy_proc(); }
};

TEST_F(Router, DeliversToTheNamedWorkerOnly) {
    const auto payload = numbered(1);
    EXPECT_EQ(server.send(payload, QID_EVTDB), 0);
    const auto events = handled.wait_for(1);
    parser.send(numbered(2), QID_PARSE);
    handled.wait_for(2);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].worker, QID_EVTDB);
    EXPECT_EQ(events[0].destination, QID_EVTDB);
    EXPECT_EQ(events[0].payload, payload.get());
}

TEST_F(Router, PostingOnTheRouterIsRouting) {
    EXPECT_EQ(router.post(numbered(1), QID_PARSE), 0);
    const auto events = handled.wait_for(1);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].worker, QID_PARSE);
}

TEST_F(Router, KeepsTheOrderOfEvents) {
    std::vector<const i_evt_base*> sent;
    std::vector<std::shared_ptr<i_evt_base>> kept;
    for (int i = 0; i < 200; ++i) {
        kept.push_back(numbered(i));
        sent.push_back(kept.back().get());
        server.send(kept.back(), QID_PARSE);
    }
    std::vector<const i_evt_base*> received;
    for (const seen& one : handled.wait_for(200))
        received.push_back(one.payload);
    EXPECT_EQ(received, sent);
}

TEST_F(Router, BroadcastReachesEachRegisteredWorkerOnceWithOnePayload) {
    auto payload = numbered(1);
    const i_evt_base* const shared = payload.get();
    const std::weak_ptr<i_evt_base> alive = payload;
    server.send(std::move(payload), QID_ALL);
    const auto events = handled.wait_for(3);
    wait_quiet();
    EXPECT_TRUE(alive.expired());
    EXPECT_EQ(handled.all().size(), 3U);
    std::multiset<_qid> workers;
    for (const seen& one : events) {
        workers.insert(one.worker);
        EXPECT_EQ(one.destination, QID_ALL);
        EXPECT_EQ(one.payload, shared);
    }
    EXPECT_THAT(workers, ElementsAre(QID_SERV, QID_PARSE, QID_EVTDB));
}

TEST_F(Router, BroadcastPayloadLivesUntilTheLastWorkerHasHandledIt) {
    gate may_return;
    journal<int> slow_has_it;
    scripted_worker slow(QID_CBHDL, [&](event&) {
        slow_has_it.add(1);
        may_return.wait();
    });
    router.register_queue(&slow);
    auto payload = numbered(1);
    const std::weak_ptr<i_evt_base> alive = payload;
    server.send(std::move(payload), QID_ALL);
    handled.wait_for(3);
    slow_has_it.wait_for(1);
    EXPECT_FALSE(alive.expired());
    may_return.open();
    wait_quiet();
    EXPECT_TRUE(alive.expired());
    router.unregister_queue(QID_CBHDL, false);
}

TEST_F(Router, NoDestinationIsDroppedWithoutALine) {
    const captured_stderr log;
    server.send(numbered(1), QID_NONE);
    wait_quiet();
    EXPECT_THAT(handled.all(), IsEmpty());
    EXPECT_EQ(log.text(), "");
}

TEST_F(Router, IsNotInItsOwnTable) {
    const captured_stderr log;
    EXPECT_FALSE(router.is_registered(QID_SYS));
    server.send(numbered(1, EC_DATETIME), QID_SYS);
    wait_quiet();
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" Event backend - no queue  QID_SYS / EC_DATETIME"));
}

TEST_F(Router, UnknownDestinationsAreLoggedWithBothNamesAndDropped) {
    const captured_stderr log;
    server.send(numbered(1, EC_BODYSPI), QID_LOGODB);
    server.send(numbered(2, EC_TERM), QID_MAX);
    server.send(numbered(3, EC_ENS), static_cast<_qid>(200));
    wait_quiet();
    EXPECT_THAT(handled.all(), IsEmpty());
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" Event backend - no queue  QID_LOGODB / EC_BODYSPI",
                                                     " Event backend - no queue  QID_MAX / EC_TERM",
                                                     " Event backend - no queue  ? / EC_ENS"));
}

TEST_F(Router, AnEmptyPayloadIsLoggedAsNoEvent) {
    // Only a direct call shows it: the worker's loop drops such events before they come here.
    const captured_stderr log;
    event empty(QID_CBHDL, nullptr);
    router.process_event(empty);
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" Event backend - no queue  QID_CBHDL / No event"));
}

TEST_F(Router, IsNotHeldUpByASlowHandler) {
    gate may_return;
    journal<int> begun;
    scripted_worker slow(QID_CBHDL, [&](event&) {
        begun.add(1);
        may_return.wait();
    });
    router.register_queue(&slow);
    server.send(numbered(1), QID_CBHDL);
    begun.wait_for(1);
    for (int i = 0; i < 50; ++i) {
        server.send(numbered(i), QID_CBHDL);
        server.send(numbered(i), QID_PARSE);
    }
    EXPECT_EQ(handled.wait_for(50).size(), 50U);
    EXPECT_EQ(begun.all().size(), 1U);
    may_return.open();
    EXPECT_EQ(begun.wait_for(51).size(), 51U);
    router.unregister_queue(QID_CBHDL, false);
}

TEST_F(Router, HasAQueueIdentifierOfItsOwn) {
    EXPECT_EQ(router.queue_id(), QID_SYS);
}

}  // namespace
