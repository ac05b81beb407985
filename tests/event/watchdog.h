// Ends the process, loudly, when a test hangs: a lost wake-up would otherwise only show as a time-out of the
// whole run, without a name.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

class watchdog {
 public:
    explicit watchdog(std::chrono::seconds limit = std::chrono::seconds(120))
        : thread_([this, limit] { watch(limit); }) {
        // It sleeps before the test begins: a sanitizer's first look at an object opens descriptors for a
        // moment, on whichever thread, and some tests count these.
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return watching_; });
    }
    ~watchdog() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            done_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }
    watchdog(const watchdog&) = delete;
    watchdog& operator=(const watchdog&) = delete;

 private:
    void watch(std::chrono::seconds limit) {
        std::unique_lock<std::mutex> lock(mutex_);
        watching_ = true;
        changed_.notify_all();
        if (changed_.wait_for(lock, limit, [this] { return done_; })) return;
        std::fprintf(stdout, "watchdog: the test hangs\n");
        std::fflush(stdout);
        std::abort();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool watching_ = false;
    bool done_ = false;
    std::thread thread_;  // last: it uses the others
};
