#include "src/event/quiet.h"

#include <gtest/gtest.h>

#include <thread>

#include "src/event/batch_backend.h"
#include "testkit/journal.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/watchdog.h"

namespace {

using namespace spi;
using std::chrono::milliseconds;

TEST(Quiet, IsSoBeforeAnythingWasPosted) {
    EXPECT_TRUE(wait_until_quiet(milliseconds(0)));
}

TEST(Quiet, IsNotWhileAPayloadLives) {
    auto payload = numbered(1);
    EXPECT_FALSE(wait_until_quiet(milliseconds(0)));
    EXPECT_FALSE(wait_until_quiet(milliseconds(5)));
    payload.reset();
    EXPECT_TRUE(wait_until_quiet(milliseconds(0)));
}

TEST(Quiet, ANegativeLimitDoesNotWait) {
    const auto payload = numbered(1);
    EXPECT_FALSE(wait_until_quiet(milliseconds(-1)));
    EXPECT_FALSE(wait_until_quiet(milliseconds::min()));
}

TEST(Quiet, TheLongestLimitDoesNotOverflow) {
    const watchdog guard;
    EXPECT_TRUE(wait_until_quiet(milliseconds::max()));
    gate begun;
    gate may_return;
    scripted_worker worker(QID_PARSE, [&](event&) {
        begun.open();
        may_return.wait();
    });
    worker.post(numbered(1), QID_PARSE);
    begun.wait();
    std::thread waiter([] { EXPECT_TRUE(wait_until_quiet(milliseconds::max())); });
    may_return.open();
    waiter.join();
}

TEST(Quiet, ComesOnlyWhenWhatAHandlerCausedIsHandledToo) {
    const watchdog guard;
    batch_backend router;
    journal<int> handled;
    scripted_worker* first = nullptr;
    scripted_worker second(QID_EVTDB, [&](event& e) {
        handled.add(number_of(e));
        if (number_of(e) < 100) first->send(numbered(number_of(e) + 1), QID_PARSE);
    });
    scripted_worker parser(QID_PARSE, [&](event& e) {
        handled.add(number_of(e));
        first->send(numbered(number_of(e) + 1), QID_EVTDB);
    });
    first = &parser;
    router.register_queue(&parser);
    router.register_queue(&second);
    router.post(numbered(1), QID_PARSE);
    EXPECT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_EQ(handled.all().size(), 100U);
    router.destroy_proc();
}

TEST(Quiet, WakesEveryWaiter) {
    const watchdog guard;
    auto payload = numbered(1);
    std::vector<std::thread> waiters;
    for (int i = 0; i < 4; ++i)
        waiters.emplace_back([] { EXPECT_TRUE(wait_until_quiet(std::chrono::minutes(1))); });
    payload.reset();
    for (std::thread& waiter : waiters)
        waiter.join();
}

}  // namespace
