// A line on a terminal that tells how far a long work has come and, after some seconds, how long it will
// take. It appears only when the work takes longer than a person waits without wondering, and leaves nothing
// behind.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace dabspi {

class progress_line {
 public:
    using clock = std::function<std::chrono::steady_clock::time_point()>;

    // With `shown` false, nothing is ever written. `total` is what update() counts towards, 0 if that is not
    // known; `things` is what is counted.
    progress_line(int descriptor, bool shown, std::size_t total, std::string things,
                  clock now = std::chrono::steady_clock::now);
    ~progress_line() { erase(); }
    progress_line(const progress_line&) = delete;
    progress_line& operator=(const progress_line&) = delete;

    void update(std::size_t done);
    // Before anything else is written to the terminal; the next update draws the line again.
    void erase();

 private:
    std::string time_left(std::size_t done, std::chrono::steady_clock::time_point now) const;

    int descriptor_;
    bool shown_;
    std::size_t total_;
    std::string things_;
    clock now_;
    std::chrono::steady_clock::time_point begun_;
    std::chrono::steady_clock::time_point next_;  // not drawn before
    bool drawn_ = false;
};

}  // namespace dabspi
