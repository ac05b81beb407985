// One programme element: names, identifier, location; and what is asked of the record.
#include "src/parse/pi_schedule_programme.h"

#include <gtest/gtest.h>

#include "testkit/spi_builder_objects.h"
#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::PiScheduleProgramme;

constexpr std::uint16_t kEnsemble = 0xC185;

PiScheduleProgramme read_element(const bytes& element, const bytes& table = token_table({})) {
    spi::SpiTokenTable tokens = table_of(table);
    element_of programme(element);
    PiScheduleProgramme out;
    out.eid = kEnsemble;
    EXPECT_EQ(out.parse(programme, tokens), 0);
    return out;
}
// With bytes behind the element, which must not be read.
PiScheduleProgramme read(const std::vector<bytes>& children, const bytes& table = token_table({})) {
    return read_element(join({elem(tag::programme, children), bytes(8, 0x11)}), table);
}

bytes located(const std::vector<bytes>& children) {
    return elem(tag::location, children);
}
bytes timed(const std::vector<bytes>& attributes) {
    return located({elem(tag::time, attributes)});
}
bytes start_of(unsigned hour, unsigned minute) {
    return attr(attribute::time::time, time_point(57754, hour, minute));
}
bytes duration_of(std::uint32_t seconds) {
    return attr(attribute::time::duration, u16(seconds));
}
bytes bearer_of(std::uint32_t sid, std::uint16_t eid = kEnsemble) {
    return elem(tag::bearer, {attr(attribute::bearer::id, content_id(0xE1, eid, sid))});
}

TEST(PiScheduleProgramme, NewOneIsEmpty) {
    const PiScheduleProgramme programme;
    EXPECT_EQ(programme.eid, 0);
    EXPECT_EQ(programme.crid, 0U);
    EXPECT_EQ(programme.bearer, service_of(0, 0));
    EXPECT_EQ(programme.name, "");
    EXPECT_EQ(programme.time.mjd, 0U);
    EXPECT_EQ(programme.duration, 0);
}

TEST(PiScheduleProgramme, EmptyElementLeavesItEmpty) {
    const PiScheduleProgramme programme = read({});
    EXPECT_EQ(programme.eid, kEnsemble);
    EXPECT_EQ(programme.crid, 0U);
    EXPECT_EQ(programme.bearer, service_of(0, 0));
    EXPECT_EQ(programme.name, "");
    EXPECT_EQ(programme.duration, 0);
}

TEST(PiProgrammeName, LongNameWinsInEitherOrder) {
    EXPECT_EQ(read({name_of(tag::medium_name, "News"), name_of(tag::long_name, "News at Ten")}).name,
              "News at Ten");
    EXPECT_EQ(read({name_of(tag::long_name, "News at Ten"), name_of(tag::medium_name, "News")}).name,
              "News at Ten");
}

TEST(PiProgrammeName, MediumNameIsTakenWhereThereIsNoOther) {
    EXPECT_EQ(read({name_of(tag::medium_name, "News")}).name, "News");
    EXPECT_EQ(read({name_of(tag::medium_name, "one"), name_of(tag::medium_name, "two")}).name, "one");
}

TEST(PiProgrammeName, LastLongNameWins) {
    EXPECT_EQ(read({name_of(tag::long_name, "one"), name_of(tag::long_name, "two")}).name, "two");
}

TEST(PiProgrammeName, EmptyLongNameClearsAndLeavesRoomForAMediumName) {
    EXPECT_EQ(read({name_of(tag::medium_name, "News"), name_of(tag::long_name, "")}).name, "");
    EXPECT_EQ(read({name_of(tag::long_name, ""), name_of(tag::medium_name, "News")}).name, "News");
}

TEST(PiProgrammeName, ShortNameIsNotReadForProgrammes) {
    EXPECT_EQ(read({name_of(tag::short_name, "N")}).name, "");
    EXPECT_EQ(read({name_of(tag::medium_name, "News"), name_of(tag::short_name, "N")}).name, "News");
}

TEST(PiProgrammeName, LastTextOfANameWins) {
    EXPECT_EQ(read({elem(tag::long_name, {text("one"), attr(0x80, str("x")), text("two")})}).name, "two");
    EXPECT_EQ(read({elem(tag::long_name, {text("one"), text("")})}).name, "");
}

TEST(PiProgrammeName, WithoutATextLeavesWhatIsThere) {
    EXPECT_EQ(read({name_of(tag::medium_name, "News"), elem(tag::long_name, bytes{})}).name, "News");
}

TEST(PiProgrammeName, TokensAreExpanded) {
    EXPECT_EQ(read({name_of(tag::long_name, "\x01 at Ten")}, token_table({{0x01, "News"}})).name,
              "News at Ten");
    EXPECT_EQ(read({name_of(tag::long_name, "\x02 at Ten")}, token_table({{0x01, "News"}})).name, " at Ten");
}

TEST(PiProgrammeName, MayBeLongerThan255Bytes) {
    const std::string name(1000, 'x');
    EXPECT_EQ(read({name_of(tag::long_name, name.c_str())}).name, name);
}

TEST(PiProgrammeShortId, HasThreeBytes) {
    EXPECT_EQ(read({attr(attribute::programme::short_id, u24(0x010203))}).crid, 0x010203U);
    EXPECT_EQ(read({attr(attribute::programme::short_id, u32(0x01020304))}).crid, 0x010203U);
}

TEST(PiProgrammeShortId, ShorterThanThreeBytesIsFFFFFF) {
    EXPECT_EQ(read({attr(attribute::programme::short_id, u16(0x0102))}).crid, 0xFFFFFFU);
    EXPECT_EQ(read({attr(attribute::programme::short_id, {})}).crid, 0xFFFFFFU);
}

TEST(PiProgrammeShortId, InTheLastThreeBytesOfTheBodyIsAllOnes) {
    const bytes element = elem(tag::programme, {attr(attribute::programme::short_id, u24(0x010203))});
    EXPECT_EQ(read_element(element).crid, 0xFFFFFFFFU);
    EXPECT_EQ(read_element(join({element, u8(0)})).crid, 0x010203U);
    EXPECT_EQ(read_element(cut(element, element.size() - 1)).crid, 0xFFFFFFFFU);
}

TEST(PiProgrammeLocation, GivesStartAndDuration) {
    const PiScheduleProgramme programme = read({timed({start_of(22, 30), duration_of(5400)})});
    EXPECT_EQ(programme.time.mjd, 57754U);
    EXPECT_EQ(programme.time.hour, 22);
    EXPECT_EQ(programme.time.minute, 30);
    EXPECT_EQ(programme.duration, 5400);
}

TEST(PiProgrammeLocation, DurationIsBoundedByTheTimeElementNotByItsAttribute) {
    // One byte in the attribute: the next attribute's tag is taken as the second, and still read as a tag.
    const PiScheduleProgramme programme =
        read({timed({attr(attribute::time::duration, u8(0x01)), start_of(22, 30)})});
    EXPECT_EQ(programme.duration, 0x0180);
    EXPECT_EQ(programme.time.hour, 22);
    EXPECT_EQ(read({timed({attr(attribute::time::duration, {}), attr(0x82, {})})}).duration, 0x8200);
}

TEST(PiProgrammeLocation, DurationWithFewerThanTwoBytesLeftInTheTimeElementIs65535) {
    EXPECT_EQ(read({timed({attr(attribute::time::duration, u8(1))})}).duration, 65535);
    EXPECT_EQ(read({timed({start_of(22, 30), attr(attribute::time::duration, {})})}).duration, 65535);
    const bytes element = elem(tag::programme, {timed({duration_of(0x0102)})});
    EXPECT_EQ(read_element(cut(element, element.size() - 1)).duration, 65535);
}

TEST(PiProgrammeLocation, StartIsBoundedByItsAttribute) {
    const PiScheduleProgramme programme =
        read({timed({attr(attribute::time::time, cut(time_point(57754, 22, 30), 3)), duration_of(60)})});
    EXPECT_EQ(programme.time.mjd, 57754U);
    EXPECT_EQ(programme.time.minute, 63);
    EXPECT_EQ(programme.duration, 60);
}

TEST(PiProgrammeLocation, ActualTimesAreNotRead) {
    const PiScheduleProgramme programme =
        read({timed({attr(attribute::time::actual_time, time_point(57754, 1, 2)),
                     attr(attribute::time::actual_duration, u16(7))})});
    EXPECT_EQ(programme.time.mjd, 0U);
    EXPECT_EQ(programme.duration, 0);
}

TEST(PiProgrammeLocation, LaterOneWins) {
    const PiScheduleProgramme programme =
        read({located({elem(tag::time, {start_of(10, 0), duration_of(600)}), bearer_of(0xC221)}),
              located({elem(tag::time, {start_of(11, 15), duration_of(900)}), bearer_of(0xC222)})});
    EXPECT_EQ(programme.time.hour, 11);
    EXPECT_EQ(programme.time.minute, 15);
    EXPECT_EQ(programme.duration, 900);
    EXPECT_EQ(programme.bearer, service_of(0xE1, 0xC222));
}

TEST(PiProgrammeLocation, LaterOneLeavesWhatItDoesNotCode) {
    const PiScheduleProgramme programme =
        read({located({elem(tag::time, {start_of(10, 0), duration_of(600)}), bearer_of(0xC221)}),
              located({elem(tag::time, {duration_of(900)})})});
    EXPECT_EQ(programme.time.hour, 10);
    EXPECT_EQ(programme.duration, 900);
    EXPECT_EQ(programme.bearer, service_of(0xE1, 0xC221));
}

TEST(PiProgrammeBearer, OnTheSameEnsembleIsTaken) {
    EXPECT_EQ(read({located({bearer_of(0xC221)})}).bearer, service_of(0xE1, 0xC221));
}

TEST(PiProgrammeBearer, OnAnotherEnsembleIsIgnored) {
    EXPECT_EQ(read({located({bearer_of(0xC221, 0xC186)})}).bearer, service_of(0, 0));
    EXPECT_EQ(read({located({bearer_of(0xC221), bearer_of(0xC222, 0xC186)})}).bearer,
              service_of(0xE1, 0xC221));
}

TEST(PiProgrammeBearer, LastAcceptedWins) {
    EXPECT_EQ(read({located({bearer_of(0xC221), bearer_of(0xC222)})}).bearer, service_of(0xE1, 0xC222));
    const bytes two_in_one = elem(tag::bearer, {attr(0x80, content_id(0xE1, kEnsemble, 0xC221)),
                                                attr(0x80, content_id(0xE2, kEnsemble, 0xC223, 4))});
    EXPECT_EQ(read({located({two_in_one})}).bearer, service_of(0xE2, 0xC223, 4));
}

TEST(PiProgrammeBearer, IsBoundedByItsAttribute) {
    const bytes short_one = elem(tag::bearer, {attr(0x80, cut(content_id(0xE1, kEnsemble, 0xC221), 5)),
                                               attr(attribute::bearer::url, str("x"))});
    EXPECT_EQ(read({located({short_one})}).bearer, service_of(0xE1, 0xFFFF));
}

TEST(PiProgrammeBearer, OfAServiceIsNotOneOfAProgramme) {
    EXPECT_EQ(read({located({elem(tag::service_bearer, {attr(0x80, content_id(0xE1, kEnsemble, 0xC221))})})})
                  .bearer,
              service_of(0, 0));
}

TEST(PiScheduleProgramme, OtherChildrenArePassedOver) {
    const PiScheduleProgramme programme = read(
        {attr(attribute::programme::id, str("crid://x")), elem(tag::media_description, bytes(300, 0x12)),
         elem(tag::genre, {attr(0x80, u8(1))}), elem(tag::member_of, {attr(0x81, u24(7))}),
         elem(tag::time, {duration_of(600)}), name_of(tag::long_name, "News"), elem(tag::link, {text("x")})});
    EXPECT_EQ(programme.name, "News");
    EXPECT_EQ(programme.crid, 0U);
    EXPECT_EQ(programme.duration, 0);
}

// A record as the queries see it: on 2017-01-01, times in UTC.
PiScheduleProgramme at(unsigned hour, unsigned minute, unsigned seconds, int half_hours = 0) {
    PiScheduleProgramme programme;
    programme.name = "Morning news";
    programme.time.mjd = 57754;
    programme.time.hour = static_cast<std::uint8_t>(hour);
    programme.time.minute = static_cast<std::uint8_t>(minute);
    programme.time.lto = static_cast<std::int8_t>(half_hours);
    programme.duration = static_cast<std::uint16_t>(seconds);
    return programme;
}

TEST(PiProgrammeSignature, NamesLocalStartTitleAndMinutes) {
    EXPECT_EQ(at(9, 5, 1800).sig(), "09:05 Morning news (30min)");
    EXPECT_EQ(at(8, 5, 1800, 2).sig(), "09:05 Morning news (30min)");
}

TEST(PiProgrammeSignature, CutsToWholeMinutes) {
    EXPECT_EQ(at(9, 5, 90).sig(), "09:05 Morning news (1min)");
    EXPECT_EQ(at(9, 5, 59).sig(), "09:05 Morning news (0min)");
    EXPECT_EQ(at(9, 5, 65535).sig(), "09:05 Morning news (1092min)");
    EXPECT_EQ(PiScheduleProgramme().sig(), "00:00  (0min)");
}

TEST(PiProgrammeMatch, BothEndsCount) {
    const PiScheduleProgramme programme = at(9, 0, 1800, 2);  // 10:00 to 10:30 local time
    EXPECT_TRUE(programme.match_tp(date_time_of(2017, 1, 1, 10, 0)));
    EXPECT_TRUE(programme.match_tp(date_time_of(2017, 1, 1, 10, 15)));
    EXPECT_TRUE(programme.match_tp(date_time_of(2017, 1, 1, 10, 30)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2017, 1, 1, 9, 59)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2017, 1, 1, 10, 31)));
}

TEST(PiProgrammeMatch, ReachesAcrossMidnight) {
    const PiScheduleProgramme programme = at(23, 45, 1800);
    EXPECT_TRUE(programme.match_tp(date_time_of(2017, 1, 1, 23, 50)));
    EXPECT_TRUE(programme.match_tp(date_time_of(2017, 1, 2, 0, 10)));
    EXPECT_TRUE(programme.match_tp(date_time_of(2017, 1, 2, 0, 15)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2017, 1, 2, 0, 16)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2017, 1, 1, 0, 10)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2017, 1, 2, 23, 50)));
}

TEST(PiProgrammeMatch, ComparesTheWholeDate) {
    const PiScheduleProgramme programme = at(10, 0, 1800);
    EXPECT_FALSE(programme.match_tp(date_time_of(2016, 1, 1, 10, 15)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2018, 1, 1, 10, 15)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2017, 2, 1, 10, 15)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2017, 1, 2, 10, 15)));
}

TEST(PiProgrammeMatch, WithoutADurationIsOneMinute) {
    EXPECT_TRUE(at(10, 0, 59).match_tp(date_time_of(2017, 1, 1, 10, 0)));
    EXPECT_FALSE(at(10, 0, 59).match_tp(date_time_of(2017, 1, 1, 10, 1)));
}

TEST(PiProgrammeMatch, StartBeforeMidnightByOffsetMatchesNoClock) {
    // The start reads as hour 67, so every clock of that day lies before it.
    const PiScheduleProgramme programme = at(0, 0, 1500, -1);
    EXPECT_FALSE(programme.match_tp(date_time_of(2016, 12, 31, 23, 30)));
    EXPECT_FALSE(programme.match_tp(date_time_of(2016, 12, 31, 23, 50)));
}

}  // namespace
