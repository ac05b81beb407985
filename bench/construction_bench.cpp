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
    void stop() { stopped_.open(); }
    void join() { thread_.join(); }

 private:
    gate stopped_;
    std::thread thread_{[this] { stopped_.wait(); }};
};

void construct_and_destroy(benchmark::State& state) {
    temporary_directory logos;
    const auto listener = std::make_shared<counting_listener>();
    const auto figure = [&] {
        return seconds_of([&] { spi::SpiServer(listener, "/temp/dab", logos.path().string()); });
    };
    const auto reference = [&] {
        return seconds_of([] {
            waiting_thread threads[6];
            for (waiting_thread& thread : threads) {
                waiting_thread watchdog;
                thread.stop();
                thread.join();
                watchdog.stop();
                watchdog.join();
            }
        });
    };
    measure(state, figure, {{"threads", reference}}, {});
}

BENCHMARK(construct_and_destroy)->UseManualTime();

}  // namespace
