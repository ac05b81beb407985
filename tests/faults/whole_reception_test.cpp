// The reception itself, without a fault: what those with one are compared with.
#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"

namespace {

class WholeReception : public testing::TestWithParam<surface> {
 protected:
    const watchdog guard;
    void SetUp() override { whole_reception(GetParam()).run(); }  // what the process keeps for good is made
};

TEST_P(WholeReception, WithoutAFaultReportsEverythingAndLeavesNothing) {
    whole_reception reception(GetParam());
    expect_faultless(reception.run(), GetParam());
}

TEST_P(WholeReception, CanBeRepeatedAgainAndAgain) {
    for (int i = 0; i < 20; ++i)
        expect_a_faultless_reception(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Of, WholeReception, testing::Values(surface::kCore, surface::kWrapper),
                         [](const auto& about) {
                             return std::string(about.param == surface::kCore ? "TheCore" : "TheWrapper");
                         });

TEST(WholeReceptionOfTheWrapper, BeginsWithAFreshBlockToo) {
    const watchdog guard;
    whole_reception(surface::kWrapper).run();
    whole_reception reception(surface::kWrapper, whole_reception::kFreshBlock);
    const reception_result result = reception.run();
    expect_faultless(result, surface::kWrapper);
    EXPECT_EQ(result.files.count("/HdStationLogo/E1C2210_4.PNG"), 1U);
}

}  // namespace
