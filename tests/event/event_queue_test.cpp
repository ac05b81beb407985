// The queue by itself: no thread serves it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <list>
#include <mutex>
#include <type_traits>
#include <vector>

#include "src/event/event_queue.h"
#include "tests/event/scripted_worker.h"

namespace {

using namespace spi;
using testing::ElementsAre;
using testing::IsEmpty;

struct EventQueue : testing::Test {
    event_queue queue{QID_PARSE};

    static event numbered_to(int n) { return event(QID_EVTDB, numbered(n)); }
    static std::list<event> batch(std::initializer_list<int> all) {
        std::list<event> events;
        for (const int n : all)
            events.push_back(numbered_to(n));
        return events;
    }
    // What is there; nothing is waited for.
    std::vector<int> take() {
        std::list<event> taken;
        queue.take_all(taken, [](auto&) { return false; });
        std::vector<int> all;
        for (const event& e : taken)
            all.push_back(number_of(e));
        return all;
    }
};

TEST_F(EventQueue, IsNotPolymorphic) {
    EXPECT_FALSE(std::is_polymorphic_v<event_queue>);
}

TEST_F(EventQueue, HasTheNameThatItWasGiven) {
    EXPECT_EQ(queue.id(), QID_PARSE);
}

TEST_F(EventQueue, GivesEventsInTheOrderInWhichTheyWerePosted) {
    for (int n = 1; n <= 3; ++n) {
        event e = numbered_to(n);
        EXPECT_EQ(queue.post_event(e), 0);
        EXPECT_NE(e.payload, nullptr);  // copied
        EXPECT_EQ(e.payload.use_count(), 2);
    }
    EXPECT_EQ(queue.post_event(numbered_to(4)), 0);
    EXPECT_THAT(take(), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(EventQueue, AppendsABatchBehindWhatIsThereAndLeavesItEmpty) {
    queue.post_event(numbered_to(1));
    std::list<event> events = batch({2, 3});
    queue.append(events);
    EXPECT_TRUE(events.empty());
    EXPECT_THAT(take(), ElementsAre(1, 2, 3));
}

TEST_F(EventQueue, PutsBackWhatWasTakenInFrontOfWhatCameMeanwhile) {
    std::list<event> events = batch({1, 2});
    queue.post_event(numbered_to(3));
    queue.put_back(events);
    EXPECT_TRUE(events.empty());
    EXPECT_THAT(take(), ElementsAre(1, 2, 3));
}

TEST_F(EventQueue, CallsTheWaitWithItsMutexLockedUntilThereIsSomething) {
    int waits = 0;
    std::list<event> taken;
    EXPECT_TRUE(queue.take_all(taken, [&](std::unique_lock<std::mutex>& lock) {
        EXPECT_TRUE(lock.owns_lock());
        lock.unlock();
        if (++waits == 2) queue.post_event(numbered_to(1));
        lock.lock();
        return true;
    }));
    EXPECT_EQ(waits, 2);
    EXPECT_EQ(taken.size(), 1U);
}

TEST_F(EventQueue, DoesNotWaitWhereThereIsSomething) {
    queue.post_event(numbered_to(1));
    std::list<event> taken;
    EXPECT_TRUE(queue.take_all(taken, [](auto&) {
        ADD_FAILURE() << "waited";
        return false;
    }));
    EXPECT_EQ(taken.size(), 1U);
}

TEST_F(EventQueue, StopTellsWhetherItWasTheFirst) {
    std::atomic<bool> running{true};
    EXPECT_TRUE(queue.stop(running));
    EXPECT_FALSE(running);
    EXPECT_FALSE(queue.stop(running));
    std::list<event> taken;
    EXPECT_FALSE(queue.take_all(taken, [&](auto&) { return running.load(); }));
}

}  // namespace
