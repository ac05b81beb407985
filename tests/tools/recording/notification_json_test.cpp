#include "tools/recording/notification_json.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "src/parse/spi_time_point.h"
#include "tools/text/utf8.h"

namespace {

using dabspi::notification_json;
using dabspi::now_next;
using dabspi::programme;
using dabspi::programme_info;
using dabspi::service_id;
using dabspi::station_logo;

spi::MotDateTime at(std::uint16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour,
                    std::uint8_t minute) {
    spi::MotDateTime result;
    result.year = year;
    result.month = month;
    result.day = day;
    result.hour = hour;
    result.minute = minute;
    return result;
}

// The line of a now/next pair whose now has this name.
std::string with_name(const std::string& name) {
    return notification_json(now_next{programme{at(2026, 3, 2, 10, 0), 60, name}, programme{}});
}

std::string expected_with_name(const std::string& name_and_more) {
    return R"({"event":"now_next","now":{"date":"2026-03-02","time":"10:00","duration":60,"name":)" +
           name_and_more + R"(},"next":{"date":"0-00-00","time":"00:00","duration":0,"name":""}})";
}

TEST(NotificationJson, PrintsNowAndNext) {
    const now_next pair{programme{at(2026, 3, 2, 10, 0), 60, "Breakfast"},
                        programme{at(2026, 3, 2, 11, 0), 90, "Elevenses"}};
    EXPECT_EQ(
        notification_json(pair),
        R"({"event":"now_next","now":{"date":"2026-03-02","time":"10:00","duration":60,"name":"Breakfast"},"next":{"date":"2026-03-02","time":"11:00","duration":90,"name":"Elevenses"}})");
}

TEST(NotificationJson, PrintsAStationLogo) {
    EXPECT_EQ(
        notification_json(station_logo{service_id{0xC221, 0xE1, 0}, 2, 3, "E1C2210_3.PNG"}),
        R"({"event":"station_logo","sid":"0xC221","ecc":"0xE1","scids":0,"format":2,"size_code":3,"file":"E1C2210_3.PNG"})");
}

TEST(NotificationJson, PrintsAProgramme) {
    const programme_info info{service_id{0xE1C00098, 0xE1, 5},
                              programme{at(2026, 3, 2, 10, 0), 60, "Breakfast"}};
    EXPECT_EQ(
        notification_json(info),
        R"({"event":"programme_info","sid":"0xE1C00098","ecc":"0xE1","scids":5,"programme":{"date":"2026-03-02","time":"10:00","duration":60,"name":"Breakfast"}})");
}

TEST(NotificationJson, IdentifiersArePrintedWithoutPadding) {
    EXPECT_EQ(
        notification_json(station_logo{service_id{0x0A, 0, 15}, 0, 0, ""}),
        R"({"event":"station_logo","sid":"0xA","ecc":"0x0","scids":15,"format":0,"size_code":0,"file":""})");
}

TEST(NotificationJson, AnUnsetProgrammePrintsTheDayThatTheZeroDayIs) {
    const programme unset{spi::SpiTimePoint().local_time(0), 0, ""};
    EXPECT_EQ(
        notification_json(now_next{unset, unset}),
        R"({"event":"now_next","now":{"date":"1859-255-19","time":"00:00","duration":0,"name":""},"next":{"date":"1859-255-19","time":"00:00","duration":0,"name":""}})");
}

TEST(NotificationJson, PrintsDatesAndTimesThatAreNone) {
    const programme odd{at(65535, 255, 99, 67, 46), 1092, "x"};
    EXPECT_EQ(
        notification_json(programme_info{service_id{}, odd}),
        R"({"event":"programme_info","sid":"0x0","ecc":"0x0","scids":0,"programme":{"date":"65535-255-99","time":"67:46","duration":1092,"name":"x"}})");
}

TEST(NotificationJson, WellFormedNamesStandAsTheyAre) {
    EXPECT_EQ(with_name("Caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"),
              expected_with_name("\"Caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\""));
}

TEST(NotificationJson, ControlCharactersAreEscaped) {
    EXPECT_EQ(with_name(std::string("a\"b\\c\n\t\r\b\f\x01\x1F/\0", 14)),
              expected_with_name(R"("a\"b\\c\n\t\r\b\f\u0001\u001f/\u0000")"));
}

TEST(NotificationJson, IllFormedNamesShowReplacementsAndAllTheirBytes) {
    EXPECT_EQ(with_name("Caf\xE9!"), expected_with_name("\"Caf\xEF\xBF\xBD!\",\"name_hex\":\"436166e921\""));
    EXPECT_EQ(with_name("\xE2\x28\xA1"),
              expected_with_name("\"\xEF\xBF\xBD(\xEF\xBF\xBD\",\"name_hex\":\"e228a1\""));
}

TEST(NotificationJson, BothNamesOfAPairMayBeIllFormed) {
    const programme odd{at(2026, 3, 2, 10, 0), 60, "\xFF"};
    EXPECT_EQ(notification_json(now_next{odd, odd}),
              "{\"event\":\"now_next\",\"now\":{\"date\":\"2026-03-02\",\"time\":\"10:00\",\"duration\":60,"
              "\"name\":"
              "\"\xEF\xBF\xBD\",\"name_hex\":\"ff\"},\"next\":{\"date\":\"2026-03-02\",\"time\":\"10:00\","
              "\"duration\":60,"
              "\"name\":\"\xEF\xBF\xBD\",\"name_hex\":\"ff\"}}");
}

// Every sequence of up to four bytes, one of each kind that UTF-8 tells apart: the JSON library's replacement
// must be the Unicode standard's, one for each maximal ill-formed part.
TEST(NotificationJson, ReplacesEachMaximalIllFormedPartOnce) {
    const std::vector<unsigned char> kinds = {0x41, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC1, 0xC2, 0xDF,
                                              0xE0, 0xE1, 0xED, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5, 0xFF};
    const auto check = [](const std::string& name) {
        std::string replaced;
        for (std::string_view rest = name; !rest.empty();) {
            const dabspi::utf8_part part = dabspi::first_utf8_part(rest);
            replaced += part.well_formed ? rest.substr(0, part.length) : std::string_view("\xEF\xBF\xBD");
            rest.remove_prefix(part.length);
        }
        const std::string line = with_name(name);
        if (line.rfind("{\"event\":\"now_next\",\"now\":{\"date\":\"2026-03-02\",\"time\":\"10:00\","
                       "\"duration\":60,\"name\":\"" +
                           dabspi::printable_json(replaced) + "\"",
                       0) == 0)
            return true;
        ADD_FAILURE() << testing::PrintToString(name) << " prints as " << line;
        return false;
    };
    for (const unsigned char a : kinds)
        for (const unsigned char b : kinds)
            for (const unsigned char c : kinds) {
                const std::string three = {static_cast<char>(a), static_cast<char>(b), static_cast<char>(c)};
                if (!check(three)) return;
                if (a < 0xF0) continue;  // only these begin characters of four bytes
                for (const unsigned char d : kinds)
                    if (!check(three + static_cast<char>(d))) return;
            }
}

}  // namespace
