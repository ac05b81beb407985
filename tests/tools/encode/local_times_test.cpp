// Times without an offset, and what receivers show of them.

#include <filesystem>

#include "tests/tools/encode/encoding.h"
#include "tools/encode/local_offset.h"
#include "tools/spi/decode.h"
#include "tools/spi/xml_document.h"

namespace {

using dabspi::local_offset;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

dabspi::encode_options at(const std::optional<local_offset>& local) {
    dabspi::encode_options options;
    options.local = local;
    return options;
}

std::string timed(const std::string& time) {
    return pi_document(
        "<schedule creationTime='2026-03-10T07:00:00Z'><scope><serviceScope "
        "id='dab:ce1.c185.c221.0'/></scope><programme><location><time time='" +
        time + "'/></location></programme></schedule>");
}

// The time as it is coded.
std::string coded_time(const std::string& time, const std::optional<local_offset>& local) {
    const auto made = encoded(timed(time), at(local));
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
    EXPECT_THAT(texts_of(made.remarks), IsEmpty());
    if (made.objects.empty()) return {};
    const std::string xml = xml_of(dabspi::spi_object::decode(write_object(made.objects.front().top))).text;
    const std::string begin = "<time time=\"";
    const std::size_t from = xml.find(begin) + begin.size();
    return xml.substr(from, xml.find('"', from) - from);
}

// 2026: summer time from 29 March, 01:00 UTC, to 25 October, 01:00 UTC.
std::string zone_of_rules(const std::string& rule) {
    const std::string counts = std::string(15, '\0') + std::string(4 * 4, '\0') + std::string("\0\0\0\1", 4) +
                               std::string("\0\0\0\1", 4);
    const std::string block = "TZif2" + counts + std::string(6, '\0') + std::string(1, '\0');
    return block + block + "\n" + rule + "\n";
}

TEST(LocalTimes, AnOffsetIsCodedWithTimesInUtc) {
    EXPECT_EQ(coded_time("2026-07-10T06:00:00Z", local_offset::fixed("+01:00")), "2026-07-10T07:00:00+01:00");
    EXPECT_EQ(coded_time("2026-07-10T06:00:00Z", local_offset::fixed("-03:30")), "2026-07-10T02:30:00-03:30");
}

TEST(LocalTimes, TimesWithoutAZoneAreLocal) {
    EXPECT_EQ(coded_time("2026-07-10T07:00:00", local_offset::fixed("+01:00")), "2026-07-10T07:00:00+01:00");
    EXPECT_EQ(coded_time("2026-07-10T00:30:00", local_offset::fixed("+02:00")), "2026-07-10T00:30:00+02:00");
}

TEST(LocalTimes, AnOffsetOfTheDocumentHolds) {
    EXPECT_EQ(coded_time("2026-07-10T07:00:00+02:00", local_offset::fixed("+01:00")),
              "2026-07-10T07:00:00+02:00");
}

TEST(LocalTimes, AZoneHasSummerTime) {
    const auto zone = local_offset::tzif(zone_of_rules("GMT0BST,M3.5.0/1,M10.5.0"));
    ASSERT_TRUE(zone.has_value());
    EXPECT_EQ(coded_time("2026-07-10T06:00:00Z", zone), "2026-07-10T07:00:00+01:00");
    EXPECT_EQ(coded_time("2026-01-10T06:00:00Z", zone), "2026-01-10T06:00:00+00:00");
    EXPECT_EQ(coded_time("2026-03-29T00:59:00Z", zone), "2026-03-29T00:59:00+00:00");
    EXPECT_EQ(coded_time("2026-03-29T01:00:00Z", zone), "2026-03-29T02:00:00+01:00");
    EXPECT_EQ(coded_time("2026-10-25T00:59:00Z", zone), "2026-10-25T01:59:00+01:00");
    EXPECT_EQ(coded_time("2026-10-25T01:00:00Z", zone), "2026-10-25T01:00:00+00:00");
    EXPECT_EQ(coded_time("2026-07-10T07:00:00", zone), "2026-07-10T07:00:00+01:00");
    EXPECT_EQ(coded_time("2026-10-25T01:30:00", zone), "2026-10-25T01:30:00+01:00") << "the first of two";
    EXPECT_EQ(coded_time("2026-03-29T01:30:00", zone), "2026-03-29T01:30:00+00:00")
        << "a time that is left out";
}

TEST(LocalTimes, SummerTimeMayGoOverTheTurnOfTheYear) {
    const auto zone = local_offset::tzif(zone_of_rules("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0"));
    ASSERT_TRUE(zone.has_value());
    EXPECT_EQ(zone->at(1767225600), 11 * 3600) << "1 January 2026";
    EXPECT_EQ(zone->at(1782864000), 10 * 3600 + 1800) << "1 July 2026";
}

TEST(LocalTimes, DaysOfTheYearAreCountedWithAndWithoutLeapDays) {
    const auto with = local_offset::tzif(zone_of_rules("AAA0BBB,59/0,364/0"));
    const auto without = local_offset::tzif(zone_of_rules("AAA0BBB,J60/0,J365/0"));
    ASSERT_TRUE(with && without);
    constexpr std::int64_t kLeapDay = 1709164800;  // 29 February 2024, 00:00 UTC: day 59
    EXPECT_EQ(with->at(kLeapDay - 1), 0);
    EXPECT_EQ(with->at(kLeapDay), 3600);
    EXPECT_EQ(without->at(kLeapDay), 0);
    EXPECT_EQ(without->at(kLeapDay + 86400), 3600) << "J60 is 1 March in every year";
}

TEST(LocalTimes, OddZoneDataIsRefused) {
    const std::string whole = zone_of_rules("GMT0BST,M3.5.0/1,M10.5.0");
    for (std::size_t size = 0; size < whole.size(); ++size)
        local_offset::tzif(whole.substr(0, size));  // no matter what comes of it
    EXPECT_FALSE(local_offset::tzif("").has_value());
    EXPECT_FALSE(local_offset::tzif("TZif2").has_value());
    for (const char* const rule :
         {"", "G0", "GMT", "GMT0BST,M13.5.0,M10.5.0", "GMT0BST,M3.5.0", "GMT0BST,Jx,J1"}) {
        const auto zone = local_offset::tzif(zone_of_rules(rule));
        EXPECT_EQ(zone ? zone->at(1782864000) : 0, 0) << rule;
    }
}

TEST(LocalTimes, TheSystemsDataIsReadByName) {
    std::string error;
    if (!std::filesystem::exists("/usr/share/zoneinfo/Europe/London"))
        GTEST_SKIP() << "this machine has no time zone data (package tzdata)";
    const auto zone = local_offset::zone("Europe/London", error);
    ASSERT_TRUE(zone.has_value()) << error;
    EXPECT_EQ(zone->at(1348531200), 3600) << "25 September 2012";
    EXPECT_EQ(zone->at(1390089600), 0) << "19 January 2014";
    EXPECT_EQ(zone->at(3802204800), 3600) << "June 2090: by the rule";
    for (const char* const name : {"Europe/Nowhere", "", "/etc/passwd", "../etc/passwd", "Europe"}) {
        EXPECT_FALSE(local_offset::zone(name, error).has_value()) << name;
        EXPECT_THAT(error, HasSubstr("is no time zone in /usr/share/zoneinfo")) << name;
    }
}

TEST(LocalTimes, OffsetsThatHaveNoCodingAreSaid) {
    const auto made =
        encoded(timed("2026-07-10T07:00:00"), at(local_offset::tzif(zone_of_rules("<+0545>-5:45"))));
    EXPECT_THAT(texts_of(made.errors), ElementsAre(HasSubstr("has no coding: half-hours are counted")));
}

TEST(LocalTimes, ADocumentInUtcIsWarnedOf) {
    const auto made = encoded(timed("2026-07-10T06:00:00Z"));
    EXPECT_THAT(texts_of(made.remarks), ElementsAre(HasSubstr("1 time in UTC, without an offset")));
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
}

TEST(LocalTimes, WhatHasNoZoneIsRefusedWithWhatReceiversShow) {
    const auto made = encoded(timed("2026-07-10T07:00:00"));
    EXPECT_THAT(
        texts_of(made.errors),
        ElementsAre(HasSubstr("local time with its offset, such as +01:00, is shown as it stands; UTC, with "
                              "Z, is shown as UTC")));
}

TEST(LocalTimes, OffsetsAreHalfHoursUpToTheLongest) {
    for (const char* const good : {"Z", "+00:00", "+15:30", "-15:30"})
        EXPECT_TRUE(local_offset::fixed(good).has_value()) << good;
    for (const char* const bad : {"", "1", "+1", "+01", "+0100", "+01:15", "+16:00", "+01:000", " +01:00"})
        EXPECT_FALSE(local_offset::fixed(bad).has_value()) << bad;
}

}  // namespace
