// The host's dates and times as text.
#include "src/parse/mot_date_time.h"

#include <gtest/gtest.h>

#include <locale>
#include <stdexcept>

#include "tests/parse/reading.h"

namespace {

using spi::MotDateTime;

// What the host's own locale may do to numbers: 2016 becomes 2.0.1.6.
class grouping : public std::numpunct<char> {
 protected:
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\001"; }
};

class with_grouping_locale {
 public:
    with_grouping_locale()
        : before_(std::locale::global(std::locale(std::locale::classic(), new grouping))) {}
    ~with_grouping_locale() { std::locale::global(before_); }
    with_grouping_locale(const with_grouping_locale&) = delete;
    with_grouping_locale& operator=(const with_grouping_locale&) = delete;

 private:
    std::locale before_;
};

TEST(MotDateTime, NewOneIsZero) {
    EXPECT_EQ(MotDateTime(), date_time_of(0, 0, 0, 0, 0));
}

TEST(MotDateTime, TakesADateOfEightDigits) {
    MotDateTime t;
    t.put_date("20160307");
    EXPECT_EQ(t, date_time_of(2016, 3, 7));
}

TEST(MotDateTime, TakesATimeOfFourDigits) {
    MotDateTime t;
    t.put_time("0930");
    EXPECT_EQ(t, date_time_of(0, 0, 0, 9, 30));
}

TEST(MotDateTime, DateLeavesTheTimeAndTimeLeavesTheDate) {
    MotDateTime t = date_time_of(2001, 2, 3, 4, 5);
    t.put_date("20160307");
    EXPECT_EQ(t, date_time_of(2016, 3, 7, 4, 5));
    t.put_time("2359");
    EXPECT_EQ(t, date_time_of(2016, 3, 7, 23, 59));
}

TEST(MotDateTime, DateOfAnotherLengthChangesNothing) {
    const MotDateTime before = date_time_of(2001, 2, 3, 4, 5);
    for (const char* text : {"2016-01-01", "", "2016010", "201601011", "xxxxxxx"}) {
        MotDateTime t = before;
        EXPECT_NO_THROW(t.put_date(text)) << text;
        EXPECT_EQ(t, before) << text;
    }
}

TEST(MotDateTime, TimeOfAnotherLengthChangesNothing) {
    const MotDateTime before = date_time_of(2001, 2, 3, 4, 5);
    for (const char* text : {"09:30", "", "930", "093000", "xxx"}) {
        MotDateTime t = before;
        EXPECT_NO_THROW(t.put_time(text)) << text;
        EXPECT_EQ(t, before) << text;
    }
}

TEST(MotDateTime, NumbersAreNotCheckedForTheirRange) {
    MotDateTime t;
    t.put_date("20161399");
    t.put_time("9999");
    EXPECT_EQ(t, date_time_of(2016, 13, 99, 99, 99));
}

// Runs `put` and gives the text of the exception that must come out of it.
template <class Put>
std::string refusal(Put put) {
    try {
        put();
    } catch (const std::invalid_argument& refused) {
        return refused.what();
    }
    return "accepted";
}

TEST(MotDateTime, PartsAreConvertedByTheStandardConversion) {
    MotDateTime t;
    t.put_date("2016 1 7");
    EXPECT_EQ(t, date_time_of(2016, 1, 7));
    t.put_date("+201+2+3");
    EXPECT_EQ(t, date_time_of(201, 2, 3));
    t.put_date(" 016-1-1");  // cut to the fields' widths
    EXPECT_EQ(t, date_time_of(16, 255, 255));
    t = MotDateTime();
    t.put_time(" 9 5");
    EXPECT_EQ(t, date_time_of(0, 0, 0, 9, 5));
    t.put_time("+9-0");
    EXPECT_EQ(t, date_time_of(0, 0, 0, 9, 0));
}

TEST(MotDateTime, DatePartThatIsNotANumberThrowsStoi) {
    for (const char* text : {"20xx0101", "xxxx0101", "201x0101", "2016x101", "20160x01", "2016010x",
                             "2016 xx1", "20161 01", "201601  ", "2016--01", "201601+ ", "    0101"}) {
        MotDateTime t;
        EXPECT_EQ(refusal([&] { t.put_date(text); }), "stoi") << text;
    }
    MotDateTime t;
    EXPECT_EQ(refusal([&] {
                  t.put_date(
                      std::string("2016\0"
                                  "101",
                                  8));
              }),
              "stoi");
    EXPECT_EQ(refusal([&] {
                  t.put_date(
                      "2016\xB2\xB3"
                      "01");
              }),
              "stoi");
}

TEST(MotDateTime, TimePartThatIsNotANumberThrowsStoi) {
    for (const char* text : {"x930", "0x30", "093x", "09:3", "9 30", "090 ", "09+ ", "--30", "09  "}) {
        MotDateTime t;
        EXPECT_EQ(refusal([&] { t.put_time(text); }), "stoi") << text;
    }
}

TEST(MotDateTime, PartsBeforeTheOneThatFailsKeepTheirNewValues) {
    MotDateTime t = date_time_of(2001, 2, 3, 4, 5);
    EXPECT_THROW(t.put_date("20xx0507"), std::invalid_argument);
    EXPECT_EQ(t, date_time_of(2001, 2, 3, 4, 5));
    EXPECT_THROW(t.put_date("2016xx07"), std::invalid_argument);
    EXPECT_EQ(t, date_time_of(2016, 2, 3, 4, 5));
    EXPECT_THROW(t.put_date("201705xx"), std::invalid_argument);
    EXPECT_EQ(t, date_time_of(2017, 5, 3, 4, 5));
    EXPECT_THROW(t.put_time("xx30"), std::invalid_argument);
    EXPECT_EQ(t, date_time_of(2017, 5, 3, 4, 5));
    EXPECT_THROW(t.put_time("11xx"), std::invalid_argument);
    EXPECT_EQ(t, date_time_of(2017, 5, 3, 11, 5));
}

TEST(MotDateTime, DateTextHasDashesAndTwoDigits) {
    EXPECT_EQ(date_time_of(2016, 3, 7).date(), "2016-03-07");
    EXPECT_EQ(date_time_of(2016, 12, 31).date(), "2016-12-31");
    EXPECT_EQ(date_time_of(1859, 255, 19).date(), "1859-255-19");
}

TEST(MotDateTime, YearIsNotPadded) {
    EXPECT_EQ(MotDateTime().date(), "0-00-00");
    EXPECT_EQ(date_time_of(65535, 1, 1).date(), "65535-01-01");
}

TEST(MotDateTime, TimeTextHasAColonAndTwoDigits) {
    EXPECT_EQ(date_time_of(2016, 3, 7, 9, 5).time(), "09:05");
    EXPECT_EQ(date_time_of(2016, 3, 7, 0, 0).time(), "00:00");
    EXPECT_EQ(date_time_of(2016, 3, 7, 23, 59).time(), "23:59");
    EXPECT_EQ(date_time_of(2016, 3, 7, 255, 255).time(), "255:255");
}

TEST(MotDateTime, TextsDoNotFollowTheHostsLocale) {
    const with_grouping_locale host;
    std::ostringstream plain;
    plain << 2016;
    ASSERT_EQ(plain.str(), "2.0.1.6");  // the locale is in force
    EXPECT_EQ(date_time_of(2016, 3, 17).date(), "2016-03-17");
    EXPECT_EQ(date_time_of(2016, 3, 17, 19, 45).time(), "19:45");
}

TEST(MotDateTime, EqualWhenAllFieldsAre) {
    const MotDateTime t = date_time_of(2016, 3, 7, 9, 30);
    EXPECT_TRUE(t == date_time_of(2016, 3, 7, 9, 30));
    EXPECT_FALSE(t != date_time_of(2016, 3, 7, 9, 30));
    EXPECT_TRUE(t != date_time_of(2017, 3, 7, 9, 30));
    EXPECT_TRUE(t != date_time_of(2016, 4, 7, 9, 30));
    EXPECT_TRUE(t != date_time_of(2016, 3, 8, 9, 30));
    EXPECT_TRUE(t != date_time_of(2016, 3, 7, 10, 30));
    EXPECT_TRUE(t != date_time_of(2016, 3, 7, 9, 31));
}

}  // namespace
