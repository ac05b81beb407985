#include "bench/paired.h"

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

}  // namespace

double seconds_of(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void measure(benchmark::State& state, const std::function<double()>& figure,
             const std::vector<side>& ceilings, const shape& turn) {
    std::vector<double> own;
    std::vector<std::vector<double>> theirs(ceilings.size());
    for (auto _ : state) {
        own.push_back(figure());
        state.SetIterationTime(own.back());
        for (std::size_t i = 0; i < ceilings.size(); ++i)
            theirs[i].push_back(ceilings[i].turn());
    }
    const double to_ns = 1e9 / turn.items;
    const double median = quantile(own, 0.5);
    state.counters["ns"] = median * to_ns;
    if (turn.bytes > 0) state.counters["MB/s"] = turn.bytes / median / 1e6;
    if (turn.percentiles) state.counters["p99"] = quantile(own, 0.99) * to_ns;
    for (std::size_t i = 0; i < ceilings.size(); ++i) {
        const std::string at = "@" + ceilings[i].name;
        const double ceiling = quantile(theirs[i], 0.5);
        state.counters["ns" + at] = ceiling * to_ns;
        state.counters["of" + at] = median / ceiling;
        if (turn.percentiles) state.counters["p99" + at] = quantile(theirs[i], 0.99) * to_ns;
    }
}

}  // namespace bench
