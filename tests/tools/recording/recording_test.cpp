// What a recording may look like: calls, numbers, comments, line ends, body files.

#include "tools/recording/recording.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/tools/files/files.h"

namespace {

using dabspi::bytes;
using dabspi::feed_mot_body;
using dabspi::parse_recording;
using dabspi::read_recording;
using dabspi::recording;
using dabspi::resend_now_next;
using dabspi::set_current_service;
using dabspi::set_date_time;

recording parsed(const std::string& text) {
    recording result = parse_recording(text, "day.jsonl", "");
    for (const dabspi::recording_error& error : result.errors)
        ADD_FAILURE() << error_text(result, error);
    return result;
}

template <typename Call>
Call only(const std::string& line) {
    const recording result = parsed(line);
    if (result.calls.size() == 1 && std::holds_alternative<Call>(result.calls[0].what))
        return std::get<Call>(result.calls[0].what);
    ADD_FAILURE() << "not the one call expected: " << line;
    return {};
}

TEST(Recording, ReadsSetDateTime) {
    const auto call = only<set_date_time>(R"({"call":"SetDateTime","date":"20260302","time":"1030"})");
    EXPECT_EQ(call.date, "20260302");
    EXPECT_EQ(call.time, "1030");
}

TEST(Recording, KeepsClockTextsOfOtherLengthsWhateverTheyHold) {
    const auto call = only<set_date_time>(R"({"call":"SetDateTime","date":"2026-03-02","time":""})");
    EXPECT_EQ(call.date, "2026-03-02");
    EXPECT_EQ(call.time, "");
}

TEST(Recording, ReadsSetCurrentService) {
    const auto call = only<set_current_service>(
        R"({"call":"SetCurrentService","sid":"0xE1C00098","ecc":"0xE1","scids":3,"ensemble":"0xC185"})");
    EXPECT_EQ(call.service.sid, 0xE1C00098u);
    EXPECT_EQ(call.service.ecc, 0xE1);
    EXPECT_EQ(call.service.scids, 3);
    EXPECT_EQ(call.ensemble, 0xC185);
}

TEST(Recording, EccAndScidsMayBeLeftOut) {
    const auto call = only<set_current_service>(R"({"call":"SetCurrentService","sid":1,"ensemble":2})");
    EXPECT_EQ(call.service.ecc, 0);
    EXPECT_EQ(call.service.scids, 0);
}

TEST(Recording, ReadsFeedMotBodyWithTheBodyInBase64) {
    const auto call = only<feed_mot_body>(
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":256,"content_name":"caf\u00e9","sid":1,"body":"AAEC"})");
    EXPECT_EQ(call.content_type, 7);
    EXPECT_EQ(call.content_subtype, 256);
    EXPECT_EQ(call.content_name, "caf\xC3\xA9");
    EXPECT_EQ(*call.body, (bytes{0, 1, 2}));
}

TEST(Recording, AnEmptyBodyIsABody) {
    const auto call = only<feed_mot_body>(
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"","sid":1,"body":""})");
    EXPECT_TRUE(call.body->empty());
}

TEST(Recording, ReadsResendNowNext) {
    only<resend_now_next>(R"({"call":"ResendNowNext"})");
}

TEST(Recording, NumbersMayBeJsonNumbersOrDecimalOrHexadecimalTexts) {
    for (const char* number : {"49697", "\"49697\"", "\"0xC221\"", "\"0xc221\"", "\"0X0000c221\"",
                               "\"0049697\"", "49697.0", "4.9697e4"}) {
        const auto call = only<set_current_service>(std::string(R"({"call":"SetCurrentService","sid":)") +
                                                    number + R"(,"ensemble":)" + number + "}");
        EXPECT_EQ(call.service.sid, 0xC221u) << number;
        EXPECT_EQ(call.ensemble, 0xC221) << number;
    }
}

TEST(Recording, TheLargestValueOfEachFieldFits) {
    const auto call = only<feed_mot_body>(
        R"({"call":"FeedMotBody","content_type":255,"content_subtype":65535,"content_name":"x",)"
        R"("sid":4294967295,"ecc":255,"scids":"0xFF","body":""})");
    EXPECT_EQ(call.content_type, 255);
    EXPECT_EQ(call.content_subtype, 65535);
    EXPECT_EQ(call.service.sid, 0xFFFFFFFFu);
    EXPECT_EQ(call.service.ecc, 255);
    EXPECT_EQ(call.service.scids, 255);
}

TEST(Recording, PassesOverBlankAndCommentLinesAndCountsThem) {
    const recording result = parsed("# a comment\n\n  \t\n   # {\"call\":1}\n{\"call\":\"ResendNowNext\"}\n");
    ASSERT_EQ(result.calls.size(), 1u);
    EXPECT_EQ(result.calls[0].line, 5u);
}

TEST(Recording, ReadsLinesThatEndInCarriageReturnAndLineFeed) {
    const recording result =
        parsed("{\"call\":\"ResendNowNext\"}\r\n\r\n# comment\r\n{\"call\":\"ResendNowNext\"}\r\n");
    ASSERT_EQ(result.calls.size(), 2u);
    EXPECT_EQ(result.calls[1].line, 4u);
}

TEST(Recording, TheLastLineNeedsNoLineEnd) {
    EXPECT_EQ(parsed("{\"call\":\"ResendNowNext\"}\n{\"call\":\"ResendNowNext\"}").calls.size(), 2u);
}

TEST(Recording, AByteOrderMarkMayStandAtTheBeginning) {
    EXPECT_EQ(parsed("\xEF\xBB\xBF{\"call\":\"ResendNowNext\"}\n").calls.size(), 1u);
    EXPECT_EQ(parsed("\xEF\xBB\xBF# comment\n{\"call\":\"ResendNowNext\"}\n").calls.size(), 1u);
    EXPECT_EQ(parsed("\xEF\xBB\xBF").calls.size(), 0u);
}

TEST(Recording, MayBeEmpty) {
    EXPECT_TRUE(parsed("").calls.empty());
}

TEST(Recording, BodyFilesStartFromTheRecordingsOwnDirectory) {
    const temporary_directory directory;
    write_file(directory, "objects/a.bin", std::string("\0\x01\xFF", 3));
    const std::string path = write_file(
        directory, "day.jsonl",
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"a","sid":1,"file":"objects/a.bin"})");
    const recording result = read_recording(path);
    ASSERT_TRUE(result.errors.empty()) << error_text(result, result.errors[0]);
    ASSERT_EQ(result.calls.size(), 1u);
    EXPECT_EQ(*std::get<feed_mot_body>(result.calls[0].what).body, (bytes{0, 1, 255}));
}

TEST(Recording, ABodyFileMayBeNamedInFull) {
    const temporary_directory directory;
    const std::string body = write_file(directory, "a.bin", "abc");
    const auto call = only<feed_mot_body>(
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"a","sid":1,"file":")" +
        body + "\"}");
    EXPECT_EQ(*call.body, (bytes{'a', 'b', 'c'}));
}

TEST(Recording, AnEmptyBodyFileIsAnEmptyBody) {
    const temporary_directory directory;
    const std::string body = write_file(directory, "a.bin", "");
    const auto call = only<feed_mot_body>(
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"a","sid":1,"file":")" +
        body + "\"}");
    EXPECT_TRUE(call.body->empty());
}

TEST(Recording, AFileNamedManyTimesIsHeldOnce) {
    const temporary_directory directory;
    write_file(directory, "a.bin", "abc");
    const std::string line =
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"a","sid":1,"file":"a.bin"})";
    const recording result =
        read_recording(write_file(directory, "day.jsonl", line + "\n" + line + "\n" + line));
    ASSERT_EQ(result.calls.size(), 3u);
    const auto& first = std::get<feed_mot_body>(result.calls[0].what).body;
    EXPECT_EQ(std::get<feed_mot_body>(result.calls[1].what).body, first);
    EXPECT_EQ(std::get<feed_mot_body>(result.calls[2].what).body, first);
}

}  // namespace
