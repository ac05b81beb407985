// Announcements of logos that never come: they end with the ensemble.
#include "testkit/spi_builder_objects.h"
#include "tests/soak/growth_fixture.h"

namespace soak {
namespace {

TEST_F(Growth, OfNamelessAnnouncementsEndsWithTheEnsemble) {
    feed_many(20, nameless_logos);
    note("(b) announcements never matched: without names", held(), "change of ensemble");
    set_date(today + 1);
    settle();
    EXPECT_GT(held(), kStays) << "a new day forgets no announcements";
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfNamedAnnouncementsEndsWithTheEnsemble) {
    feed_many(20, named_logos);
    note("(b) announcements never matched: names of 4 bytes", held(), "change of ensemble");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfOverlappingAnnouncementsEndsWithTheEnsemble) {
    feed_many(3, shared_logo_names);
    note("(b)+(e) announcements, overlapping names of tokens", held(), "change of ensemble");
    change_ensemble();
    expect_given_back();
}

hostile_object twelve_logos() {
    spi_builder::service_data service;
    for (int i = 0; i < 12; ++i)
        service.logos.push_back({"image/png",
                                 "http://logos.example/station/" + std::to_string(1000 + i) + "/128.png",
                                 {},
                                 128,
                                 128});
    return {"si.EHB", 7, 0, spi_builder::si_object(0xE1, kHostileEnsemble, {service})};
}

// What an ordinary ensemble leaves behind: logos that are announced each day and are nowhere on air. An
// announcement of the usual kind has a name of some forty characters.
TEST_F(Growth, OfAnOrdinaryDayIsWhatIsAnnouncedAndNeverComes) {
    const hostile_object object = twelve_logos();
    base = live_heap().bytes;  // the test's own object is no part of it
    feed(object);
    settle();
    const std::int64_t first = held();
    constexpr int kDays = 400;
    for (std::uint32_t day = 1; day <= kDays; ++day) {
        set_date(today + day);
        feed(object);
    }
    settle();
    const std::int64_t all = held();
    if (!kSanitized) {
        std::printf(
            "Twelve logos that are announced every day and never come: %lld bytes after a day, %lld after "
            "%d days, %.0f a day\n",
            static_cast<long long>(first), static_cast<long long>(all), kDays + 1,
            static_cast<double>(all - first) / kDays);
    }
    EXPECT_GT(all, first);
    change_ensemble();
    expect_given_back();
}

}  // namespace
}  // namespace soak
