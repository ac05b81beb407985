// A mutex and a condition variable for state that others wait on. The state itself is atomic, or changed
// under `mutex`; whoever changes it then calls announce(). Meant to be never destroyed: the host may exit
// while threads still use it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace spi {

class monitor {
 public:
    // Takes the mutex, so that a waiter cannot miss the change between its test and its sleep.
    void announce() noexcept {
        const std::lock_guard<std::mutex> lock(mutex_);
        changed_.notify_all();
    }

    // Waits until `condition()`, tested under the mutex: now and after each announcement.
    template <class Condition>
    void wait(Condition condition) {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, condition);
    }

    // The same, for `limit` at most. Whether the condition held at the end.
    template <class Condition>
    bool wait_for(std::chrono::milliseconds limit, Condition condition) {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, limit, condition);
    }

 private:
    std::mutex mutex_;
    std::condition_variable changed_;
};

}  // namespace spi
