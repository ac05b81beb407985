#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testkit/spi_builder.h"
#include "tests/tools/spi/decoded.h"
#include "tools/spi/values.h"

namespace {

so::time_value decoded(const sb::bytes& from, std::vector<so::problem>* problems = nullptr) {
    std::vector<so::problem> found;
    const so::time_value value = so::decode_time(from, found);
    if (problems != nullptr) {
        *problems = found;
    } else {
        EXPECT_TRUE(found.empty()) << found.front().text;
    }
    return value;
}

so::problem only_problem_of_time(const sb::bytes& from) {
    std::vector<so::problem> problems;
    decoded(from, &problems);
    return the_only(problems);
}

TEST(TimeValue, ShortFormIsUtc) {
    const so::time_value value = decoded(sb::time_point(sb::mjd(2026, 3, 10), 7, 5));
    EXPECT_EQ(so::time_text(value), "2026-03-10T07:05:00Z");
    EXPECT_EQ(so::local_text(value), "2026-03-10 07:05");
}

TEST(TimeValue, OffsetMakesLocalTime) {
    const so::time_value value = decoded(sb::time_point(sb::mjd(2026, 3, 10), 23, 30, 11));
    EXPECT_EQ(so::time_text(value), "2026-03-11T05:00:00+05:30");
    EXPECT_EQ(so::utc_text(value), "2026-03-10T23:30:00Z");
}

TEST(TimeValue, LongFormHasSecondsAndMilliseconds) {
    const so::time_value value =
        decoded(sb::time_point(sb::mjd(2026, 3, 10), 7, 5, 2, sb::utc_fraction{59, 7}));
    EXPECT_EQ(so::time_text(value), "2026-03-10T08:05:59.007+01:00");
    EXPECT_EQ(so::local_text(value), "2026-03-10 08:05:59.007");
}

TEST(TimeValue, DatesAgreeWithTheBuilders) {
    for (std::uint32_t day = sb::mjd(1859, 1, 1); day <= sb::mjd(2200, 12, 31); day += 13) {
        so::time_value value;
        value.mjd = day;
        const std::string text = so::time_text(value);
        const int year = std::stoi(text.substr(0, 4));
        const auto month = static_cast<unsigned>(std::stoi(text.substr(5, 2)));
        const auto of_month = static_cast<unsigned>(std::stoi(text.substr(8, 2)));
        ASSERT_EQ(sb::mjd(year, month, of_month), day) << text;
        ASSERT_EQ(so::parse_time(text), value) << text;
    }
}

TEST(TimeValue, EveryTextThatIsParsedIsCodedAndReadBack) {
    for (const char* text : {"1858-11-17T00:00:00Z", "2217-09-27T23:59:59Z", "2024-02-29T12:00:00+00:00",
                             "2026-03-10T07:00:00-05:00", "2026-03-10T00:10:00+14:00",
                             "2026-01-01T00:10:00.250-03:30", "2026-12-31T23:59:59.999+15:30"}) {
        const auto value = so::parse_time(text);
        ASSERT_TRUE(value) << text;
        std::vector<so::problem> ignored;
        const so::time_value read = so::decode_time(so::encode_time(*value), ignored);
        EXPECT_EQ(read, *value) << text;
        EXPECT_EQ(so::time_text(read), text);
    }
}

TEST(TimeValue, CodingIsTheBuilders) {
    EXPECT_EQ(so::encode_time(*so::parse_time("2026-03-10T08:05:00+01:00")),
              sb::time_point(sb::mjd(2026, 3, 10), 7, 5, 2));
    EXPECT_EQ(so::encode_time(*so::parse_time("2026-03-10T08:05:01.5-01:30")),
              sb::time_point(sb::mjd(2026, 3, 10), 9, 35, -3, sb::utc_fraction{1, 500}));
    EXPECT_EQ(so::encode_time(*so::parse_time("2026-03-10T08:05:00Z"), true),
              sb::time_point(sb::mjd(2026, 3, 10), 8, 5, std::nullopt, sb::utc_fraction{0, 0}));
}

TEST(TimeValue, OtherSpellingsOfATimeAreAccepted) {
    EXPECT_EQ(so::time_text(*so::parse_time("2026-03-10T08:05")), "2026-03-10T08:05:00Z");
    EXPECT_EQ(so::time_text(*so::parse_time("2026-03-10T08:05:00")), "2026-03-10T08:05:00Z");
    EXPECT_EQ(so::time_text(*so::parse_time("2026-03-10T24:00:00Z")), "2026-03-11T00:00:00Z");
    EXPECT_EQ(so::time_text(*so::parse_time("2026-03-10T08:05:00.12345Z")), "2026-03-10T08:05:00.123Z");
}

TEST(TimeValue, WhatIsNoTimeIsRefused) {
    for (const char* text :
         {"", "2026", "2026-03-10", "2026-3-10T08:05:00Z", "2026-13-10T08:05:00Z", "2026-02-29T08:05:00Z",
          "2026-03-32T08:05:00Z", "2026-03-10T25:05:00Z", "2026-03-10T24:05:00Z", "2026-03-10T08:60:00Z",
          "2026-03-10T08:05:60Z", "2026-03-10T08:05:00.Z", "2026-03-10T08:05:00+05:45",
          "2026-03-10T08:05:00+16:00", "2026-03-10T08:05:00+01:00 ", "2026-03-10 08:05:00Z",
          "1858-11-16T23:59:00Z", "2217-09-28T00:00:00Z", "1858-11-17T00:00:00+01:00"})
        EXPECT_FALSE(so::parse_time(text)) << text;
}

TEST(TimeValue, AMissingByteIsTooShort) {
    for (std::size_t size = 0; size < 7; ++size) {
        const sb::bytes whole = sb::time_point(sb::mjd(2026, 3, 10), 7, 5, 2, sb::utc_fraction{1, 0});
        std::vector<so::problem> problems;
        decoded(sb::cut(whole, size), &problems);
        ASSERT_EQ(problems.size(), 1U) << size;
        EXPECT_EQ(problems[0].code, so::problem_code::value_too_short);
        EXPECT_THAT(problems[0].receiver, testing::StartsWith("takes missing bytes as 255, and so this as "));
    }
}

TEST(TimeValue, BytesBehindATimeAreTooMany) {
    const so::problem found = only_problem_of_time(sb::join({sb::time_point(61000, 7, 5), {0, 0}}));
    EXPECT_EQ(found.code, so::problem_code::value_too_long);
    EXPECT_EQ(found.text, "the value takes 4 bytes and has 6");
}

TEST(TimeValue, HoursThatAreNoneAreOutOfRange) {
    EXPECT_EQ(only_problem_of_time({0x38, 0x66, 0x86, 0x00}).text, "the hour is 24");
    EXPECT_EQ(only_problem_of_time({0x38, 0x66, 0x81, 0x3C}).text, "the minute is 60");
}

TEST(TimeValue, ReservedBitsAreReported) {
    EXPECT_EQ(only_problem_of_time({0xB8, 0x66, 0x85, 0x9E}).code, so::problem_code::reserved_bits);
}

TEST(TimeValue, ReceiversTakeNegativeOffsetsOneHalfHourTooFar) {
    const so::problem found = only_problem_of_time(sb::time_point(sb::mjd(2026, 3, 10), 7, 0, -2));
    EXPECT_EQ(found.code, so::problem_code::time_misread);
    EXPECT_EQ(found.text, "a time with a negative local time offset");
    EXPECT_EQ(found.receiver, "takes the offset as -01:30, and so the local time as 2026-03-10 05:30");
}

TEST(TimeValue, ReceiversDoNotKnowDatesBehindFebruary2100) {
    const so::problem found = only_problem_of_time(sb::time_point(sb::mjd(2100, 3, 2), 7, 0));
    EXPECT_EQ(found.code, so::problem_code::time_misread);
    EXPECT_EQ(found.receiver, "takes the local time as 2100-03-01 07:00");
}

}  // namespace
