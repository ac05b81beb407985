// A figure and its references, measured turn by turn in one loop: whatever else the machine does, it does it
// to both. Google Benchmark repeats the loop and takes the medians; scripts/bench prints them side by side.
//
// On a busy machine the time of several threads is mostly that of waiting for a processor: what they use of
// it is counted as well.
//
// Counters of each benchmark: "ns" (the figure, per item), "ns@REFERENCE" (the reference, per item), and
// "of@REFERENCE" (the figure's time divided by the reference's). Each is the median over the loop's turns,
// and "p99" and "p99@REFERENCE" are the 99th percentiles where a figure asks for them; "cpu" and
// "cpu@REFERENCE" are the processor time of all threads, where seconds_of was used.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

// One turn: what is timed, with whatever must be made ready for it. Gives the seconds of the timed part.
struct side {
    std::string name;
    std::function<double()> turn;
};

struct shape {
    double items = 1;  // of one turn; figures are per item
    double bytes = 0;  // of one turn; 0: no throughput
    bool percentiles = false;
};

void measure(benchmark::State& state, const std::function<double()>& figure,
             const std::vector<side>& references, const shape& turn);

// Seconds that `work` takes. The processor time that the whole process uses meanwhile is kept for measure().
double seconds_of(const std::function<void()>& work);

}  // namespace bench
