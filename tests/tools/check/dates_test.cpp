// Schedules against the clock: stale carousels, and schedules that end soon.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/check/broadcast.h"
#include "tests/tools/files/files.h"
#include "tools/playing/storage.h"

namespace {

using namespace check_test;
using namespace dabspi::check;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> dated(const check_report& of, finding_code code) {
    std::vector<std::string> all;
    for (const finding& each : of.findings)
        if (each.code == code) all.push_back(each.text);
    return all;
}

check_report look_at_dump(const std::optional<spi::MotDateTime>& clock, long ends_within = 24) {
    const temporary_directory directory;
    const bytes object = schedule_object(whole_day(kToday));
    write_file(directory, "pi.ehb", std::string(object.begin(), object.end()));
    folder_options options;
    options.clock = clock;
    const dabspi::storage location = dabspi::storage::temporary();
    check_settings settings(severity::note);
    settings.ends_within = ends_within;
    return check_input(read_inputs(directory.path().string(), options).front(), settings, location.path());
}

TEST(StaleCarousel, IsAnErrorForAllAndForEachService) {
    const check_report report = look_at_dump(parse_clock("2036-03-10"));
    EXPECT_THAT(
        dated(report, finding_code::no_programmes_today),
        ElementsAre(
            "no service has a programme for 2036-03-10; the last one ended 2026-03-11 00:00, 10 years before",
            "E1.C221.0 has no programme for 2036-03-10; the last one ended 2026-03-11 00:00, 10 years "
            "before"));
    EXPECT_EQ(count_by_severity(report.findings)[2], 2U);
    EXPECT_THAT(dated(report, finding_code::schedule_ends), ElementsAre());
}

TEST(StaleCarousel, IsNoneOnTheDayItselfOrByAGuess) {
    EXPECT_THAT(dated(look_at_dump(parse_clock("2026-03-10")), finding_code::no_programmes_today),
                ElementsAre());
    const check_report guessed = look_at_dump(std::nullopt);
    EXPECT_THAT(dated(guessed, finding_code::no_programmes_today), ElementsAre());
    EXPECT_THAT(dated(guessed, finding_code::schedule_ends), ElementsAre());
}

TEST(StaleCarousel, IsSaidOfTheServiceThatIsLeftBehind) {
    spi_builder::schedule_data other;
    other.scope = spi_builder::service_id{0xE1, kEnsemble, 0xC222, 0};
    other.programmes = whole_day(kToday - 9);
    const check_report report = clean().pi("other.ehb", spi_builder::pi_object({other})).check();
    EXPECT_THAT(
        dated(report, finding_code::no_programmes_today),
        ElementsAre(
            "E1.C222.0 has no programme for 2026-03-10; the last one ended 2026-03-02 00:00, 8 days before"));
}

TEST(StaleCarousel, IsNoneWhereYesterdaysProgrammeRunsIntoToday) {
    spi_builder::schedule_data other;
    other.scope = spi_builder::service_id{0xE1, kEnsemble, 0xC222, 0};
    other.programmes = {programme("Night", kToday - 1, 22, 0, 300)};
    const check_report report = clean().pi("other.ehb", spi_builder::pi_object({other})).check();
    EXPECT_THAT(dated(report, finding_code::no_programmes_today), ElementsAre());
}

TEST(ScheduleEnds, WithinTheHoursThatAreAskedFor) {
    const auto morning = parse_clock("2026-03-10T18:00");
    EXPECT_THAT(dated(look_at_dump(morning), finding_code::schedule_ends),
                ElementsAre("E1.C221.0: the last programme ends 2026-03-11 00:00, in 6 h"));
    EXPECT_THAT(dated(look_at_dump(morning, 7), finding_code::schedule_ends), Contains(HasSubstr("in 6 h")));
    EXPECT_THAT(dated(look_at_dump(morning, 6), finding_code::schedule_ends), ElementsAre());
}

}  // namespace
