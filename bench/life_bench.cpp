// Construction and destruction of a server, beside as many bare threads: six that wait on a condition
// variable and end when they are told to, and six watchdogs that last as long as each one's join.
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "bench/live_core.h"
#include "bench/paired.h"

namespace {

using namespace bench;

class waiting_thread {
 public:
    void tell() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            told_ = true;
        }
        changed_.notify_one();
    }
    void join() { thread_.join(); }

 private:
    void run() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return told_; });
    }
    std::mutex mutex_;
    std::condition_variable changed_;
    bool told_ = false;  // guarded by mutex_
    std::thread thread_{[this] { run(); }};
};

void construct_and_destroy(benchmark::State& state) {
    temporary_directory logos;
    const auto listener = std::make_shared<counting_listener>();
    const auto figure = [&] {
        return seconds_of([&] { spi::SpiServer(listener, "/temp/dab", logos.path().string()); });
    };
    const auto ceiling = [&] {
        return seconds_of([] {
            waiting_thread threads[6];
            for (waiting_thread& thread : threads) {
                waiting_thread watchdog;
                thread.tell();
                thread.join();
                watchdog.tell();
                watchdog.join();
            }
        });
    };
    measure(state, figure, {{"threads", ceiling}}, {});
}

BENCHMARK(construct_and_destroy)->UseManualTime();

}  // namespace
