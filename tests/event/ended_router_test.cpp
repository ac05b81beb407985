// A router that has died, or never started, still passes EC_TERM on, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "src/event/event_backend.h"
#include "src/event/teardown.h"
#include "src/event/term_event.h"
#include "testkit/journal.h"
#include "tests/event/allocation_faults.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"

namespace {

using namespace spi;
using testing::ElementsAre;

class mortal_router final : public event_backend {
 public:
    mortal_router() : event_backend(deferred{}) { begin(); }
    ~mortal_router() override { destroy_proc(); }

    void process_event(event& e) override {
        if (e.code() == EC_IMAGE) {
            dying.open();
            may_die.wait();
            throw std::runtime_error("lost its way");
        }
        event_backend::process_event(e);
    }

    gate dying;
    gate may_die;
};

struct EndedRouter : testing::Test {
    const watchdog guard;
    captured_debug debug;
    journal<std::string> seen;

    scripted_worker::handler note(const std::string& who) {
        return [this, who](event& e) { seen.add(who + ' ' + event_name(e.code())); };
    }
};

TEST_F(EndedRouter, PassesOnTheRequestsThatWereQueuedWhenItDied) {
    scripted_worker parser(QID_PARSE, note("parser"));
    scripted_worker database(QID_EVTDB, note("database"));
    mortal_router router;
    router.register_queue(&parser);
    router.register_queue(&database);
    router.post(numbered(1, EC_IMAGE), QID_PARSE);
    router.dying.wait();
    router.post(numbered(2), QID_PARSE);  // stays
    router.post(std::make_shared<term_event>(), QID_PARSE);
    router.may_die.open();
    EXPECT_THAT(seen.wait_for(1), ElementsAre("parser EC_TERM"));
    router.post(numbered(3), QID_EVTDB);  // stays
    router.post(std::make_shared<term_event>(), QID_EVTDB);
    EXPECT_THAT(seen.wait_for(2), ElementsAre("parser EC_TERM", "database EC_TERM"));
    router.destroy_proc();
    parser.destroy_proc();
    database.destroy_proc();
    EXPECT_EQ(seen.all().size(), 2U);
    EXPECT_FALSE(router.lost_an_answer());
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].text, "catch exception. thread name [dabspi], what [lost its way]\n");
}

TEST_F(EndedRouter, ThatNeverStartedPassesRequestsAndAnswersOn) {
    const thread_faults threads([](unsigned n) { return n == 1; });
    scripted_worker* answering = nullptr;
    event_backend router{event_backend::kInRuns};
    scripted_worker server(QID_SERV, note("server"));
    scripted_worker parser(QID_PARSE, [&](event& e) {
        seen.add(std::string("parser ") + event_name(e.code()));
        answering->answer(e);
    });
    answering = &parser;
    router.register_queue(&server);
    router.register_queue(&parser);
    EXPECT_EQ(parser.send(numbered(1), QID_SERV), 0);
    router.post(std::make_shared<term_event>(), QID_PARSE);
    EXPECT_THAT(seen.wait_for(2), ElementsAre("parser EC_TERM", "server EC_TERM"));
    parser.destroy_proc();
    server.destroy_proc();
    EXPECT_EQ(seen.all().size(), 2U);
}

struct RouterWithoutMemory : EndedRouter {
    const thread_faults threads;
    event_backend router{event_backend::kInRuns};  // thread 1
    scripted_worker parser{QID_PARSE, note("parser")};

    void SetUp() override {
        router.register_queue(&parser);
        router.post(numbered(1), QID_ALL);
        seen.wait_for(1);  // the router's thread has made what it needs for itself
    }
    void TearDown() override { router.unregister_queue(QID_PARSE, false); }
};

TEST_F(RouterWithoutMemory, ForwardsWhatHasOneDestination) {
    const allocation_faults fault(1, 1, allocation_faults::kFromThenOn);
    router.post(numbered(2, EC_RESEND), QID_PARSE);
    router.post(std::make_shared<term_event>(), QID_PARSE);
    EXPECT_THAT(seen.wait_for(3), ElementsAre(testing::_, testing::_, "parser EC_TERM"));
    EXPECT_FALSE(fault.struck());
}

TEST_F(RouterWithoutMemory, ThatDiesOfARequestToAllSaysThatOneIsLost) {
    const allocation_faults fault(1, 1, allocation_faults::kOnce);  // the place in the parser's queue
    router.post(std::make_shared<term_event>(), QID_ALL);
    teardown_monitor().wait([&] { return router.lost_an_answer(); });
    EXPECT_TRUE(fault.struck());
    parser.destroy_proc();
    EXPECT_EQ(seen.all().size(), 1U);
}

}  // namespace
