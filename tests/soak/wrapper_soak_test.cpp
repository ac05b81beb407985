// Days of reception through the host-facing layer. DABSPI_SOAK_WRAPPER_DAYS says how many days.
//
// Live heap is compared at the end of every ten days, so from 20 days on; the few days under a sanitizer look
// at notifications, descriptors and threads only. Resident memory is compared in long runs, from 100 days on:
// those of scripts/soak.
#include "tests/soak/long_reception.h"
#include "tests/soak/wrapper_receiver.h"
#include "tests/wrap/wrap_fixture.h"

namespace soak {
namespace {

class WrappedLongReception : public Wrapped {
 protected:
    WrappedLongReception() {
        here.notes_calls = false;
        put_block(block_with("/mnt/data"));
    }
};

TEST_F(WrappedLongReception, NowNextAndLogosComeOnceOverTheTurnOfTheYear) {
    const int days = from_environment("DABSPI_SOAK_WRAPPER_DAYS", kSanitized ? 3 : 20);
    const auto make = [] { return std::make_unique<wrapper_receiver>(); };
    const long_reception_result result =
        play(make, here.at("/mnt/data/HdStationLogo"), days, spi_builder::mjd(2028, 1, 3));
    print_table(result);
    expect_nothing_grew(result);
    EXPECT_EQ(result.listener_threads, 1U);
    if (days < 3) return;
    EXPECT_GT(result.figures.notifications, 100U);
    EXPECT_GT(result.model.images_written, 20U);
}

}  // namespace
}  // namespace soak
