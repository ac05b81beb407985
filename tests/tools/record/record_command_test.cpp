// dabspi record as a user runs it; and the example recordings, which are what their plans give.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"
#include "tools/recording/recording.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

std::string document(const std::string& name) {
    return "<epg xmlns='http://www.worlddab.org/schemas/spi/31'><schedule><programme><longName>" + name +
           "</longName></programme></schedule></epg>";
}

const std::string kPlan = R"({"data_service": "0xE1C00098", "steps": [
    {"clock": "2026-03-02T10:30"}, {"feed": {"xml": "pi.xml"}}]})";

class RecordCommand : public testing::Test {
 protected:
    finished_command record(const std::vector<std::string>& more) {
        command_input input{{"record"}};
        input.arguments.insert(input.arguments.end(), more.begin(), more.end());
        input.directory = files_.path().string();
        input.standard_input = standard_input_;
        return run_dabspi(input);
    }

    std::string read(const std::string& name) const { return read_file((files_.path() / name).string()); }

    temporary_directory files_;
    std::string standard_input_;
};

TEST_F(RecordCommand, WritesTheRecordingAndItsBodies) {
    write_file(files_, "plans/day.json", kPlan);
    write_file(files_, "plans/pi.xml", document("News"));
    const finished_command end = record({"--directory", "out", "plans/day.json"});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.out, "out/day.jsonl: 2 calls, 1 body file, 211 bytes\n");
    EXPECT_EQ(end.err, "");
    EXPECT_EQ(
        read("out/day.jsonl"),
        "{\"call\":\"SetDateTime\",\"date\":\"20260302\",\"time\":\"1030\"}\n"
        "{\"call\":\"FeedMotBody\",\"content_type\":7,\"content_subtype\":1,\"content_name\":\"epg.EHB\","
        "\"sid\":\"0xE1C00098\",\"ecc\":\"0xE1\",\"file\":\"objects/epg.EHB\"}\n");
    EXPECT_EQ(read("out/objects/epg.EHB").size(), 14u);
    EXPECT_THAT(dabspi::read_recording((files_.path() / "out/day.jsonl").string()).errors, IsEmpty());
}

TEST_F(RecordCommand, WhatIsThereWithTheSameBytesIsLeftAlone) {
    write_file(files_, "day.json", kPlan);
    write_file(files_, "pi.xml", document("News"));
    EXPECT_EQ(record({"day.json"}).status, 0);
    const auto before = fs::last_write_time(files_.path() / "objects/epg.EHB");
    EXPECT_EQ(record({"day.json"}).status, 0);
    EXPECT_EQ(fs::last_write_time(files_.path() / "objects/epg.EHB"), before);
}

TEST_F(RecordCommand, CheckingListsWhatDiffersAndWhatIsMissingAndWritesNothing) {
    write_file(files_, "day.json", kPlan);
    write_file(files_, "pi.xml", document("News"));
    finished_command end = record({"--check", "day.json"});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.out, "missing: objects/epg.EHB\nmissing: day.jsonl\n");
    EXPECT_FALSE(fs::exists(files_.path() / "day.jsonl"));
    EXPECT_EQ(record({"day.json"}).status, 0);
    EXPECT_EQ(record({"--check", "day.json"}).status, 0);
    write_file(files_, "pi.xml", document("Nows"));
    end = record({"--check", "day.json"});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.out, "differs: objects/epg.EHB\n");
}

TEST_F(RecordCommand, ErrorsHaveTheirPlaceAndNothingIsWritten) {
    write_file(files_, "good.json", kPlan);
    write_file(files_, "pi.xml", document("News"));
    write_file(
        files_, "bad.json",
        R"({"data_service": 1, "steps": [{"feed": {"xml": "bad.xml"}}, {"feed": {"xml": "no.xml"}}]})");
    write_file(files_, "bad.xml", "<epg/>");
    const finished_command end = record({"good.json", "bad.json"});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.out, "");
    EXPECT_EQ(end.err,
              "dabspi: bad.json: /steps/0/feed: bad.xml:1:1: epg: the element is in no namespace; SPI "
              "documents are in "
              "xmlns=\"http://www.worlddab.org/schemas/spi/31\"\n"
              "dabspi: bad.json: /steps/1/feed: no.xml: cannot be read: No such file or directory\n"
              "dabspi: nothing was written\n");
    EXPECT_FALSE(fs::exists(files_.path() / "good.jsonl"));
}

TEST_F(RecordCommand, WhatIsNotJsonIsSaidWithItsLine) {
    write_file(files_, "bad.json", "{\n\"steps\": [,]}");
    EXPECT_THAT(record({"bad.json"}).err,
                HasSubstr("dabspi: bad.json: this is not JSON: line 2, column 11: syntax error"));
    EXPECT_THAT(record({"none.json"}).err,
                HasSubstr("dabspi: none.json: cannot be read: No such file or directory\n"));
}

TEST_F(RecordCommand, TwoPlansMayShareAFileOnlyIfItIsTheSame) {
    write_file(files_, "a.json", kPlan);
    write_file(files_, "b.json", kPlan);
    write_file(files_, "c/b.json", kPlan);
    write_file(files_, "pi.xml", document("News"));
    write_file(files_, "c/pi.xml", document("Sport"));
    EXPECT_EQ(record({"a.json", "b.json"}).status, 0);
    const finished_command end = record({"a.json", "c/b.json"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(
        end.err,
        HasSubstr("dabspi: c/b.json: \"objects/epg.EHB\" is another file in a.json; rename one, or record "
                  "into two folders\n"));
}

TEST_F(RecordCommand, WarningsOfDocumentsAreSaid) {
    write_file(files_, "day.json",
               R"({"data_service": 1, "steps": [{"feed": {"xml": "pi.xml", "lenient": true}}]})");
    write_file(files_, "pi.xml",
               "<epg xmlns='http://www.worlddab.org/schemas/spi'><schedule><programme oops='1'>"
               "<alias/></programme></schedule></epg>");
    const finished_command end = record({"day.json"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.err, HasSubstr("<programme> has no such attribute; left out\n"));
    EXPECT_THAT(end.err, HasSubstr("dabspi: pi.xml: left out: elements that have no coding (1)\n"));
}

TEST_F(RecordCommand, StandardInputGivesRecordingJsonl) {
    standard_input_ = R"({"steps": [{"clock": "2026-03-02T10:30"}]})";
    EXPECT_EQ(record({"-"}).out, "recording.jsonl: 1 call, 0 body files, 55 bytes\n");
}

TEST_F(RecordCommand, AFileThatCannotBeWrittenIsAFailure) {
    write_file(files_, "day.json", kPlan);
    write_file(files_, "pi.xml", document("News"));
    write_file(files_, "objects", "a file");
    const finished_command end = record({"day.json"});
    EXPECT_EQ(end.status, 3);
    EXPECT_THAT(end.err, HasSubstr("objects/epg.EHB cannot be written: "));
}

std::vector<std::string> example_plans() {
    std::vector<std::string> plans;
    std::error_code missing;
    for (const auto& each : fs::directory_iterator(DABSPI_RECORDINGS "/sources", missing))
        if (each.path().extension() == ".json") plans.push_back(each.path().string());
    return plans;
}

TEST(ExampleRecordings, AreWhatTheirPlansGive) {
    command_input input{{"record", "--check", "--directory", DABSPI_RECORDINGS}};
    const std::vector<std::string> plans = example_plans();
    ASSERT_GT(plans.size(), 20u);
    input.arguments.insert(input.arguments.end(), plans.begin(), plans.end());
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.out, "");
    EXPECT_EQ(end.err, "");
}

// What no recording names is left over from one that is gone.
TEST(ExampleRecordings, NameEveryObjectThatIsThere) {
    std::string recordings;
    for (const auto& each : fs::directory_iterator(DABSPI_RECORDINGS))
        if (each.path().extension() == ".jsonl") recordings += read_file(each.path().string());
    for (const auto& each : fs::directory_iterator(DABSPI_RECORDINGS "/objects"))
        EXPECT_THAT(recordings, HasSubstr("\"objects/" + each.path().filename().string() + "\"")) << each;
}

// What no plan names was forgotten there.
TEST(ExampleRecordings, HavePlansThatNameEveryDocument) {
    for (const auto& plan : example_plans()) {
        const fs::path folder = fs::path(plan).parent_path() / fs::path(plan).stem();
        const std::string text = read_file(plan);
        if (!fs::exists(folder)) continue;
        for (const auto& each : fs::directory_iterator(folder)) {
            // Of a schedule, the plan names the day in general.
            std::string name = each.path().filename().string();
            const std::size_t day = name.find("-202603");
            if (folder.filename() == "day-on-air" && day != std::string::npos)
                name = name.substr(0, day) + "-{date}.xml";
            EXPECT_THAT(text, HasSubstr("/" + name + "\"")) << plan;
        }
    }
    std::error_code missing;
    for (const auto& each : fs::directory_iterator(DABSPI_RECORDINGS "/sources", missing))
        EXPECT_TRUE(!each.is_directory() || fs::exists(each.path().string() + ".json")) << each;
}

TEST_F(RecordCommand, WhatItIsMadeOfIsNotWrittenOver) {
    write_file(files_, "pi.xml", document("News"));
    write_file(files_, "day.json", R"({"data_service": 1, "steps": [
        {"clock": "2026-03-02T10:30"}, {"feed": {"xml": "pi.xml", "file": "pi.xml"}}]})");
    const finished_command end = record({"day.json"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("\"pi.xml\" would be written over, and it is an input"));
    EXPECT_EQ(read("pi.xml"), document("News"));
    EXPECT_EQ(record({"-d", "out", "day.json"}).status, 0);
}

TEST_F(RecordCommand, NamesOfFilesHoldNoNulAndAreNotTooLong) {
    write_file(files_, "a.png", "x");
    const auto plan = [](const std::string& keys) {
        return R"({"data_service": 1, "steps": [{"clock": "2026-03-02T10:30"}, {"feed": {)" + keys +
               R"(, "content_type": 2, "content_subtype": 3}}]})";
    };
    write_file(files_, "file.json", plan(R"("object": "a.png", "name": "n", "file": "p.jsonl\u0000x")"));
    EXPECT_THAT(record({"file.json"}).err, HasSubstr("is no name inside the recording's folder"));
    write_file(files_, "source.json", plan(R"("object": "a.png\u0000x", "name": "n")"));
    EXPECT_THAT(record({"source.json"}).err, HasSubstr("is no file's name"));
    write_file(files_, "long.json",
               plan(R"("object": "a.png", "name": "n", "file": ")" + std::string(300, 'n') + "\""));
    EXPECT_THAT(record({"long.json"}).err, HasSubstr("is too long for a file's name"));
    write_file(files_, "pi.xml", document("News"));
    write_file(files_, "content.json",
               R"({"data_service": 1, "steps": [{"clock": "2026-03-02T10:30"},
        {"feed": {"xml": "pi.xml", "name": "a\u0000b)" +
                   std::string(3000, 'n') + R"("}}]})");
    const finished_command end = record({"content.json"});
    EXPECT_EQ(end.status, 0) << end.err << "a content name may be anything";
    EXPECT_THAT(read("content.jsonl"), HasSubstr("a\\u0000bn"));
}

TEST_F(RecordCommand, AnEmptyDirectoryIsRefused) {
    write_file(files_, "day.json", kPlan);
    const finished_command end = record({"-d", "", "day.json"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("a name is needed, and it is empty"));
}

TEST_F(RecordCommand, ASkeletonIsAPlanThatCanBeRecordedAndPlayed) {
    write_file(
        files_, "in/si.xml",
        "<serviceInformation xmlns='http://www.worlddab.org/schemas/spi/31'><services><service>"
        "<shortName>One</shortName><bearer id='dab:ce1.c185.c221.0'/><bearer id='dab:ce1.c186.c221.0'/>"
        "</service></services></serviceInformation>");
    write_file(files_, "in/pi.xml",
               "<epg xmlns='http://www.worlddab.org/schemas/spi/31'><schedule><scope><serviceScope "
               "id='dab:ce1.c185.c221.0'/></scope><programme><longName>Breakfast</longName><location><time "
               "time='2026-03-10T07:00:00+01:00' duration='PT3H'/></location></programme></schedule></epg>");
    write_file(files_, "in/again.xml", read("in/pi.xml"));
    write_file(files_, "in/readme.txt", "no object");
    const finished_command made = record({"--skeleton", "in"});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_THAT(made.err, HasSubstr("in/readme.txt: is no document, no SPI object and no image; left out"));
    EXPECT_THAT(made.err, HasSubstr("the data service is guessed: 0xE1000001"));
    EXPECT_THAT(made.err, HasSubstr("is the name of several objects"));
    write_file(files_, "day.json", made.out);
    const finished_command end = record({"day.json"});
    EXPECT_EQ(end.status, 0) << end.err << made.out;
    command_input replay{{"replay", "--json", "day.jsonl"}};
    replay.directory = files_.path().string();
    const finished_command played = run_dabspi(replay);
    EXPECT_EQ(played.status, 0) << played.err;
    EXPECT_THAT(
        played.out,
        HasSubstr("\"date\":\"2026-03-10\",\"time\":\"07:00\",\"duration\":180,\"name\":\"Breakfast\""));
}

TEST_F(RecordCommand, ASkeletonOfNothingIsUnusable) {
    write_file(files_, "a.txt", "x");
    EXPECT_EQ(record({"--skeleton", "a.txt"}).status, 2);
    EXPECT_THAT(record({"--skeleton", "none"}).err, HasSubstr("none: cannot be read: No such file"));
    std::filesystem::create_directory(files_.path() / "empty");
    EXPECT_THAT(record({"--skeleton", "empty"}).err,
                HasSubstr("there is no document, object or image to send"));
    EXPECT_EQ(record({"--skeleton", "--check", "a.txt"}).status, 2);
}

}  // namespace
