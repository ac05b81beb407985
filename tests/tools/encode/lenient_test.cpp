// --lenient: what is coded of documents that are otherwise refused, and what is said of it.

#include "tests/tools/encode/encoding.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

sb::bytes time_with(const sb::bytes& attributes) {
    return sb::elem(
        sb::tag::epg,
        {sb::elem(sb::tag::schedule,
                  {sb::elem(sb::tag::programme,
                            {sb::elem(sb::tag::location, {sb::elem(sb::tag::time, attributes)})})})});
}

std::string with_time(const std::string& attributes) {
    return programme_document("<location><time " + attributes + "/></location>");
}

TEST(Lenient, TimesWithoutZoneAreUtc) {
    const auto made = leniently(with_time("time='2026-03-10T07:00:00'"));
    EXPECT_EQ(object_of(made), time_with(sb::attr(0x80, sb::time_point(sb::mjd(2026, 3, 10), 7, 0, {}, {}))));
    EXPECT_THAT(texts_of(made.warnings), ElementsAre(HasSubstr("no certain moment; taken as UTC")));
}

TEST(Lenient, OffsetsThatHaveNoCodingLeaveTheMoment) {
    const auto made = leniently(with_time("time='2026-03-10T02:15:00+05:45'"));
    EXPECT_EQ(object_of(made),
              time_with(sb::attr(0x80, sb::time_point(sb::mjd(2026, 3, 9), 20, 30, {}, {}))));
    EXPECT_THAT(texts_of(made.warnings), ElementsAre(HasSubstr("; coded in UTC, without an offset")));
    EXPECT_EQ(object_of(leniently(with_time("time='2026-03-10T23:45:00-00:20'"))),
              time_with(sb::attr(0x80, sb::time_point(sb::mjd(2026, 3, 11), 0, 5, {}, {}))));
}

TEST(Lenient, LongDurationsAreCutToTheLongest) {
    const auto made = leniently(with_time("duration='P1D'"));
    EXPECT_EQ(object_of(made), time_with(sb::attr(0x81, sb::u16(65535))));
    EXPECT_THAT(texts_of(made.warnings), ElementsAre(HasSubstr("; coded as 65535 s")));
}

TEST(Lenient, ControlCharactersAreRemoved) {
    const auto made = leniently(programme_document("<longName>Ne&#2;ws</longName>"));
    EXPECT_THAT(texts_of(made.warnings), ElementsAre(HasSubstr("U+0002"))) << "said once";
    const sb::bytes name = sb::elem(sb::tag::long_name, {sb::text("News")});
    EXPECT_EQ(object_of(made),
              sb::elem(sb::tag::epg, {sb::elem(sb::tag::schedule, {sb::elem(sb::tag::programme, {name})})}));
}

TEST(Lenient, WhatCannotBeRepairedIsLeftOut) {
    const auto made = leniently(
        programme_document("<oops/><genre type='first' colour='red'/><longName>a<b/></longName><scope/>"));
    EXPECT_THAT(
        texts_of(made.warnings),
        ElementsAre(HasSubstr("<oops>; left out"), HasSubstr("; left out"), HasSubstr("; left out"),
                    HasSubstr("; left out"), HasSubstr("<scope> does not belong in <programme>; left out")));
    EXPECT_THAT(made.errors, IsEmpty());
    EXPECT_EQ(
        object_of(made),
        sb::elem(sb::tag::epg,
                 {sb::elem(sb::tag::schedule, {sb::elem(sb::tag::programme,
                                                        {sb::elem(sb::tag::genre, sb::bytes()),
                                                         sb::elem(sb::tag::long_name, {sb::text("a")})})})}));
}

TEST(Lenient, ABearerThatNamesNothingIsLeftOutAsAWhole) {
    const auto made = leniently(service_document("<bearer id='dab:1e0' url='x'/>"));
    EXPECT_EQ(made.warnings.size(), 1u);
    EXPECT_THAT(made.omitted, testing::SizeIs(1)) << "the service, which has no other";
}

TEST(Lenient, NamespacesAreForgiven) {
    const auto made = leniently("<epg><schedule/></epg>");
    EXPECT_EQ(object_of(made), sb::elem(sb::tag::epg, {sb::elem(sb::tag::schedule, sb::bytes())}));
}

TEST(Lenient, ATopElementThatIsNoneIsStillRefused) {
    EXPECT_THAT(texts_of(leniently("<html/>").errors), testing::SizeIs(1));
}

}  // namespace
