#include "tools/air/container/input_window.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

using dabspi::air::byte_view;
using dabspi::air::input_window;
using dabspi::air::memory_source;

std::vector<std::uint8_t> counted(std::size_t size) {
    std::vector<std::uint8_t> all(size);
    for (std::size_t i = 0; i < size; ++i)
        all[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    return all;
}

TEST(InputWindow, GivesEveryByteOnceInWhateverSteps) {
    const auto all = counted(3 * 1024 * 1024 + 17);
    for (const std::size_t step : {std::size_t{1000}, std::size_t{65536}, all.size()}) {
        memory_source source(all, step);
        input_window window(source);
        std::vector<std::uint8_t> got;
        for (std::size_t wanted = 1;; wanted = wanted * 3 % 100003 + 1) {
            const byte_view seen = window.see(wanted).part(0, wanted);
            got.insert(got.end(), seen.begin(), seen.end());
            window.skip(seen.size());
            if (seen.size() < wanted) break;
        }
        EXPECT_TRUE(got == all);
        EXPECT_EQ(window.position(), all.size());
    }
}

TEST(InputWindow, LooksNoFurtherThanAsked) {
    const auto all = counted(100);
    memory_source source(all, 10);
    input_window window(source);
    EXPECT_EQ(window.see(1).size(), 10U);
    EXPECT_EQ(window.see(11).size(), 20U);
}

TEST(InputWindow, IsNeverAskedForMoreThanItHolds) {
    const auto all = counted(2 * input_window::kMostSeen);
    memory_source source(all);
    input_window window(source);
    EXPECT_GE(window.see(all.size()).size(), input_window::kMostSeen);
    window.skip(all.size());
    EXPECT_TRUE(window.see(1).empty());
}

}  // namespace
