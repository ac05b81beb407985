#include "tools/recording/notification_text.h"

#include <gtest/gtest.h>

#include <string>

#include "src/parse/spi_time_point.h"

namespace {

using dabspi::notification_text;
using dabspi::notification_time;
using dabspi::now_next;
using dabspi::programme;
using dabspi::programme_info;
using dabspi::service_id;
using dabspi::station_logo;

spi::MotDateTime at(const std::string& date, const std::string& time) {
    spi::MotDateTime result;
    result.put_date(date);
    result.put_time(time);
    return result;
}

const programme kAtTen{at("20260302", "1000"), 60, "Breakfast"};
const programme kUnset{spi::SpiTimePoint().local_time(0), 0, ""};
const notification_time kMorning{at("20260302", "1030"), service_id{0xC221, 0xE1, 0}};

std::string text(const dabspi::notification& what, const notification_time& when = kMorning) {
    return notification_text(what, when, "/var/logos/HdStationLogo/");
}

TEST(NotificationText, NowAndNextStandInColumns) {
    const programme elevenses{at("20260302", "1100"), 5, "Elevenses"};
    EXPECT_EQ(text(now_next{kAtTen, elevenses}),
              "2026-03-02 10:30  E1.C221.0  now   2026-03-02 10:00    60 min  Breakfast\n"
              "                             next  2026-03-02 11:00     5 min  Elevenses\n");
}

TEST(NotificationText, AnUnsetProgrammeIsADash) {
    EXPECT_EQ(text(now_next{kAtTen, kUnset}),
              "2026-03-02 10:30  E1.C221.0  now   2026-03-02 10:00    60 min  Breakfast\n"
              "                             next  -\n");
}

TEST(NotificationText, AnUnsetProgrammesOldDurationIsNotShown) {
    programme cleared = kUnset;
    cleared.duration = 60;
    EXPECT_EQ(text(programme_info{service_id{0xC221, 0xE1, 0}, cleared}),
              "2026-03-02 10:30  E1.C221.0  item  -\n");
}

TEST(NotificationText, AProgrammeWithoutANameStillHasATime) {
    EXPECT_EQ(text(programme_info{service_id{0xC222, 0xE1, 3}, programme{at("20260302", "1000"), 60, ""}}),
              "2026-03-02 10:30  E1.C222.3  item  2026-03-02 10:00    60 min  \n");
}

TEST(NotificationText, ALogoShowsItsKindAndItsFullPath) {
    EXPECT_EQ(text(station_logo{service_id{0xC222, 0xE1, 0}, 2, 3, "E1C2220_3.PNG"}),
              "2026-03-02 10:30  E1.C222.0  logo  PNG 128x128  /var/logos/HdStationLogo/E1C2220_3.PNG\n");
}

TEST(NotificationText, EveryFormatAndSizeOfALogoHasAName) {
    const auto kind = [](std::int32_t format, std::int32_t size) {
        const std::string line = text(station_logo{service_id{0xC222, 0xE1, 0}, format, size, "x"});
        const std::size_t start = line.find("logo  ") + 6;
        return line.substr(start, line.find("  /var") - start);
    };
    EXPECT_EQ(kind(0, 0), "unknown of unknown size");
    EXPECT_EQ(kind(1, 1), "JPEG 32x32");
    EXPECT_EQ(kind(2, 2), "PNG 112x32");
    EXPECT_EQ(kind(2, 4), "PNG 320x240");
    EXPECT_EQ(kind(2, 5), "PNG 600x600");
    EXPECT_EQ(kind(2, 6), "PNG of other size");
    EXPECT_EQ(kind(3, 7), "format 3 size code 7");
    EXPECT_EQ(kind(-1, -1), "format -1 size code -1");
}

TEST(NotificationText, WhatIsNotKnownIsADash) {
    EXPECT_EQ(text(now_next{kUnset, kUnset}, notification_time{}),
              "-                 -          now   -\n"
              "                             next  -\n");
}

TEST(NotificationText, ALongIdentifierMovesBothLinesOfAPair) {
    EXPECT_EQ(text(now_next{kAtTen, kUnset},
                   notification_time{at("20260302", "1030"), service_id{0xE1C00098, 0xE1, 15}}),
              "2026-03-02 10:30  E1.E1C00098.15  now   2026-03-02 10:00    60 min  Breakfast\n"
              "                                  next  -\n");
}

TEST(NotificationText, NamesCannotDriveTheTerminal) {
    EXPECT_EQ(
        text(programme_info{service_id{0xC221, 0xE1, 0},
                            programme{at("20260302", "1000"), 1092, "a\x1B[2J\n\xFF"}}),
        "2026-03-02 10:30  E1.C221.0  item  2026-03-02 10:00  1092 min  a\\u001b[2J\\u000a\xEF\xBF\xBD\n");
}

}  // namespace
