#include "tests/soak/growth_table.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

namespace soak {
namespace {

growth_row rows[32];
std::size_t row_count = 0;

void print(const growth_row& row) {
    const double ratio = static_cast<double>(row.memory) / static_cast<double>(row.air);
    const auto hour = [ratio](double kbit) { return ratio * kbit * 1000 / 8 * 3600 / 1e6; };
    std::printf("%-58s %10.2f | %8.0f %8.0f %8.0f %8.0f | %13.0f s | %-28s | %12llu %13lld\n", row.attack,
                ratio, hour(16), hour(64), hour(128), hour(1100), 64e6 / (ratio * 2000), row.given_back_by,
                static_cast<unsigned long long>(row.air), static_cast<long long>(row.memory));
}

class printed_at_the_end final : public ::testing::Environment {
 public:
    void TearDown() override {
        if (row_count == 0) return;
        std::printf("\nA linear extrapolation from the amounts in the last two columns; MB is 10^6 bytes.\n");
        std::printf("%-58s %10s | %-35s | %15s | %-28s | %12s %13s\n", "", "memory per",
                    "MB of memory in an hour, at kbit/s", "64 MB, 16 kb/s", "", "fed here", "held here");
        std::printf("%-58s %10s | %8s %8s %8s %8s | %15s | %-28s | %12s %13s\n", "attack", "air byte", "16",
                    "64", "128", "1100", "after", "given back by", "bytes", "bytes");
        for (std::size_t i = 0; i < row_count; ++i)
            print(rows[i]);
        std::printf("\n");
    }
};
const ::testing::Environment* const printer = ::testing::AddGlobalTestEnvironment(new printed_at_the_end);

}  // namespace

void add_to_growth_table(const growth_row& row) {
    if (row_count == std::size(rows)) throw std::length_error("the table of growth is full");
    rows[row_count++] = row;
}

}  // namespace soak
