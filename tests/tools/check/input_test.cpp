#include "tools/check/input.h"

#include <gtest/gtest.h>

#include "tests/tools/files/files.h"

namespace {

using namespace dabspi::check;

TEST(Clock, IsReadWithAndWithoutATime) {
    for (const char* const text : {"2026-03-10", "20260310"}) {
        const auto clock = parse_clock(text);
        ASSERT_TRUE(clock) << text;
        EXPECT_EQ(clock->date() + " " + clock->time(), "2026-03-10 12:00");
    }
    for (const char* const text : {"2026-03-10T07:05", "2026-03-10 07:05", "20260310T0705", "202603100705"}) {
        const auto clock = parse_clock(text);
        ASSERT_TRUE(clock) << text;
        EXPECT_EQ(clock->date() + " " + clock->time(), "2026-03-10 07:05");
    }
}

TEST(Clock, RefusesWhatIsNoDate) {
    for (const char* const text : {"", "yesterday", "2026-13-10", "2026-03-00", "2026-03-10T24:00",
                                   "2026-3-10", "10.03.2026", "2026-03-10T", "00000000"})
        EXPECT_FALSE(parse_clock(text)) << text;
}

TEST(Clock, OfThisComputerIsTaken) {
    const auto today = parse_clock("today");
    const auto now = parse_clock("now");
    ASSERT_TRUE(today && now);
    EXPECT_EQ(today->time(), "12:00");
    EXPECT_GE(today->year, 2026);
    EXPECT_GE(now->date(), today->date()) << "read a moment later";
}

TEST(Clock, KnowsTheCalendar) {
    EXPECT_FALSE(parse_clock("2026-02-29"));
    EXPECT_FALSE(parse_clock("2026-04-31T12:00"));
    EXPECT_TRUE(parse_clock("2028-02-29"));
}

// Of a recording.
checked_input read_input(const std::string& path, const folder_options& options) {
    return read_inputs(path, options).front();
}

TEST(CheckedInput, SaysWhatIsWrongWithARecording) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "bad.jsonl", "{\"call\":\"Sing\"}\n");
    const checked_input in = read_input(path, {});
    ASSERT_EQ(in.errors.size(), 1U);
    EXPECT_EQ(in.errors[0].substr(0, path.size() + 3), path + ":1:");
    EXPECT_EQ(in.location(3), path + ":3");
    EXPECT_EQ(in.location(0), path);
}

TEST(CheckedInput, RefusesAFoldersOptionsForARecording) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "empty.jsonl", "\n");
    EXPECT_TRUE(read_input(path, {}).errors.empty());
    folder_options options;
    options.ensemble = dabspi::dab_identifier::of_ensemble("0x1");
    ASSERT_EQ(read_input(path, options).errors.size(), 1U);
    EXPECT_NE(read_input(path, options).errors[0].find("are for folders"), std::string::npos);
}

}  // namespace
