// The life itself, without a fault: what the lives with one are compared with.
#include "tests/event/watchdog.h"
#include "tests/faults/life_checks.h"

namespace {

class WholeLife : public testing::TestWithParam<surface> {
 protected:
    const watchdog guard;
    void SetUp() override { whole_life(GetParam()).run(); }  // what the process keeps for good is made
};

TEST_P(WholeLife, WithoutAFaultTellsEverythingAndLeavesNothing) {
    whole_life life(GetParam());
    expect_faultless(life.run(), GetParam());
}

TEST_P(WholeLife, CanBeLivedAgainAndAgain) {
    for (int i = 0; i < 20; ++i)
        expect_a_faultless_life(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Of, WholeLife, testing::Values(surface::kCore, surface::kWrapper),
                         [](const auto& about) {
                             return std::string(about.param == surface::kCore ? "TheCore" : "TheWrapper");
                         });

TEST(WholeLifeOfTheWrapper, BeginsWithAFreshBlockToo) {
    const watchdog guard;
    whole_life(surface::kWrapper).run();
    whole_life life(surface::kWrapper, whole_life::kFreshBlock);
    const life_result result = life.run();
    expect_faultless(result, surface::kWrapper);
    EXPECT_EQ(result.files.count("/HdStationLogo/E1C2210_4.PNG"), 1U);
}

}  // namespace
