// Construction and destruction of a server, beside as many bare threads: six that wait on a condition
// variable and end when they are told to, and six watchdogs that last as long as each one's join.
#include <memory>
#include <thread>

#include "bench/live_core.h"
#include "bench/paired.h"
#include "testkit/journal.h"

namespace {

using namespace bench;

class waiting_thread {
 public:
    void tell() { told_.open(); }
    void join() { thread_.join(); }

 private:
    gate told_;
    std::thread thread_{[this] { told_.wait(); }};
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
