// What makes a recording unusable, and how it is said: FILE:LINE: what is wrong.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/tools/files/files.h"
#include "tools/recording/recording.h"

namespace {

using dabspi::parse_recording;
using dabspi::read_recording;
using dabspi::recording;

std::vector<std::string> texts(const recording& of) {
    std::vector<std::string> result;
    for (const dabspi::recording_error& error : of.errors)
        result.push_back(error_text(of, error));
    return result;
}

// The one error of a recording whose third line is the one given.
std::string error_of(const std::string& line) {
    const recording result = parse_recording("\n# comment\n" + line + "\n", "day.jsonl", "");
    EXPECT_TRUE(result.calls.empty()) << "a line with an error is no call";
    const std::vector<std::string> errors = texts(result);
    EXPECT_EQ(errors.size(), 1u) << line;
    return errors.empty() ? "" : errors[0];
}

const char* const BODY =
    R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"a","sid":1)";

TEST(RecordingErrors, ALineThatIsNotJsonNamesTheColumn) {
    EXPECT_EQ(error_of("{\"call\":"),
              "day.jsonl:3: this is not JSON: column 9: syntax error while parsing value - unexpected end of "
              "input; "
              "expected '[', '{', or a literal");
    EXPECT_EQ(
        error_of("SetDateTime"),
        "day.jsonl:3: this is not JSON: column 1: syntax error while parsing value - invalid literal; last "
        "read: 'S'");
    EXPECT_EQ(error_of("{} {}"),
              "day.jsonl:3: this is not JSON: column 4: syntax error while parsing value - unexpected '{'; "
              "expected "
              "end of input");
}

TEST(RecordingErrors, ALineThatIsNotUtf8IsNotJson) {
    EXPECT_EQ(error_of("{\"call\":\"\xFF\"}"),
              "day.jsonl:3: this is not JSON: column 10: syntax error while parsing value - invalid string: "
              "ill-formed UTF-8 byte; last read: '\"\xEF\xBF\xBD'");
}

TEST(RecordingErrors, ALongBrokenTextIsNotRepeatedInTheMessage) {
    EXPECT_EQ(
        error_of("{\"call\":\"" + std::string(100000, 'x')),
        "day.jsonl:3: this is not JSON: column 100010: syntax error while parsing value - invalid string: "
        "missing closing quote");
}

TEST(RecordingErrors, ANumberBeyondAllBoundsIsAnErrorOfItsLine) {
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","sid":1e999,"ensemble":1})"),
              "day.jsonl:3: this is not JSON: number overflow parsing '1e999'");
}

TEST(RecordingErrors, ALineHoldsOneObject) {
    for (const char* line : {"[]", "7", "\"SetDateTime\"", "null"})
        EXPECT_EQ(error_of(line),
                  "day.jsonl:3: a line must hold one JSON object, such as {\"call\":\"SetDateTime\",...}");
}

TEST(RecordingErrors, TheCallMustBeNamed) {
    EXPECT_EQ(error_of("{}"), "day.jsonl:3: the key \"call\" is missing");
    EXPECT_EQ(error_of("{\"call\":7}"), "day.jsonl:3: call is 7; a text is needed");
    EXPECT_EQ(error_of("{\"call\":\"SetDatetime\"}"),
              "day.jsonl:3: unknown call \"SetDatetime\"; the calls are SetDateTime, SetCurrentService, "
              "FeedMotBody "
              "and ResendNowNext");
}

TEST(RecordingErrors, AMissingKeyIsNamed) {
    EXPECT_EQ(error_of(R"({"call":"SetDateTime","date":"20260302"})"),
              "day.jsonl:3: SetDateTime needs the key \"time\"");
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","sid":1})"),
              "day.jsonl:3: SetCurrentService needs the key \"ensemble\"");
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","ensemble":1})"),
              "day.jsonl:3: SetCurrentService needs the key \"sid\"");
}

TEST(RecordingErrors, EveryMissingKeyOfALineIsNamed) {
    const recording result = parse_recording(R"({"call":"FeedMotBody"})", "day.jsonl", "");
    EXPECT_EQ(texts(result),
              (std::vector<std::string>{
                  "day.jsonl:1: FeedMotBody needs the key \"content_type\"",
                  "day.jsonl:1: FeedMotBody needs the key \"content_subtype\"",
                  "day.jsonl:1: FeedMotBody needs the key \"content_name\"",
                  "day.jsonl:1: FeedMotBody needs the key \"sid\"",
                  "day.jsonl:1: FeedMotBody needs the body: give \"file\" (a path) or \"body\" (base64)",
              }));
}

TEST(RecordingErrors, AnUnknownKeyIsNamedWithTheKnownOnes) {
    EXPECT_EQ(error_of(R"({"call":"SetDateTime","date":"20260302","time":"1030","zone":1})"),
              "day.jsonl:3: unknown key \"zone\"; SetDateTime takes date, time");
    EXPECT_EQ(error_of(R"({"call":"ResendNowNext","sid":1})"),
              "day.jsonl:3: unknown key \"sid\"; ResendNowNext takes none");
    EXPECT_EQ(error_of(std::string(BODY) + R"(,"body":"","ensemble":1})"),
              "day.jsonl:3: unknown key \"ensemble\"; FeedMotBody takes content_type, content_subtype, "
              "content_name, "
              "sid, ecc, scids, file, body");
}

TEST(RecordingErrors, AKeyMayNotStandTwice) {
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","sid":1,"ensemble":1,"sid":1})"),
              "day.jsonl:3: the key \"sid\" stands twice");
    EXPECT_EQ(error_of(R"({"call":"ResendNowNext","call":"ResendNowNext"})"),
              "day.jsonl:3: the key \"call\" stands twice");
}

TEST(RecordingErrors, ANumberOutsideItsFieldIsAnErrorNotAWrappedValue) {
    const auto with_sid = [](const std::string& sid) {
        return error_of(R"({"call":"SetCurrentService","sid":)" + sid + R"(,"ensemble":1})");
    };
    EXPECT_EQ(with_sid("4294967296"), "day.jsonl:3: sid 4294967296 is out of range (0 to 4294967295)");
    EXPECT_EQ(with_sid("-1"), "day.jsonl:3: sid -1 is out of range (0 to 4294967295)");
    EXPECT_EQ(with_sid("\"0x100000000\""),
              "day.jsonl:3: sid \"0x100000000\" is out of range (0 to 4294967295)");
    EXPECT_EQ(with_sid("\"18446744073709551616\""),
              "day.jsonl:3: sid \"18446744073709551616\" is out of range (0 to 4294967295)");
    EXPECT_EQ(with_sid("\"0x10000000000000001\""),
              "day.jsonl:3: sid \"0x10000000000000001\" is out of range (0 to 4294967295)");
    EXPECT_EQ(with_sid("18446744073709551617"),
              "day.jsonl:3: sid 1.8446744073709552e+19 is out of range (0 to 4294967295)");
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","sid":1,"ensemble":65536})"),
              "day.jsonl:3: ensemble 65536 is out of range (0 to 65535)");
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","sid":1,"ecc":256,"ensemble":1})"),
              "day.jsonl:3: ecc 256 is out of range (0 to 255)");
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","sid":1,"scids":"0x100","ensemble":1})"),
              "day.jsonl:3: scids \"0x100\" is out of range (0 to 255)");
}

TEST(RecordingErrors, ANumberMustBeANumber) {
    for (const char* sid : {"\"\"", "\"0x\"", "\"C221\"", "\" 1\"", "\"1 \"", "\"+1\"", "\"-1\"", "\"0xG\"",
                            "\"1.0\"", "true", "null", "0.5"}) {
        EXPECT_EQ(error_of(std::string(R"({"call":"SetCurrentService","sid":)") + sid + R"(,"ensemble":1})"),
                  std::string("day.jsonl:3: sid is ") + sid +
                      "; a whole number is needed, or its text in decimal or with 0x in hexadecimal");
    }
    EXPECT_EQ(error_of(R"({"call":"SetCurrentService","sid":[1],"ensemble":1})"),
              "day.jsonl:3: sid is an array; a whole number is needed, or its text in decimal or with 0x in "
              "hexadecimal");
}

TEST(RecordingErrors, ATextMustBeAText) {
    EXPECT_EQ(error_of(R"({"call":"SetDateTime","date":20260302,"time":"1030"})"),
              "day.jsonl:3: date is 20260302; a text is needed");
    EXPECT_EQ(
        error_of(
            R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":{},"sid":1,"body":""})"),
        "day.jsonl:3: content_name is an object; a text is needed");
    EXPECT_EQ(error_of(std::string(BODY) + R"(,"file":7})"), "day.jsonl:3: file is 7; a text is needed");
    EXPECT_EQ(error_of(std::string(BODY) + R"(,"body":null})"),
              "day.jsonl:3: body is null; a text is needed");
}

TEST(RecordingErrors, ADateThatCannotBeConvertedMakesTheRecordingUnusable) {
    for (const char* date : {"20xx0101", "2026 302", "+2260302", "-1260302"}) {
        EXPECT_EQ(error_of(std::string(R"({"call":"SetDateTime","date":")") + date + R"(","time":"1030"})"),
                  std::string("day.jsonl:3: date \"") + date +
                      "\" cannot be converted: it must be 8 digits, YYYYMMDD");
    }
    EXPECT_EQ(error_of(R"({"call":"SetDateTime","date":"20260302","time":"1o30"})"),
              "day.jsonl:3: time \"1o30\" cannot be converted: it must be 4 digits, HHMM");
}

TEST(RecordingErrors, ABodyIsGivenExactlyOnce) {
    EXPECT_EQ(error_of(std::string(BODY) + R"(,"file":"a.bin","body":""})"),
              "day.jsonl:3: both \"file\" and \"body\" are given; give exactly one");
    EXPECT_EQ(error_of(std::string(BODY) + "}"),
              "day.jsonl:3: FeedMotBody needs the body: give \"file\" (a path) or \"body\" (base64)");
}

TEST(RecordingErrors, ABodyMustBeBase64) {
    EXPECT_EQ(error_of(std::string(BODY) + R"(,"body":"AA"})"),
              "day.jsonl:3: body is not base64: its length is 2, not a multiple of 4; pad it with \"=\"");
}

TEST(RecordingErrors, ABodyFileThatCannotBeReadIsNamedInFull) {
    const temporary_directory directory;
    const std::string line = std::string(BODY) + R"(,"file":"objects/a.bin"})";
    const std::string path = write_file(directory, "day.jsonl", line);
    EXPECT_EQ(texts(read_recording(path)),
              (std::vector<std::string>{path + ":1: cannot read the body file \"objects/a.bin\" (" +
                                        (directory.path() / "objects/a.bin").string() +
                                        "): No such file or directory"}));
}

TEST(RecordingErrors, ABodyFileMustBeARegularFile) {
    const temporary_directory directory;
    ASSERT_EQ(::mkfifo((directory.path() / "pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(directory.path() / "folder");
    for (const char* name : {"pipe", "folder"}) {
        const std::string path =
            write_file(directory, "day.jsonl", std::string(BODY) + R"(,"file":")" + name + "\"}");
        EXPECT_EQ(
            texts(read_recording(path)),
            (std::vector<std::string>{path + ":1: cannot read the body file \"" + name + "\" (" +
                                      (directory.path() / name).string() + "): it is not a regular file"}));
    }
}

TEST(RecordingErrors, AFileNameMustBeOne) {
    for (const char* name : {"", "a\\u0000b"}) {
        const std::string error = error_of(std::string(BODY) + R"(,"file":")" + name + "\"}");
        EXPECT_EQ(error, std::string("day.jsonl:3: cannot read the body file \"") + name +
                             "\": this is not a file's name");
    }
}

TEST(RecordingErrors, AByteOrderMarkInsideTheRecordingIsRefused) {
    EXPECT_EQ(error_of("\xEF\xBB\xBF{\"call\":\"ResendNowNext\"}"),
              "day.jsonl:3: a byte order mark (EF BB BF) may only stand at the beginning; remove it");
}

TEST(RecordingErrors, EveryLineWithAnErrorIsReported) {
    std::string text;
    for (int i = 0; i < 30; ++i)
        text += "{\"call\":\"ResendNowNext\"}\nnonsense\n";
    const recording result = parse_recording(text, "day.jsonl", "");
    ASSERT_EQ(result.errors.size(), 30u);
    for (std::size_t i = 0; i < 30; ++i)
        EXPECT_EQ(result.errors[i].line, 2 * i + 2);
}

TEST(RecordingErrors, ARecordingThatCannotBeOpenedHasNoLine) {
    const temporary_directory directory;
    const std::string path = (directory.path() / "day.jsonl").string();
    EXPECT_EQ(texts(read_recording(path)),
              (std::vector<std::string>{path + ": cannot open the recording: No such file or directory"}));
}

TEST(RecordingErrors, ADirectoryIsNoRecording) {
    const temporary_directory directory;
    const std::string path = directory.path().string();
    EXPECT_EQ(texts(read_recording(path)),
              (std::vector<std::string>{
                  path + ": this is no call recording: it is a folder; \"dabspi check\" and inspect take "
                         "folders of dumped objects"}));
}

}  // namespace
