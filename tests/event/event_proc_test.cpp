// A worker at work: order, hooks, posting, sending, and the answer to EC_TERM.
#include "src/event/event_proc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <thread>

#include "src/event/quiet.h"
#include "src/event/term_event.h"
#include "testkit/journal.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/virtual_slot.h"
#include "tests/event/watchdog.h"
#include "tests/support/recording_router.h"

namespace {

using namespace spi;
using testing::ElementsAre;
using testing::Pair;

TEST(Worker, HandlesEventsOneByOneInTheOrderOfArrival) {
    const watchdog guard;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(worker.post_event(event(QID_PARSE, numbered(i))), 0);
    std::vector<int> expected(500);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(handled.wait_for(500), expected);
}

TEST(Worker, KeepsTheOrderOfEachOfSeveralSenders) {
    const watchdog guard;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    std::vector<std::thread> senders;
    for (int sender = 0; sender < 4; ++sender) {
        senders.emplace_back([&worker, sender] {
            for (int i = 0; i < 200; ++i)
                worker.post(numbered(sender * 1000 + i), QID_PARSE);
        });
    }
    for (std::thread& sender : senders)
        sender.join();
    std::vector<int> next(4, 0);
    for (const int number : handled.wait_for(800))
        EXPECT_EQ(number % 1000, next[static_cast<std::size_t>(number / 1000)]++);
    EXPECT_THAT(next, ElementsAre(200, 200, 200, 200));
}

TEST(Worker, EmptyPayloadIsRemovedAndNothingCalled) {
    const watchdog guard;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(e.payload ? number_of(e) : -1); });
    worker.post_event(event(QID_PARSE, nullptr));
    worker.post(numbered(1), QID_PARSE);
    EXPECT_THAT(handled.wait_for(1), ElementsAre(1));
}

TEST(Worker, CodeZeroIsRemovedAndNothingCalled) {
    const watchdog guard;
    journal<int> handled;
    scripted_worker worker(QID_PARSE, [&](event& e) { handled.add(number_of(e)); });
    auto nothing = numbered(0, EC_NONE);
    const std::weak_ptr<i_evt_base> released = nothing;
    worker.post(std::move(nothing), QID_PARSE);
    worker.post(numbered(1), QID_PARSE);
    EXPECT_THAT(handled.wait_for(1), ElementsAre(1));
    EXPECT_TRUE(released.expired());
}

TEST(Worker, RunsItsHooksBeforeTheFirstAndAfterTheLastEventOnItsOwnThread) {
    const watchdog guard;
    journal<std::pair<std::string, std::thread::id>> calls;
    const auto note = [&](const char* what) { calls.add({what, std::this_thread::get_id()}); };
    scripted_worker worker(
        QID_PARSE, [&](event&) { note("event"); }, [&] { note("pre"); }, [&] { note("post"); });
    worker.post(numbered(1), QID_PARSE);
    worker.post(numbered(2), QID_PARSE);
    calls.wait_for(3);
    worker.destroy_proc();
    const auto all = calls.all();
    const auto own = all.front().second;
    EXPECT_NE(own, std::this_thread::get_id());
    EXPECT_THAT(all,
                ElementsAre(Pair("pre", own), Pair("event", own), Pair("event", own), Pair("post", own)));
}

TEST(Worker, RunsPreWithoutWaitingForAnEvent) {
    const watchdog guard;
    journal<int> pre;
    scripted_worker worker(QID_PARSE, {}, [&] { pre.add(1); });
    EXPECT_THAT(pre.wait_for(1), ElementsAre(1));
}

TEST(Worker, MadeByThePublicConstructorServesAtOnce) {
    const watchdog guard;
    event_proc bare(QID_PARSE);
    bare.post(numbered(1), QID_PARSE);
    EXPECT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
}

TEST(Worker, PostGoesIntoItsOwnQueueWhateverDestinationItNames) {
    const watchdog guard;
    journal<_qid> destinations;
    scripted_worker worker(QID_PARSE, [&](event& e) { destinations.add(e.destination); });
    for (const _qid destination : {QID_NONE, QID_ALL, QID_SYS, QID_EVTDB, QID_MAX})
        EXPECT_EQ(worker.post(numbered(1), destination), 0);
    EXPECT_THAT(destinations.wait_for(5), ElementsAre(QID_NONE, QID_ALL, QID_SYS, QID_EVTDB, QID_MAX));
}

// Never begins: its events can only be seen in its own post_event.
class refusing_worker final : public event_proc {
 public:
    explicit refusing_worker(_qid id) : event_proc(id, worker_duties{}) {}
    ~refusing_worker() override { destroy_proc(); }
    using event_proc::post;

    int post_event(event e) override {
        posted.push_back(std::move(e));
        return 7;
    }
    std::vector<event> posted;
};

TEST(Worker, PostUsesTheVirtualPostEventAndReturnsItsResult) {
    refusing_worker worker(QID_PARSE);
    EXPECT_EQ(worker.post(numbered(5), QID_EVTDB), 7);
    ASSERT_EQ(worker.posted.size(), 1U);
    EXPECT_EQ(worker.posted[0].destination, QID_EVTDB);
    EXPECT_EQ(number_of(worker.posted[0]), 5);
}

TEST(Worker, SendBeforeRegistrationReturnsOneAndDropsThePayload) {
    scripted_worker worker(QID_PARSE, {});
    auto payload = numbered(1);
    const std::weak_ptr<i_evt_base> dropped = payload;
    EXPECT_EQ(worker.send(std::move(payload), QID_EVTDB), 1);
    EXPECT_TRUE(dropped.expired());
}

TEST(Worker, SendPutsTheEventIntoTheRoutersQueue) {
    recording_router router;
    scripted_worker worker(QID_PARSE, {});
    router.register_queue(&worker);
    const auto payload = numbered(1);
    EXPECT_EQ(worker.send(payload, QID_EVTDB), 0);
    const auto sent = router.take();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].destination, QID_EVTDB);
    EXPECT_EQ(sent[0].payload, payload);
}

TEST(Worker, AnswersEachTermWithExactlyOneToTheServer) {
    recording_router router;
    event_proc worker(QID_PARSE);
    router.register_queue(&worker);
    event request(QID_PARSE, std::make_shared<term_event>());
    worker.process_event(request);
    const auto sent = router.take();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].destination, QID_SERV);
    EXPECT_EQ(sent[0].code(), EC_TERM);
    EXPECT_NE(sent[0].payload, request.payload);
}

TEST(Worker, IgnoresEveryOtherCodeAndTheEmptyPayload) {
    recording_router router;
    event_proc worker(QID_PARSE);
    router.register_queue(&worker);
    for (unsigned code = 0; code < 256; ++code) {
        if (code == EC_TERM) continue;
        event e(QID_PARSE, numbered(1, static_cast<event_code>(code)));
        worker.process_event(e);
    }
    event empty(QID_PARSE, nullptr);
    worker.process_event(empty);
    EXPECT_TRUE(router.take().empty());
}

TEST(Worker, TheServersOwnAnswerGoesIntoItsOwnQueue) {
    recording_router router;
    refusing_worker server(QID_SERV);
    router.register_queue(&server);
    event request(QID_SERV, std::make_shared<term_event>());
    server.process_event(request);
    EXPECT_TRUE(router.take().empty());
    ASSERT_EQ(server.posted.size(), 1U);
    EXPECT_EQ(server.posted[0].destination, QID_SERV);
    EXPECT_EQ(server.posted[0].code(), EC_TERM);
    EXPECT_NE(server.posted[0].payload, request.payload);
}

TEST(Worker, ReleasesAPayloadBeforeTheNextEventIsHandled) {
    const watchdog guard;
    journal<bool> first_was_gone;
    gate both_posted;
    std::weak_ptr<i_evt_base> first;
    scripted_worker worker(QID_PARSE, [&](event& e) {
        both_posted.wait();
        if (number_of(e) == 2) first_was_gone.add(first.expired());
    });
    auto payload = numbered(1);
    first = payload;
    worker.post(std::move(payload), QID_PARSE);
    worker.post(numbered(2), QID_PARSE);
    both_posted.open();
    EXPECT_THAT(first_was_gone.wait_for(1), ElementsAre(true));
}

TEST(Worker, ReleasesTheLastPayloadBeforeItWaits) {
    const watchdog guard;
    scripted_worker worker(QID_PARSE, {});
    auto payload = numbered(1);
    const std::weak_ptr<i_evt_base> last = payload;
    worker.post(std::move(payload), QID_PARSE);
    EXPECT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_TRUE(last.expired());
}

TEST(Worker, TakesNewEventsWhileAHandlerRuns) {
    const watchdog guard;
    journal<int> handled;
    gate may_return;
    scripted_worker worker(QID_PARSE, [&](event& e) {
        handled.add(number_of(e));
        may_return.wait();
    });
    worker.post(numbered(0), QID_PARSE);
    handled.wait_for(1);  // it runs, and stays in its handler
    for (int i = 1; i < 100; ++i)
        worker.post(numbered(i), QID_PARSE);
    EXPECT_EQ(handled.all().size(), 1U);
    may_return.open();
    EXPECT_EQ(handled.wait_for(100).size(), 100U);
}

TEST(Worker, MayPostToItselfFromItsHandler) {
    const watchdog guard;
    journal<int> handled;
    scripted_worker* self = nullptr;
    gate ready;
    scripted_worker worker(QID_PARSE, [&](event& e) {
        ready.wait();
        handled.add(number_of(e));
        if (number_of(e) < 3) self->post(numbered(number_of(e) + 1), QID_PARSE);
    });
    self = &worker;
    ready.open();
    worker.post(numbered(1), QID_PARSE);
    EXPECT_THAT(handled.wait_for(3), ElementsAre(1, 2, 3));
}

TEST(Worker, ItsVirtualOperationsStandWhereHostsExpectThem) {
    EXPECT_EQ(virtual_slot(&event_proc::pre), 0);
    EXPECT_EQ(virtual_slot(static_cast<void (event_proc::*)()>(&event_proc::post)), 1);
    EXPECT_EQ(virtual_slot(&event_proc::process_event), 2);
    EXPECT_EQ(virtual_slot(&event_proc::post_event), 5);  // after the destructor's two entries
    EXPECT_EQ(virtual_slot(&event_backend::register_queue), 6);
    EXPECT_EQ(virtual_slot(&event_backend::unregister_queue), 7);
}

}  // namespace
