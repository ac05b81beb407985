#include "tools/terminal/said_wait.h"

#include <gtest/gtest.h>

#include <future>

namespace {

using dabspi::said_wait;

TEST(SaidWait, SaysThatItWaitsOnce) {
    std::promise<void> said;
    const said_wait waiting(std::chrono::milliseconds(0), [&said] { said.set_value(); });
    said.get_future().wait();
}

TEST(SaidWait, SaysNothingWhenItIsOverBefore) {
    bool said = false;
    {
        const said_wait waiting(std::chrono::hours(1), [&said] { said = true; });
    }
    EXPECT_FALSE(said);
}

}  // namespace
