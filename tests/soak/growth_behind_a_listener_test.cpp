// Queues behind a listener that does not return: they end with its return.
#include "tests/soak/growth_fixture.h"

namespace soak {
namespace {

TEST_F(Growth, OfProgrammesBehindABlockedListenerEndsWithItsReturn) {
    listener->close();
    const unsigned services = kSanitized ? 1 : 10 * static_cast<unsigned>(scale);
    for (unsigned i = 0; i < services; ++i)
        feed(full_service(i, today));
    const std::int64_t blocked = held_behind_the_gate();
    EXPECT_EQ(listener->calls(), 1U);
    listener->open();
    settle();
    EXPECT_EQ(listener->calls(), services * 2880);
    // What is stored stays: only the queue counts here.
    note("(a) queue behind a blocked listener: stored programmes", blocked - held(), "the listener's return");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfSharedProgrammesBehindABlockedListenerEndsWithItsReturn) {
    listener->close();
    const unsigned objects = kSanitized ? 1 : 40 * static_cast<unsigned>(scale);
    for (unsigned i = 0; i < objects; ++i)
        feed(shared_schedule(i, today));
    const std::int64_t blocked = held_behind_the_gate();
    listener->open();
    settle();
    note("(a) queue behind a blocked listener: shared schedules", blocked - held(), "the listener's return");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfLogosBehindABlockedListenerEndsWithItsReturn) {
    const unsigned rounds = static_cast<unsigned>(scale);  // each takes 500 writes
    for (unsigned i = 0; i < rounds; ++i)
        feed(one_logo_announced_often(i));
    settle();
    const std::int64_t announced = held();
    listener->close();
    feed(image_of_the_one_logo());
    const std::int64_t blocked = held_behind_the_gate();
    EXPECT_EQ(listener->calls(), 1U);
    listener->open();
    settle();
    EXPECT_EQ(listener->calls(), rounds * 500);
    note("(a) queue behind a blocked listener: written logos", blocked - held(), "the listener's return");
    EXPECT_GT(announced, held());  // the image has used them up
    change_ensemble();
    expect_given_back();
}

}  // namespace
}  // namespace soak
