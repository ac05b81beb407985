// Programmes, now and next that are not reported to the host.
#include "tests/wrap/not_reported.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(NotReported, ProgrammesOfAServiceThatIsNotListenedTo) {
    time(10, 30);
    tune(0xC222);
    feed_schedule("a", {{"News", 10}, {"Talk", 11}});
    EXPECT_THAT(received(), IsEmpty());
    tune();
    EXPECT_THAT(received(), ElementsAre("now News, next Talk"));
}

TEST_F(NotReported, ObjectsBeforeTheFirstDateAndTheirRepeats) {
    tune();
    feed_schedule("a", {{"News", 10}, {"Talk", 11}});
    EXPECT_THAT(received(), IsEmpty());
    time(10, 30);
    feed_schedule("a", {{"News", 10}, {"Talk", 11}});  // read already, and nothing of it was kept
    EXPECT_THAT(received(), IsEmpty());
    time(10, 30, 3);  // a new day reads every object again
    feed_schedule("a", {{"News", 10, 60, 0, 3}, {"Talk", 11, 60, 0, 3}});
    EXPECT_THAT(received(), Contains("now News, next Talk"));
}

TEST_F(NotReported, ObjectsBeforeTheFirstEnsembleAndTheirRepeats) {
    time(10, 30);
    feed_schedule("a", {{"News", 10}, {"Talk", 11}});
    tune();
    feed_schedule("a", {{"News", 10}, {"Talk", 11}});
    EXPECT_THAT(received(), IsEmpty());
    feed_schedule("a", {{"News", 10}, {"Talk", 11}, {"Longer", 12}});  // another size: read again
    EXPECT_THAT(received(), Contains("now News, next Talk"));
}

TEST_F(NotReported, ProgrammesOfAnotherEnsemble) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}, {"Talk", 11}}, 0xC221, 0xC182);
    EXPECT_THAT(received(), IsEmpty());
    feed_schedule("b", {{"Own", 10}});
    EXPECT_THAT(received(), ElementsAre("now Own, next "));
}

TEST_F(NotReported, DaysOtherThanTodayAndTomorrow) {
    time(10, 30, 3);
    tune();
    feed_schedule("a", {{"Yesterday", 10, 60, 0, 2}, {"In two days", 10, 60, 0, 5}});
    EXPECT_THAT(received(), IsEmpty());
    feed_schedule("b", {{"Today", 10, 60, 0, 3}});
    EXPECT_THAT(received(), ElementsAre("now Today, next "));
}

TEST_F(NotReported, ACorrectionOfAProgrammeThatIsFiled) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}, {"Talk", 11}});
    received();
    feed_schedule("b", {{"Late News", 10, 90}, {"Another Talk", 11}});
    EXPECT_THAT(received(), IsEmpty());
    time(11, 1);
    EXPECT_THAT(received(), ElementsAre("now Talk, next "));
}

TEST_F(NotReported, AnObjectThatChangedAndKeptItsSize) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}});
    EXPECT_THAT(received(), ElementsAre("now News, next "));
    feed_schedule("a", {{"Talk", 11}});
    EXPECT_THAT(received(), IsEmpty());
    feed_schedule("a", {{"Talks", 11}});
    EXPECT_THAT(received(), ElementsAre("now News, next Talks"));
}

TEST_F(NotReported, TheEndOfAProgrammeThatNothingFollows) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}, {"Later", 13}});
    EXPECT_THAT(received(), ElementsAre("now News, next "));
    for (std::uint8_t hour = 11; hour < 13; ++hour)
        time(hour, 30);
    EXPECT_THAT(received(), IsEmpty());
    time(13, 0);
    EXPECT_THAT(received(), ElementsAre("now Later, next "));
}

TEST_F(NotReported, AChangeInTheMinuteInWhichAProgrammeEnds) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}, {"Talk", 11}});
    received();
    time(11, 0);
    EXPECT_THAT(received(), IsEmpty());
    time(11, 1);
    EXPECT_THAT(received(), ElementsAre("now Talk, next "));
}

TEST_F(NotReported, AFollowerThatStartsAMinuteLate) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}, {"Talk", 11, 60, 1}});
    EXPECT_THAT(received(), ElementsAre("now News, next "));
    time(11, 1);
    EXPECT_THAT(received(), ElementsAre("now Talk, next "));
}

TEST_F(NotReported, TheLossOfAnEnsemble) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}});
    received();
    tune(0xC221, 0);
    EXPECT_THAT(received(), IsEmpty());
    tune();
    EXPECT_THAT(received(), IsEmpty());
    feed_schedule("a", {{"News", 10}});  // forgotten, so read again
    EXPECT_THAT(received(), ElementsAre("now News, next "));
}

TEST_F(NotReported, AChangeToAServiceWithoutASchedule) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}});
    received();
    tune(0xC222);
    EXPECT_THAT(received(), IsEmpty());
    tune();
    EXPECT_THAT(received(), ElementsAre("now News, next "));
}

TEST_F(NotReported, ANewDaysProgrammeInTheSameStartMinute) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"Monday", 10}, {"Tuesday", 10, 60, 0, 3}, {"Talk", 11, 60, 0, 3}});
    EXPECT_THAT(received(), ElementsAre("now Monday, next "));
    time(10, 30, 3);
    EXPECT_THAT(received(), ElementsAre("now Monday, next Talk"));  // the old title beside the new follower
    time(11, 1, 3);
    EXPECT_THAT(received(), ElementsAre("now Talk, next "));
}

TEST_F(NotReported, TheSameServiceAndTheSameTimeAgain) {
    time(10, 30);
    tune();
    feed_schedule("a", {{"News", 10}});
    EXPECT_THAT(received(), ElementsAre("now News, next "));
    time(10, 30);
    tune();
    EXPECT_THAT(received(), IsEmpty());
}

TEST_F(NotReported, TheNamesOfServices) {
    time(10, 30);
    tune();
    announce("si", {png("logo.png", 320, 240)});  // expects silence
    feed_image("logo.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

}  // namespace
