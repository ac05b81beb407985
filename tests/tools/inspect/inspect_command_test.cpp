// dabspi inspect as a user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "testkit/spi_builder_objects.h"
#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"

namespace {

namespace sb = spi_builder;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string text_of(const sb::bytes& content) {
    return {content.begin(), content.end()};
}

const std::string kGood =
    text_of(sb::elem(0x02, {sb::elem(0x21, {sb::elem(0x1C, {sb::elem(0x12, {sb::text("N\xC3\xB8")})})})}));
const std::string kMalformed = std::string("\x02\x09\x21", 3);
const char* const kRecording =
    R"({"call":"SetCurrentService","sid":1,"ensemble":"0xC185"})"
    "\n"
    R"({"call":"FeedMotBody","content_type":7,"content_subtype":1,"content_name":"a","sid":1,"body":"AgA="})"
    "\n"
    R"({"call":"FeedMotBody","content_type":7,"content_subtype":1,"content_name":"b","sid":1,"body":"AgIhAA=="})"
    "\n";

class InspectCommand : public testing::Test {
 protected:
    InspectCommand()
        : good_(write_file(files_, "good.bin", kGood)),
          malformed_(write_file(files_, "malformed.bin", kMalformed)),
          recording_(write_file(files_, "r.jsonl", kRecording)) {}

    static finished_command inspect(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "inspect");
        return run_dabspi({arguments});
    }

    temporary_directory files_;
    const std::string good_;
    const std::string malformed_;
    const std::string recording_;
};

TEST_F(InspectCommand, EndsWithZeroForWellFormedObjects) {
    const finished_command end = inspect({good_});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.err, "");
    EXPECT_THAT(end.out, AllOf(HasSubstr("well formed\n"), HasSubstr("text \"N\xC3\xB8\"\n")));
}

TEST_F(InspectCommand, EndsWithOneForMalformedOnes) {
    const finished_command end = inspect({malformed_, good_});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.err, "");
    EXPECT_THAT(end.out,
                AllOf(HasSubstr("malformed in 2 places\n"), HasSubstr("good.bin: programme information")));
}

TEST_F(InspectCommand, EndsWithTwoForWhatCannotBeReadAndShowsTheRest) {
    const finished_command end = inspect({(files_.path() / "none").string(), good_});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, AllOf(StartsWith("dabspi: "),
                               HasSubstr("none: cannot open it: No such file or directory\n")));
    EXPECT_THAT(end.out, HasSubstr("good.bin"));
}

TEST_F(InspectCommand, ReadsStandardInput) {
    command_input input{{"inspect", "-"}};
    input.standard_input = kGood;
    EXPECT_THAT(run_dabspi(input).out, StartsWith("<stdin>: programme information"));
    input.standard_input = kRecording;
    EXPECT_THAT(run_dabspi(input).out, StartsWith("<stdin>:2: a (ContentType 7, sub-type 1)"));
}

TEST_F(InspectCommand, ShowsTheObjectsOfARecordingOrOneOfThem) {
    EXPECT_THAT(inspect({recording_}).out, AllOf(HasSubstr("r.jsonl:2: a "), HasSubstr("r.jsonl:3: b ")));
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--line", "3", recording_}, {recording_, "--line", "3"}}) {
        const finished_command one = inspect(arguments);
        EXPECT_EQ(one.status, 0) << one.err;
        EXPECT_THAT(one.out, AllOf(Not(HasSubstr("r.jsonl:2")), HasSubstr("r.jsonl:3: b ")));
    }
    EXPECT_EQ(inspect({"--line", "1", recording_}).status, 2);
}

TEST_F(InspectCommand, PrintsOneJsonObjectALine) {
    const finished_command end = inspect({"--json", recording_});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(std::count(end.out.begin(), end.out.end(), '\n'), 2);
    EXPECT_THAT(end.out, StartsWith("{\"file\":"));
}

TEST_F(InspectCommand, PrintsTheXmlDocumentOfOneObject) {
    const finished_command end = inspect({"--xml", good_});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.err, "");
    EXPECT_THAT(end.out, AllOf(StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<epg "),
                               HasSubstr("<longName>N\xC3\xB8</longName>")));
    EXPECT_EQ(inspect({"--xml", "--line", "3", recording_}).status, 0);
}

TEST_F(InspectCommand, AnXmlDocumentIsOfOneObjectOnly) {
    const finished_command several = inspect({"--xml", recording_});
    EXPECT_EQ(several.status, 2);
    EXPECT_EQ(several.out, "");
    EXPECT_EQ(
        several.err,
        "dabspi: an XML document holds one object, and there are 2: name one, or choose one with --line\n");
    const finished_command none = inspect({"--xml", write_file(files_, "i.png", "\x89PNG\r\n\x1A\n")});
    EXPECT_EQ(none.status, 2);
    EXPECT_EQ(none.err, "dabspi: there is no SPI object for an XML document\n");
    EXPECT_EQ(inspect({"--xml", (files_.path() / "none").string()}).status, 2);
}

TEST_F(InspectCommand, WhatXmlCannotShowIsSaidBesideIt) {
    const finished_command end = inspect({"--xml", malformed_});
    EXPECT_EQ(end.status, 1);
    EXPECT_THAT(end.out, HasSubstr("<schedule />"));
    EXPECT_THAT(end.err,
                HasSubstr("malformed.bin: byte 0: the length says 9 bytes, and 1 are left in the object\n"));
    const finished_command none = inspect({"--xml", write_file(files_, "p.bin", std::string("\x1C\x00", 2))});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_THAT(none.err,
                HasSubstr("the object has no epg and no serviceInformation, so there is no XML document\n"));
}

TEST_F(InspectCommand, ShowsBytesOnRequest) {
    EXPECT_THAT(inspect({"--hex", good_}).out, HasSubstr("01 03 4E C3 B8"));
}

TEST_F(InspectCommand, ColoursAPipeOnlyWhenAskedTo) {
    EXPECT_THAT(inspect({good_}).out, Not(HasSubstr("\033[")));
    EXPECT_THAT(inspect({"--color", "always", good_}).out, HasSubstr("\033["));
    EXPECT_THAT(inspect({"--color", "never", good_}).out, Not(HasSubstr("\033[")));
}

TEST_F(InspectCommand, TakesTheEnsembleInAnyNotation) {
    EXPECT_THAT(inspect({"--ensemble", "0xC185", good_}).out, HasSubstr("a receiver on ensemble C185 takes"));
    EXPECT_THAT(inspect({"--ensemble", "e1.c185", good_}).out,
                HasSubstr("a receiver on ensemble C185 takes"));
    EXPECT_THAT(inspect({"--ensemble", "49541", good_}).err, HasSubstr("decimal 49541 is 0xC185"));
}

TEST_F(InspectCommand, UsageErrorsEndWithTwo) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"--json", "--xml", good_},
                                                      {"--xml", "--hex", good_},
                                                      {"--color", "often", good_},
                                                      {"--line", "0", recording_},
                                                      {"--line", "x", recording_},
                                                      {"--ensemble", "0x10000", good_}}) {
        const finished_command end = inspect(arguments);
        EXPECT_EQ(end.status, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(end.out, "") << testing::PrintToString(arguments);
        EXPECT_THAT(end.err, StartsWith("dabspi: ")) << testing::PrintToString(arguments);
    }
}

TEST_F(InspectCommand, HelpNamesEveryOption) {
    const finished_command end = inspect({"--help"});
    EXPECT_EQ(end.status, 0);
    for (const char* option : {"OBJECT ...", "--line N", "--ensemble ECC.EID", "--json", "--xml", "--hex",
                               "--color auto|always|never"})
        EXPECT_THAT(end.out, HasSubstr(option));
}

TEST_F(InspectCommand, AFullDiskIsAFailureAndAClosedPipeIsQuiet) {
    command_input input{{"inspect", good_}};
    input.standard_output = "/dev/full";
    const finished_command full = run_dabspi(input);
    EXPECT_EQ(full.status, 3);
    EXPECT_THAT(full.err, HasSubstr("cannot write to standard output: No space left on device"));
    command_input closing{{"inspect", DABSPI_RECORDINGS "/day-on-air.jsonl"}};
    closing.close_after_first_output = true;
    EXPECT_EQ(run_dabspi(closing).err, "");
}

TEST_F(InspectCommand, TakesTheExampleRecordings) {
    for (const auto& each : std::filesystem::directory_iterator(DABSPI_RECORDINGS)) {
        if (each.path().extension() != ".jsonl" || each.path().stem() == "day-on-air") continue;
        const finished_command end = inspect({"--json", each.path().string()});
        EXPECT_THAT(end.status, testing::AnyOf(0, 1)) << each.path();
        EXPECT_EQ(end.err, "") << each.path();
    }
}

TEST_F(InspectCommand, ADocumentThatLeavesSomethingOutSaysSoAndFails) {
    std::string content;
    for (int i = 0; i < 250001; ++i)
        content += std::string("\x7F\0", 2);
    std::string object = "\x02\xFF";
    for (const int shift : {16, 8, 0})
        object += static_cast<char>(content.size() >> shift & 0xFF);
    write_file(files_, "many.bin", object + content);
    const finished_command end = inspect({"--xml", (files_.path() / "many.bin").string()});
    EXPECT_EQ(end.status, 1);
    EXPECT_THAT(end.err,
                HasSubstr("more than 250,000 elements and attributes; the rest is left out; what follows "
                          "it is not in the document"));
}

}  // namespace
