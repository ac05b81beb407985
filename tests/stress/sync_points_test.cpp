// Whether everything that is to shuffle the timing does: calls that pass no point any more would be missed in
// silence.
#include "tests/stress/sync_points.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "src/event/monitor.h"
#include "tests/event/watchdog.h"

namespace {

struct SyncPoints : testing::Test {
    const watchdog guard;
    const shuffled_timing shuffled{1};
    std::mutex mutex;
    std::condition_variable changed;

    // By this thread, in `action`.
    std::uint64_t passed_in(const std::function<void()>& action) const {
        const std::uint64_t before = shuffled.own_points();
        action();
        return shuffled.own_points() - before;
    }
};

TEST_F(SyncPoints, ArePassedBeforeAndAfterALock) {
    EXPECT_EQ(passed_in([this] { mutex.lock(); }), 2U);
    mutex.unlock();
}

TEST_F(SyncPoints, ArePassedAfterAnUnlock) {
    mutex.lock();
    EXPECT_EQ(passed_in([this] { mutex.unlock(); }), 1U);
}

TEST_F(SyncPoints, ArePassedBeforeAndAfterANotification) {
    EXPECT_EQ(passed_in([this] { changed.notify_all(); }), 2U);
}

TEST_F(SyncPoints, ArePassedBeforeAndAfterAWait) {
    std::unique_lock<std::mutex> lock(mutex);
    bool waited_for = false;
    std::thread notifier([&] {  // comes to the mutex once the wait has begun
        const std::lock_guard<std::mutex> own(mutex);
        waited_for = true;
        changed.notify_all();
    });
    unsigned looks = 0;
    const std::uint64_t passed = passed_in([&] {
        changed.wait(lock, [&] {
            ++looks;
            return waited_for;
        });
    });
    notifier.join();
    EXPECT_GT(looks, 1U);
    EXPECT_EQ(passed, 2 * (looks - 1));  // a wait between two looks
}

TEST_F(SyncPoints, ArePassedBeforeAndAfterAWaitWithALimit) {
    std::unique_lock<std::mutex> lock(mutex);
    EXPECT_EQ(passed_in([&] { changed.wait_for(lock, std::chrono::milliseconds(0)); }), 2U);
}

// What the library is compiled from, in its own words.
TEST_F(SyncPoints, ArePassedByTheLibrarysMonitor) {
    spi::monitor monitor;
    EXPECT_EQ(passed_in([&] { monitor.announce(); }), 5U);  // lock, notification, unlock
}

}  // namespace
