// What a recording may hold, and where reading stops.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/files/files.h"
#include "tools/recording/recording.h"

namespace {

using dabspi::parse_recording;
using dabspi::recording;
using dabspi::recording_limits;
using testing::HasSubstr;

recording_limits small() {
    recording_limits limits;
    limits.most_bytes = 100000;
    limits.most_line = 20000;
    limits.most_bodies = 1000;
    limits.most_calls = 5;
    return limits;
}

std::string last_error(const recording& of) {
    return of.errors.empty() ? std::string() : error_text(of, of.errors.back());
}

std::string feed(const std::string& more) {
    return "{\"call\":\"FeedMotBody\",\"content_type\":7,\"content_subtype\":0,\"content_name\":\"a\","
           "\"sid\":1," +
           more + "}\n";
}

const std::string kCall = "{\"call\":\"ResendNowNext\"}\n";

TEST(RecordingLimits, OfTextLinesAndCalls) {
    EXPECT_THAT(last_error(parse_recording(std::string(100001, ' '), "a", "", small())),
                HasSubstr("a: the recording is longer than 0 MiB; --limit raises what is taken"));
    EXPECT_THAT(last_error(parse_recording("{" + std::string(30000, ' '), "a", "", small())),
                HasSubstr("a:1: the line is longer than"));
    std::string calls;
    for (int i = 0; i < 5; ++i)
        calls += kCall;
    EXPECT_EQ(last_error(parse_recording(calls, "a", "", small())), "");
    EXPECT_THAT(last_error(parse_recording(calls + kCall, "a", "", small())), HasSubstr("more than 5 calls"));
}

TEST(RecordingLimits, OfBodiesEachFileOnce) {
    const temporary_directory files;
    write_file(files, "a.bin", std::string(600, 'a'));
    write_file(files, "b.bin", std::string(600, 'b'));
    const std::string folder = files.path().string();
    const std::string twice = feed("\"file\":\"a.bin\"") + feed("\"file\":\"a.bin\"");
    EXPECT_EQ(last_error(parse_recording(twice, "a", folder, small())), "");
    EXPECT_THAT(last_error(parse_recording(twice + feed("\"file\":\"b.bin\""), "a", folder, small())),
                HasSubstr("the bodies hold more than is taken"));
}

TEST(RecordingLimits, AFileOfManyErrorsIsNotReadToItsEnd) {
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += "y\n";
    const recording read = parse_recording(text, "a", "");
    EXPECT_EQ(read.errors.size(), 1001u);
    EXPECT_THAT(last_error(read), HasSubstr("there are many errors; the rest is not read"));
}

TEST(RecordingLimits, LongLinesThatHoldNoCallAreNotKept) {
    EXPECT_THAT(last_error(parse_recording(std::string(90000, 'x'), "a", "", small())),
                HasSubstr("a:1: a long line that holds no JSON object; is this a recording?"));
    EXPECT_EQ(last_error(parse_recording("#" + std::string(90000, 'x') + "\n" + kCall, "a", "", small())),
              "");
    const recording indented = parse_recording(std::string(19000, ' ') + kCall, "a", "", small());
    EXPECT_EQ(last_error(indented), "");
    EXPECT_EQ(indented.calls.size(), 1u) << "blanks before a call lose nothing";
}

TEST(RecordingLimits, GrowTogether) {
    const recording_limits usual;
    const recording_limits twice = recording_limits::of(512);
    EXPECT_EQ(twice.most_bytes, 2 * usual.most_bytes);
    EXPECT_EQ(twice.most_bodies, 2 * usual.most_bodies);
    EXPECT_GE(twice.most_calls, 2 * usual.most_calls);
    EXPECT_GE(twice.most_line, 2 * usual.most_line);
}

}  // namespace
