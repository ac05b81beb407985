// Which programme is on now.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

class Now : public EventDb {
 protected:
    Now() {
        at("0000");
        listen_to(station);
    }
    // The programme that is on at `time`, for a database that has just been told of the service.
    std::string now_at(const std::string& time) {
        listen_to(other_station);
        at(time);
        forget_sent();
        listen_to(station);
        const std::string update = standing();
        return update.substr(4, update.find(',') - 4);
    }
};

TEST_F(Now, IsTheProgrammeThatCoversTheTime) {
    on_air("1000", 60, "News");
    on_air("1100", 60, "Talk");
    on_air("1200", 60, "Music");
    EXPECT_EQ(now_at("0959"), "-");
    EXPECT_EQ(now_at("1000"), "News");
    EXPECT_EQ(now_at("1059"), "News");
    EXPECT_EQ(now_at("1100"), "Talk");  // a fresh search does not count the end minute
    EXPECT_EQ(now_at("1200"), "Music");
    EXPECT_EQ(now_at("1259"), "Music");
    EXPECT_EQ(now_at("1300"), "-");
}

TEST_F(Now, MidnightIsTheFirstMinute) {
    on_air("0000", 1, "Chimes");
    EXPECT_EQ(now_at("0000"), "Chimes");
    EXPECT_EQ(now_at("0001"), "-");
}

TEST_F(Now, TheFirstThatCoversTheTimeWins) {
    on_air("1000", 120, "Long");
    on_air("1030", 30, "Within");
    EXPECT_EQ(now_at("1045"), "Long");
    EXPECT_EQ(now_at("1029"), "Long");
}

TEST_F(Now, TheOneFiledFirstNeedNotBeTheFirst) {
    on_air("1030", 30, "Later start");
    on_air("1000", 120, "Earlier start");
    EXPECT_EQ(now_at("1045"), "Earlier start");
}

TEST_F(Now, PassesOverProgrammesThatHaveEnded) {
    on_air("0800", 10, "Over");
    on_air("0900", 10, "Over too");
    on_air("1000", 60, "News");
    EXPECT_EQ(now_at("1010"), "News");
}

TEST_F(Now, AProgrammePastMidnightCoversTheRestOfTheDay) {
    on_air("2300", 120, "Night");
    EXPECT_EQ(now_at("2300"), "Night");
    EXPECT_EQ(now_at("2359"), "Night");
    EXPECT_EQ(now_at("2259"), "-");
    EXPECT_EQ(now_at("0030"), "-");  // of the day on which it starts
}

TEST_F(Now, AProgrammeThatEndsAtMidnightExactlyCoversTheRestOfTheDay) {
    on_air("2300", 60, "Night");
    EXPECT_EQ(now_at("2359"), "Night");
}

TEST_F(Now, AProgrammePastMidnightHidesThoseThatStartAfterIt) {
    on_air("2200", 180, "Night");
    on_air("2300", 30, "Within");
    EXPECT_EQ(now_at("2310"), "Night");
}

TEST_F(Now, AProgrammeWithoutADurationIsNeverOn) {
    on_air("1000", 0, "Flash");
    EXPECT_EQ(now_at("1000"), "-");
    on_air("0955", 60, "News");
    EXPECT_EQ(now_at("1000"), "News");
}

TEST_F(Now, DurationsAreCutToWholeMinutes) {
    spi::PiScheduleProgramme p = programme(today, "1000", 0, "Short");
    p.duration = 119;
    file(p);
    EXPECT_EQ(now_at("1000"), "Short");
    EXPECT_EQ(now_at("1001"), "-");
    spi::PiScheduleProgramme shorter = programme(today, "1100", 0, "Shorter");
    shorter.duration = 59;
    file(shorter);
    EXPECT_EQ(now_at("1100"), "-");
}

TEST_F(Now, TheSecondsOfTheStartAreIgnored) {
    spi::PiScheduleProgramme p = programme(today, "1000", 60, "News");
    p.time.second = 59;
    file(p);
    EXPECT_EQ(now_at("1000"), "News");
    EXPECT_EQ(now_at("1100"), "-");
}

TEST_F(Now, StartsAndEndsAreLocal) {
    file(programme(today, "0900", 60, "Ahead", 3));    // 10:30
    file(programme(today, "1300", 60, "Behind", -2));  // 12:00
    EXPECT_EQ(now_at("1029"), "-");
    EXPECT_EQ(now_at("1030"), "Ahead");
    EXPECT_EQ(now_at("1129"), "Ahead");
    EXPECT_EQ(now_at("1200"), "Behind");
    EXPECT_EQ(now_at("1300"), "-");
}

TEST_F(Now, AStartThatTheOffsetCarriedOverMidnightIsFoundOnItsLocalDay) {
    file(programme(yesterday, "2330", 60, "Early", 2));  // 00:30 to 01:30 today
    EXPECT_EQ(now_at("0029"), "-");
    EXPECT_EQ(now_at("0030"), "Early");
    EXPECT_EQ(now_at("0129"), "Early");
    EXPECT_EQ(now_at("0130"), "-");
}

TEST_F(Now, TheLongestDurationRunsThroughTheNextDay) {
    spi::PiScheduleProgramme p = programme(today, "1000", 0, "Endless");
    p.duration = 65535;  // 1092 minutes: until 04:12
    file(p);
    EXPECT_EQ(now_at("1000"), "Endless");
    EXPECT_EQ(now_at("2359"), "Endless");
}

TEST_F(Now, IsSearchedForInTheFirstDayOnly) {
    on_air(tomorrow, "1000", 60, "Tomorrow");
    on_air(today, "1800", 60, "Evening");
    EXPECT_EQ(now_at("1030"), "-");
}

}  // namespace
}  // namespace event_db
