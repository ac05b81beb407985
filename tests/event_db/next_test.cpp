// Which programme comes next.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

class Next : public EventDb {
 protected:
    // An update for `station` with everything filed before.
    void tune_in() {
        forget_sent();
        listen_to(station);
    }
};

TEST_F(Next, StartsInTheMinuteInWhichNowEnds) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1100", 60, "Talk");
    tune_in();
    expect_now_next("News", "Talk");
}

TEST_F(Next, IsEmptyWhenNothingFollows) {
    at("1030");
    on_air("1000", 60, "News");
    tune_in();
    expect_now_next("News", "-");
}

TEST_F(Next, MustNotOverlapNow) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1059", 60, "Talk");
    tune_in();
    expect_now_next("News", "-");
}

TEST_F(Next, CutsTheDurationOfNowToWholeMinutes) {
    at("1030");
    spi::PiScheduleProgramme news = programme(today, "1000", 0, "News");
    news.duration = 3659;
    file(news);
    on_air("1100", 60, "Talk");
    tune_in();
    expect_now_next("News", "Talk");
}

TEST_F(Next, IsFoundInTomorrowWhenNowRunsPastMidnight) {
    at("2330");
    on_air("2300", 120, "Night");
    on_air(tomorrow, "0100", 60, "Small hours");
    on_air(tomorrow, "0000", 60, "Hidden");
    tune_in();
    expect_now_next("Night", "Small hours");
}

TEST_F(Next, IsFoundInTomorrowWhenNowEndsAtMidnight) {
    at("2330");
    on_air("2300", 60, "Late");
    on_air(today, "0000", 60, "Last midnight");
    on_air(tomorrow, "0000", 60, "Midnight");
    tune_in();
    expect_now_next("Late", "Midnight");
}

TEST_F(Next, IsEmptyWhenNowRunsPastMidnightAndTomorrowIsUnknown) {
    at("2330");
    on_air("2300", 120, "Night");
    on_air(today, "0100", 60, "This morning");
    tune_in();
    expect_now_next("Night", "-");
}

TEST_F(Next, ArrivesLaterForAProgrammeThatRunsPastMidnight) {
    at("2330");
    listen_to(station);
    on_air("2300", 120, "Night");
    on_air(tomorrow, "0000", 60, "Hidden");
    forget_sent();
    on_air(tomorrow, "0100", 60, "Small hours");
    expect_sent({"stored Small hours", "now Night, next Small hours"});
}

TEST_F(Next, StartsAreLocal) {
    at("1130");
    file(programme(today, "0900", 60, "News", 4));   // 11:00
    file(programme(today, "1300", 60, "Talk", -2));  // 12:00
    tune_in();
    expect_now_next("News", "Talk");
}

TEST_F(Next, AProgrammeCarriedOverMidnightByItsOffsetEndsOnItsLocalDay) {
    at("0045");
    file(programme(yesterday, "2330", 60, "Early", 2));  // 00:30 to 01:30
    on_air("0130", 60, "Later");
    tune_in();
    expect_now_next("Early", "Later");
}

TEST_F(Next, IsClearedWhenNowIsReplaced) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1100", 60, "Talk");
    listen_to(station);
    forget_sent();
    at("1101");
    expect_now_next("Talk", "-");
}

TEST_F(Next, AProgrammeOfNoLengthMayFollow) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1100", 0, "Flash");
    tune_in();
    expect_now_next("News", "Flash");
}

}  // namespace
}  // namespace event_db
