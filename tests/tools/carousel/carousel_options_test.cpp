// What the options of dabspi carousel say.
#include "tools/carousel/carousel_options.h"

#include <gtest/gtest.h>

#include "tools/carousel/broadcast_day.h"

namespace {

using namespace dabspi::carousel;

TEST(CarouselOptions, TimesHaveUnits) {
    EXPECT_EQ(parse_seconds("90"), 90);
    EXPECT_EQ(parse_seconds("1.5s"), 1.5);
    EXPECT_EQ(parse_seconds("10min"), 600);
    EXPECT_EQ(parse_seconds("24h"), 86400);
    for (const char* text : {"", "s", "-1s", "0", "1d", "1 s", "1..2", "9000h", "1e9"})
        EXPECT_FALSE(parse_seconds(text)) << text;
}

TEST(CarouselOptions, BitRatesAreMultiplesOfEight) {
    EXPECT_EQ(parse_bit_rate("16kbit/s"), 16U);
    EXPECT_EQ(parse_bit_rate("8"), 8U);
    for (const char* text : {"", "0", "12", "8.5", "16kbps", "1144", "99999999999999999999"})
        EXPECT_FALSE(parse_bit_rate(text)) << text;
}

TEST(CarouselOptions, AWantedTimeIsOfEverythingUnlessItSaysWhat) {
    EXPECT_EQ(parse_wanted("90s")->what, "everything");
    EXPECT_EQ(parse_wanted("logos=1min")->seconds, 60);
    EXPECT_EQ(parse_wanted("now-next=10")->what, "now-next");
    EXPECT_FALSE(parse_wanted("images=10"));
    EXPECT_FALSE(parse_wanted("logos="));
}

TEST(CarouselOptions, TheFormIsKnownByTheEnding) {
    carousel_options options;
    options.output = "out/spi.eti";
    EXPECT_EQ(form_of(options), output_form::raw);
    options.output = "spi.packets";
    EXPECT_EQ(form_of(options), output_form::packets);
    options.output = "-";
    EXPECT_FALSE(form_of(options));
    options.form = "framed";
    EXPECT_EQ(form_of(options), output_form::framed);
}

TEST(BroadcastDay, MinutesHaveADate) {
    const auto minute = parse_minute("2026-03-02T06:05");
    ASSERT_TRUE(minute.has_value());
    EXPECT_EQ(minute->day(), 61101);
    EXPECT_EQ(minute->date(), "20260302");
    EXPECT_EQ(minute->time(), "0605");
    EXPECT_EQ(parse_minute("2026-03-02")->time(), "0000");
    EXPECT_EQ(day_of_date("20260303"), 61102);
    EXPECT_FALSE(parse_minute("2026-13-02"));
    EXPECT_FALSE(day_of_date("2026030"));
}

}  // namespace
