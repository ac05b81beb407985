#include "bench/paired.h"

#include <time.h>

#include <algorithm>
#include <chrono>

namespace bench {
namespace {

double quantile(std::vector<double>& samples, double q) {
    const auto at = static_cast<std::size_t>(q * static_cast<double>(samples.size() - 1));
    const auto nth = samples.begin() + static_cast<std::ptrdiff_t>(at);
    std::nth_element(samples.begin(), nth, samples.end());
    return *nth;
}

double processor_seconds() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

double last_cpu = 0;  // of the last turn; benchmarks run one after the other

struct samples {
    std::vector<double> wall;
    std::vector<double> cpu;

    void take(const std::function<double()>& turn) {
        last_cpu = 0;
        wall.push_back(turn());
        cpu.push_back(last_cpu);
    }
};

}  // namespace

double seconds_of(const std::function<void()>& work) {
    const double cpu = processor_seconds();
    const auto begin = std::chrono::steady_clock::now();
    work();
    const auto end = std::chrono::steady_clock::now();
    last_cpu = processor_seconds() - cpu;
    return std::chrono::duration<double>(end - begin).count();
}

void measure(benchmark::State& state, const std::function<double()>& figure,
             const std::vector<side>& references, const shape& turn) {
    samples own;
    std::vector<samples> theirs(references.size());
    for (auto _ : state) {
        own.take(figure);
        state.SetIterationTime(own.wall.back());
        for (std::size_t i = 0; i < references.size(); ++i)
            theirs[i].take(references[i].turn);
    }
    const double to_ns = 1e9 / turn.items;
    const double median = quantile(own.wall, 0.5);
    const auto add = [&](samples& of, const std::string& at) {
        state.counters["ns" + at] = quantile(of.wall, 0.5) * to_ns;
        if (turn.percentiles) state.counters["p99" + at] = quantile(of.wall, 0.99) * to_ns;
        const double cpu = quantile(of.cpu, 0.5);
        if (cpu > 0) state.counters["cpu" + at] = cpu * to_ns;
    };
    add(own, "");
    if (turn.bytes > 0) state.counters["MB/s"] = turn.bytes / median / 1e6;
    for (std::size_t i = 0; i < references.size(); ++i) {
        const std::string at = "@" + references[i].name;
        add(theirs[i], at);
        state.counters["of" + at] = median * to_ns / state.counters["ns" + at];
    }
}

}  // namespace bench
