// Says what the command waits for when that takes long.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace dabspi {

// While one lives longer than `patience`, `say` is called once, on a thread of its own.
class said_wait {
 public:
    said_wait(std::chrono::milliseconds patience, std::function<void()> say);
    // Over: nothing is said from here on.
    ~said_wait();
    said_wait(const said_wait&) = delete;
    said_wait& operator=(const said_wait&) = delete;

 private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool over_ = false;  // guarded by mutex_
    std::thread thread_;
};

}  // namespace dabspi
