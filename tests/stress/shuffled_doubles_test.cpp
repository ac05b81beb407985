// Does the shuffling find anything? Three workers as they are easily written, each with one classic defect,
// and the same three repaired. The shuffled run must find each defect within a stated number of rounds, and
// nothing in the repaired ones.
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "tests/event/watchdog.h"
#include "tests/stress/stress_settings.h"
#include "tests/stress/sync_points.h"

namespace {

constexpr bool kFaulty = true;
constexpr bool kRepaired = false;

// A flag to wait for, at most so long.
class latch {
 public:
    void set() {
        const std::lock_guard<std::mutex> lock(mutex_);
        set_ = true;
        changed_.notify_all();
    }
    bool wait_for(std::chrono::milliseconds limit) {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, limit, [this] { return set_; });
    }
    void wait() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return set_; });
    }

 private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool set_ = false;  // guarded by mutex_
};

// Each plays one round and tells whether it went wrong.

// A worker has handled its event and goes back to wait while it is told to stop. Faulty: the flag changes
// outside the mutex, so the notification can come between the worker's look at the flag and its sleep.
bool stop_gets_lost(bool faulty) {
    const auto limit = faulty ? std::chrono::milliseconds(300) : std::chrono::milliseconds(20000);
    std::mutex mutex;
    std::condition_variable wake;
    std::atomic<bool> running{true};
    latch handled;
    latch ended;
    std::thread worker([&] {
        handled.set();
        {
            std::unique_lock<std::mutex> lock(mutex);
            while (running)
                wake.wait(lock);
        }
        ended.set();
    });
    handled.wait();
    if (faulty) {
        running = false;
    } else {
        const std::lock_guard<std::mutex> lock(mutex);
        running = false;
    }
    wake.notify_all();
    const bool lost = !ended.wait_for(limit);
    if (lost) {
        { const std::lock_guard<std::mutex> lock(mutex); }
        wake.notify_all();
    }
    worker.join();
    return lost;
}

// A base class makes the thread in its constructor, and the thread calls a hook that the derived class
// overrides. `hook` stands for the pointer to the virtual table, which the derived constructor changes: the
// same order of steps, without the undefined behaviour. Faulty: the thread does not wait until the object is
// complete.
bool hook_of_the_base_runs(bool faulty) {
    enum hooks { kBase, kDerived };
    std::atomic<hooks> hook{kBase};
    std::atomic<hooks> called{kDerived};
    std::mutex start;  // the handle is stored under it, as in ZebThread::Start
    latch gate;
    std::thread worker;
    {
        const std::lock_guard<std::mutex> lock(start);
        worker = std::thread([&] {
            { const std::lock_guard<std::mutex> registering(start); }
            if (!faulty) gate.wait();
            called = hook.load();
        });
    }
    hook = kDerived;
    gate.set();
    worker.join();
    return called == kBase;
}

// A server's thread takes a lock first of all, and releases it when the last answer has come; the destructor
// waits by taking the same lock. Faulty: it does not ask whether the thread has the lock already.
bool destructor_overtakes_the_thread(bool faulty) {
    std::mutex termination;
    latch armed;
    std::atomic<bool> answered{false};
    std::thread server([&] {
        const std::lock_guard<std::mutex> lock(termination);
        armed.set();
        answered = true;
    });
    if (!faulty) armed.wait();
    bool overtaken = false;
    {
        const std::lock_guard<std::mutex> lock(termination);
        overtaken = !answered;
    }
    server.join();
    return overtaken;
}

// What goes wrong when an object is destroyed while its handler runs: the members go before the thread is
// stopped. `alive` stands for the members.
bool handler_outlives_the_members(bool faulty) {
    std::mutex mutex;
    std::condition_variable wake;
    bool running = true;  // guarded by mutex
    int queued = 0;       // guarded by mutex
    std::atomic<bool> alive{true};
    std::atomic<bool> touched_dead{false};
    latch serving;
    std::thread worker([&] {
        serving.set();
        std::unique_lock<std::mutex> lock(mutex);
        for (;;) {
            wake.wait(lock, [&] { return !running || queued > 0; });
            if (!running) return;
            --queued;
            lock.unlock();
            if (!alive) touched_dead = true;
            lock.lock();
        }
    });
    serving.wait();
    {
        const std::lock_guard<std::mutex> lock(mutex);
        queued = 1;
    }
    wake.notify_all();
    if (faulty) alive = false;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        running = false;
    }
    wake.notify_all();
    worker.join();
    return touched_dead;
}

struct defect {
    const char* name;
    bool (*goes_wrong)(bool faulty);
    unsigned rounds;  // within which the shuffled run finds it, whatever the seed
};

std::ostream& operator<<(std::ostream& out, const defect& d) {
    return out << d.name;
}

struct ShuffledDouble : testing::TestWithParam<defect> {
    const watchdog guard{std::chrono::minutes(10)};

    // The round in which it first went wrong, from 1; 0: never.
    unsigned found_in(unsigned rounds, bool faulty, std::uint64_t seed) {
        for (unsigned round = 1; round <= rounds; ++round) {
            const shuffled_timing shuffled(round_seed(seed, round));
            if (GetParam().goes_wrong(faulty)) return round;
        }
        return 0;
    }
};

TEST_P(ShuffledDouble, WithItsDefectIsFoundOutWithinTheRounds) {
    for (const std::uint64_t seed : stress_seeds()) {
        print_seed(seed);
        const unsigned round = found_in(stress_rounds(GetParam().rounds), kFaulty, seed);
        EXPECT_NE(round, 0U) << "not found with seed " << seed;
        if (round != 0) std::printf("found in round %u\n", round);
    }
}

TEST_P(ShuffledDouble, RepairedPasses) {
    for (const std::uint64_t seed : stress_seeds()) {
        print_seed(seed);
        EXPECT_EQ(found_in(stress_rounds(GetParam().rounds / 8), kRepaired, seed), 0U) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, ShuffledDouble,
    testing::Values(defect{"LostWakeUp", &stop_gets_lost, 1000},
                    defect{"HookOfTheBase", &hook_of_the_base_runs, 1000},
                    defect{"OvertakingDestructor", &destructor_overtakes_the_thread, 1000},
                    defect{"MembersGone", &handler_outlives_the_members, 1000}),
    [](const testing::TestParamInfo<defect>& about) { return std::string(about.param.name); });

}  // namespace
