// What several threads report to a test, in the order of arrival, and a gate that a test opens for them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

template <class Entry>
class journal {
 public:
    void add(Entry entry) {
        const std::lock_guard<std::mutex> lock(mutex_);
        entries_.push_back(std::move(entry));
        changed_.notify_all();
    }

    // Everything so far.
    std::vector<Entry> all() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return entries_;
    }

    // Everything, once there are `count` entries. A minute without them gives what is there: the test fails
    // on it.
    std::vector<Entry> wait_for(std::size_t count) const {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait_for(lock, std::chrono::minutes(1), [&] { return entries_.size() >= count; });
        return entries_;
    }

    std::vector<Entry> take() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(entries_, {});
    }

 private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<Entry> entries_;  // guarded by mutex_
};

// Closed until it is opened, then open for good.
class gate {
 public:
    void open() {
        const std::lock_guard<std::mutex> lock(mutex_);
        open_ = true;
        changed_.notify_all();
    }
    void wait() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return open_; });
    }

 private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool open_ = false;  // guarded by mutex_
};
