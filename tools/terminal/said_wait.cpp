#include "tools/terminal/said_wait.h"

#include <utility>

namespace dabspi {

said_wait::said_wait(std::chrono::milliseconds patience, std::function<void()> say)
    : thread_([this, patience, say = std::move(say)] {
          std::unique_lock<std::mutex> lock(mutex_);
          if (!ended_.wait_for(lock, patience, [this] { return over_; })) say();
      }) {}

said_wait::~said_wait() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        over_ = true;
    }
    ended_.notify_one();
    thread_.join();
}

}  // namespace dabspi
