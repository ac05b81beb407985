// Events that travel together: what a turn sends, what the router passes on in one piece, and what happens to
// the rest of what a worker has taken.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <vector>

#include "src/event/batch_backend.h"
#include "src/event/quiet.h"
#include "src/event/term_event.h"
#include "src/event/term_lock.h"
#include "testkit/journal.h"
#include "tests/event/log_lines.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"

namespace {

using namespace spi;
using testing::ElementsAre;

std::vector<int> numbers(int count) {
    std::vector<int> all(static_cast<std::size_t>(count));
    std::iota(all.begin(), all.end(), 0);
    return all;
}

struct Batches : testing::Test {
    const watchdog guard;
    batch_backend router;
    journal<int> at_database;
    journal<int> at_notifier;
    scripted_worker database{QID_EVTDB, [this](event& e) { at_database.add(number_of(e)); }};
    scripted_worker notifier{QID_CBHDL, [this](event& e) { at_notifier.add(number_of(e)); }};
    gate all_there;
    gate begun;
    gate handled;
    gate may_return;
    std::vector<int> during;  // what had arrived before a turn ended
    std::unique_ptr<scripted_worker> sender;

    void SetUp() override {
        router.register_queue(&database);
        router.register_queue(&notifier);
    }
    void TearDown() override {
        for (const _qid id : {QID_EVTDB, QID_CBHDL})
            router.unregister_queue(id, false);
        if (sender) router.unregister_queue(QID_PARSE, false);
        router.destroy_proc();
    }
    void make_sender(scripted_worker::handler on_event,
                     scripted_worker::sending how = scripted_worker::kWithTheTurn) {
        sender = std::make_unique<scripted_worker>(QID_PARSE, std::move(on_event), nullptr, nullptr, how);
        router.register_queue(sender.get());
    }
    void send(int number, _qid destination) { sender->send_result(numbered(number), destination); }
};

TEST_F(Batches, KeepTheOrderOfEachDestination) {
    make_sender([this](event&) {
        for (int i = 0; i < 300; ++i) {
            send(i, QID_EVTDB);
            if (i % 3 == 0) send(i / 3, QID_CBHDL);
        }
    });
    sender->post(numbered(0), QID_PARSE);
    EXPECT_EQ(at_database.wait_for(300), numbers(300));
    EXPECT_EQ(at_notifier.wait_for(100), numbers(100));
}

TEST_F(Batches, LeaveBroadcastsAndUnknownDestinationsInTheirPlace) {
    const captured_stderr log;
    make_sender([this](event& e) {
        if (number_of(e) != 0) return;  // the broadcast
        send(1, QID_EVTDB);
        send(2, QID_ALL);
        send(3, QID_NONE);
        send(4, QID_LOGODB);
        send(5, QID_LOGODB);
        send(6, QID_EVTDB);
        send(7, QID_CBHDL);
    });
    sender->post(numbered(0), QID_PARSE);
    EXPECT_THAT(at_database.wait_for(3), ElementsAre(1, 2, 6));
    EXPECT_THAT(at_notifier.wait_for(2), ElementsAre(2, 7));
    const std::string dropped = " Event backend - no queue  QID_LOGODB / EC_SERVINFO";
    EXPECT_THAT(messages_of(log.text()), ElementsAre(dropped, dropped));
}

// So it may wait for what comes of it.
TEST_F(Batches, AreNotMadeOfWhatAWorkerSendsWithoutAnOutbox) {
    make_sender(
        [&](event&) {
            send(1, QID_EVTDB);
            during = at_database.wait_for(1);
            handled.open();
        },
        scripted_worker::kAtOnce);
    sender->post(numbered(0), QID_PARSE);
    handled.wait();
    EXPECT_THAT(during, ElementsAre(1));
}

TEST_F(Batches, OfATurnAreThereWhenTheNextTurnBegins) {
    make_sender([&](event& e) {
        if (number_of(e) == 0) return all_there.wait();
        if (number_of(e) == 2) may_return.wait();
        send(number_of(e), QID_EVTDB);
    });
    for (int i = 0; i <= 3; ++i)
        sender->post(numbered(i), QID_PARSE);
    all_there.open();
    EXPECT_THAT(at_database.wait_for(1), ElementsAre(1));  // while the second turn does not end
    may_return.open();
    EXPECT_THAT(at_database.wait_for(3), ElementsAre(1, 2, 3));
}

TEST_F(Batches, OfALongTurnAreThereBeforeItEnds) {
    make_sender([&](event&) {
        for (int i = 0; i < 1000; ++i)
            send(i, QID_EVTDB);
        may_return.wait();
    });
    sender->post(numbered(0), QID_PARSE);
    EXPECT_GE(at_database.wait_for(900).size(), 900U);
    may_return.open();
    EXPECT_EQ(at_database.wait_for(1000), numbers(1000));
}

TEST_F(Batches, ThatWaitForTheLastOfACodeAreThereBeforeAnEventOfAnother) {
    make_sender(
        [&](event& e) {
            if (number_of(e) == 0) return all_there.wait();
            if (e.code() == EC_RESEND) return may_return.wait();
            send(number_of(e), QID_EVTDB);
        },
        scripted_worker::kWithTheLastOfTheCode);
    sender->post(numbered(0), QID_PARSE);
    for (int i = 1; i <= 3; ++i)
        sender->post(numbered(i), QID_PARSE);
    sender->post(numbered(4, EC_RESEND), QID_PARSE);
    all_there.open();
    EXPECT_THAT(at_database.wait_for(3), ElementsAre(1, 2, 3));
    may_return.open();
}

TEST_F(Batches, OfATurnThatThrowsArriveAllTheSame) {
    const captured_debug debug;
    make_sender([this](event&) {
        send(1, QID_EVTDB);
        send(2, QID_CBHDL);
        throw std::runtime_error("boom");
    });
    sender->post(numbered(0), QID_PARSE);
    EXPECT_THAT(at_database.wait_for(1), ElementsAre(1));
    EXPECT_THAT(at_notifier.wait_for(1), ElementsAre(2));
    sender->destroy_proc();
}

TEST_F(Batches, AreInFlightUntilTheyAreHandled) {
    make_sender(
        [this](event& e) {
            for (int i = 0; i < 10; ++i)
                send(number_of(e) * 10 + i, QID_EVTDB);
        },
        scripted_worker::kWithTheLastOfTheCode);
    for (int i = 0; i < 100; ++i)
        sender->post(numbered(i), QID_PARSE);
    EXPECT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_EQ(at_database.all(), numbers(1000));
}

TEST_F(Batches, DoNotHoldBackWhatAnotherThreadSendsInTheNameOfTheWorker) {
    make_sender([&](event&) {
        begun.open();
        may_return.wait();
    });
    sender->post(numbered(0), QID_PARSE);
    begun.wait();
    sender->send(numbered(1), QID_EVTDB);
    EXPECT_THAT(at_database.wait_for(1), ElementsAre(1));
    may_return.open();
}

// Its class has a post_event of its own, which sees every event.
class counting_worker final : public event_proc {
 public:
    counting_worker() : event_proc(QID_LOGODB, worker_duties{}) { begin(*this); }
    ~counting_worker() override { destroy_proc(); }
    int post_event(event e) override {
        if (number_of(e) == 0) may_pass.wait();  // and so does the router
        posted.add(number_of(e));
        return event_proc::post_event(std::move(e));
    }
    gate may_pass;
    journal<int> posted;
};

TEST_F(Batches, AreTakenApartForAClassWithItsOwnPostEvent) {
    counting_worker counting;
    counting.may_pass.open();
    router.register_queue(&counting);
    make_sender([this](event&) {
        for (int i = 0; i < 100; ++i)
            send(i, QID_LOGODB);
    });
    sender->post(numbered(0), QID_PARSE);
    EXPECT_EQ(counting.posted.wait_for(100), numbers(100));
    router.unregister_queue(QID_LOGODB, false);
}

// What stands together is looked through once, not once for each event.
TEST_F(Batches, OfAnyLengthAreTakenApartInTimeThatGrowsWithThem) {
    constexpr int kMany = 400'000;
    counting_worker counting;
    router.register_queue(&counting);
    for (int i = 0; i < kMany; ++i)
        router.post(numbered(i), QID_LOGODB);
    counting.may_pass.open();
    EXPECT_EQ(counting.posted.wait_for(kMany).size(), std::size_t{kMany});
    router.unregister_queue(QID_LOGODB, false);
}

// Routers whose classes have operations of their own, which see every event.
class watching_router final : public event_backend {
 public:
    watching_router() : event_backend(nullptr) { begin(*this); }
    ~watching_router() override { destroy_proc(); }
    void process_event(event& e) override {
        routed.add(number_of(e));
        event_backend::process_event(e);
    }
    journal<int> routed;
};

class counting_router final : public event_backend {
 public:
    counting_router() : event_backend(nullptr) { begin(*this); }
    ~counting_router() override { destroy_proc(); }
    int post_event(event e) override {
        routed.add(number_of(e));
        return event_backend::post_event(std::move(e));
    }
    journal<int> routed;
};

template <class Router>
struct BatchesThroughARouterOfAnotherClass : testing::Test {};
using routers = testing::Types<watching_router, counting_router>;
TYPED_TEST_SUITE(BatchesThroughARouterOfAnotherClass, routers);

TYPED_TEST(BatchesThroughARouterOfAnotherClass, AreTakenApartForIt) {
    const watchdog guard;
    TypeParam router;
    journal<int> handled;
    scripted_worker database(QID_EVTDB, [&](event& e) { handled.add(number_of(e)); });
    router.register_queue(&database);
    scripted_worker* self = nullptr;
    scripted_worker sender(
        QID_PARSE,
        [&](event&) {
            for (int i = 0; i < 100; ++i)
                self->send_result(numbered(i), QID_EVTDB);
        },
        nullptr, nullptr, scripted_worker::kWithTheTurn);
    self = &sender;
    router.register_queue(&sender);
    sender.post(numbered(0), QID_PARSE);
    EXPECT_EQ(router.routed.wait_for(100), numbers(100));
    EXPECT_EQ(handled.wait_for(100), numbers(100));
    router.unregister_queue(QID_PARSE, false);
    router.unregister_queue(QID_EVTDB, false);
}

// A worker with a termination lock, of a class that overrides what batches would pass by.
class watching_term_worker : public term_event_proc {
 public:
    watching_term_worker() : term_event_proc(QID_LOGODB) { begin(*this); }
    ~watching_term_worker() override { destroy_proc(); }
    int post_event(event e) override {
        posted.add(number_of(e));
        return term_event_proc::post_event(std::move(e));
    }
    void process_event(event& e) override { handled.add(number_of(e)); }
    journal<int> posted;
    journal<int> handled;
};

TEST_F(Batches, AreTakenApartForAClassDerivedFromOneThatTakesThem) {
    watching_term_worker watching;
    EXPECT_FALSE(watching.takes_batches());
    router.register_queue(&watching);
    make_sender([this](event&) {
        for (int i = 0; i < 5; ++i)
            send(i, QID_LOGODB);
    });
    sender->post(numbered(0), QID_PARSE);
    EXPECT_EQ(watching.handled.wait_for(5), numbers(5));
    EXPECT_EQ(watching.posted.all(), numbers(5));
    router.unregister_queue(QID_LOGODB, false);
}

// What the compiler sees of a class, whatever its author believes.
struct open_worker : event_proc {
    open_worker() : event_proc(QID_LOGODB, worker_duties{}) { begin(*this); }
    ~open_worker() override { destroy_proc(); }
};
struct plain_worker final : event_proc {
    plain_worker() : event_proc(QID_LOGODB, worker_duties{}) { begin(*this); }
    ~plain_worker() override { destroy_proc(); }
};
struct final_overriding_worker final : event_proc {
    final_overriding_worker() : event_proc(QID_LOGODB, worker_duties{}) { begin(*this); }
    ~final_overriding_worker() override { destroy_proc(); }
    int post_event(event e) override { return event_proc::post_event(std::move(e)); }
};
class secretly_overriding_worker final : public event_proc {
 public:
    secretly_overriding_worker() : event_proc(QID_LOGODB, worker_duties{}) { begin(*this); }
    ~secretly_overriding_worker() override { destroy_proc(); }

 private:
    int post_event(event e) override { return event_proc::post_event(std::move(e)); }
};
struct overriding_base : event_proc {
    overriding_base() : event_proc(QID_LOGODB, worker_duties{}) {}
    int post_event(event e) override { return event_proc::post_event(std::move(e)); }
};
struct heir_of_overriding_worker final : overriding_base {
    heir_of_overriding_worker() { begin(*this); }
    ~heir_of_overriding_worker() override { destroy_proc(); }
};

TEST(TakesBatches, OnlyAFinalClassThatLeavesPostEventAsItIs) {
    EXPECT_TRUE(plain_worker().takes_batches());
    EXPECT_FALSE(open_worker().takes_batches());
    EXPECT_FALSE(final_overriding_worker().takes_batches());
    EXPECT_FALSE(secretly_overriding_worker().takes_batches());
    EXPECT_FALSE(heir_of_overriding_worker().takes_batches());
    EXPECT_FALSE(event_proc(QID_LOGODB).takes_batches());
    EXPECT_FALSE(event_backend().takes_batches());
    EXPECT_TRUE(batch_backend().takes_batches());
    static_assert(std::is_final_v<batch_backend>, "a class derived from it would miss events");
}

TEST(EventsInHand, OfAStoppedWorkerAreNotHandledAndReleasedWithIt) {
    const watchdog guard;
    thread_faults threads;
    journal<int> handled;
    gate all_there;
    gate stopping;
    // Stopping makes a thread that watches the wait: by then the worker has been told to stop.
    threads.on_create([&](unsigned n) {
        if (n == 2) stopping.open();
    });
    auto worker = std::make_unique<scripted_worker>(QID_PARSE, [&](event& e) {
        handled.add(number_of(e));
        if (number_of(e) == 0) all_there.wait();
        if (number_of(e) == 2) stopping.wait();
    });
    worker->post(numbered(0), QID_PARSE);
    worker->post(numbered(1), QID_PARSE);
    worker->post(numbered(2), QID_PARSE);
    auto rest = numbered(3);
    const std::weak_ptr<i_evt_base> unhandled = rest;
    worker->post(std::move(rest), QID_PARSE);
    all_there.open();
    handled.wait_for(3);
    worker->destroy_proc();
    EXPECT_THAT(handled.all(), ElementsAre(0, 1, 2));
    EXPECT_FALSE(unhandled.expired());
    worker.reset();
    EXPECT_TRUE(unhandled.expired());
}

TEST(EventsInHand, OfADyingWorkerStayInItsQueueAndTheRequestsAmongThemAreAnswered) {
    const watchdog guard;
    const captured_debug debug;
    batch_backend router;
    journal<int> answers;
    scripted_worker server(QID_SERV, [&](event& e) { answers.add(e.code()); });
    router.register_queue(&server);
    gate all_there;
    journal<int> handled;
    auto parser = std::make_unique<scripted_worker>(QID_PARSE, [&](event& e) {
        handled.add(number_of(e));
        all_there.wait();
        if (number_of(e) == 1) throw std::runtime_error("boom");
    });
    router.register_queue(parser.get());
    auto kept = numbered(2);
    const std::weak_ptr<i_evt_base> still_there = kept;
    parser->post(numbered(0), QID_PARSE);
    handled.wait_for(1);
    parser->post(numbered(1), QID_PARSE);
    parser->post(std::make_shared<term_event>(), QID_PARSE);
    parser->post(std::move(kept), QID_PARSE);
    parser->post(std::make_shared<term_event>(), QID_PARSE);
    all_there.open();
    EXPECT_THAT(answers.wait_for(2), ElementsAre(EC_TERM, EC_TERM));
    parser->destroy_proc();
    EXPECT_THAT(handled.all(), ElementsAre(0, 1));
    EXPECT_FALSE(still_there.expired());
    router.unregister_queue(QID_PARSE, false);
    parser.reset();
    EXPECT_TRUE(still_there.expired());
    EXPECT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_EQ(answers.all().size(), 2U);
    router.unregister_queue(QID_SERV, false);
}

}  // namespace
