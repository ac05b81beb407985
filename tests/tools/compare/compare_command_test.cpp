// dabspi compare as a user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "testkit/spi_builder_objects.h"
#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"

namespace {

namespace sb = spi_builder;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr sb::service_id kStation = {0xE1, 0xC185, 0xC221, 0};

const char* const kDocument = R"(<?xml version="1.0"?>
<epg xmlns="http://www.worlddab.org/schemas/spi"><schedule>
<scope startTime="2026-03-10T00:00:00+01:00" stopTime="2026-03-11T00:00:00+01:00">
<serviceScope id="dab:ce1.c185.c221.0"/></scope>
<programme shortId="1"><mediumName>Morning</mediumName>
<location><time time="2026-03-10T07:00:00+01:00" duration="PT1H"/></location></programme>
<programme shortId="2"><mediumName>Elevenses</mediumName>
<location><time time="2026-03-10T08:00:00+01:00" duration="PT1H"/></location></programme>
</schedule></epg>)";

class CompareCommand : public testing::Test {
 protected:
    static finished_command run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "compare");
        return run_dabspi({arguments});
    }

    // The document's two programmes, the second so many minutes later; `more` of other names behind them.
    std::string object(const std::string& name, unsigned later = 0, unsigned more = 0) {
        sb::schedule_data data;
        data.scope = kStation;
        data.programmes = {{{"", "Morning", ""}, sb::local_time(61109, 7, 0, 2), 3600, {}, {}},
                           {{"", "Elevenses", ""}, sb::local_time(61109, 8, later, 2), 3600, {}, {}}};
        for (unsigned i = 0; i < more; ++i)
            data.programmes.push_back(
                {{"", "More " + std::to_string(i), ""}, sb::local_time(61109, 10, i, 2), 60, {}, {}});
        const sb::bytes made = sb::pi_object({data});
        return write_file(files_, name, {made.begin(), made.end()});
    }

    std::string document() { return write_file(files_, "pi.xml", kDocument); }

    temporary_directory files_;
};

TEST_F(CompareCommand, Ends0WhereTheBroadcastIsWhatWasPublished) {
    const finished_command end = run({document(), object("pi.bin")});
    EXPECT_EQ(end.status, 0) << end.out << end.err;
    EXPECT_THAT(end.out, HasSubstr("\nno difference\n"));
    EXPECT_THAT(end.out, StartsWith("A: "));
    EXPECT_EQ(end.err, "");
}

TEST_F(CompareCommand, Ends1AndSaysWhatDiffers) {
    const finished_command end = run({document(), object("pi.bin", 5)});
    EXPECT_EQ(end.status, 1);
    EXPECT_THAT(end.out, HasSubstr("\nProgrammes that begin at another time: 1\n"
                                   "  e1.c221.0, 2026-03-10\n"
                                   "    07:00Z \"Elevenses\" begins at 07:05Z, 5 min later\n"));
    EXPECT_THAT(end.out, HasSubstr("\n1 difference\n"));
}

TEST_F(CompareCommand, Ends2WhereItCannotSay) {
    const std::string good = object("pi.bin");
    EXPECT_EQ(run({good, (files_.path() / "none").string()}).status, 2);
    EXPECT_EQ(run({good}).status, 2);
    EXPECT_EQ(run({"-", "-"}).status, 2);
    const finished_command empty = run({good, write_file(files_, "empty.jsonl",
                                                         "{\"call\":\"SetDateTime\","
                                                         "\"date\":\"20260310\",\"time\":\"0530\"}\n")});
    EXPECT_EQ(empty.status, 2);
    EXPECT_EQ(empty.err, "dabspi: B holds neither a service nor a programme: there is nothing to compare\n");
    EXPECT_EQ(empty.out, "");
}

TEST_F(CompareCommand, AllowsATolerance) {
    const std::string later = object("later.bin", 1);
    EXPECT_EQ(run({document(), later}).status, 1);
    EXPECT_EQ(run({"--tolerance", "1min", document(), later}).status, 0);
    EXPECT_EQ(run({"--tolerance", "59s", document(), later}).status, 1);
    const finished_command wrong = run({"--tolerance", "soon", document(), later});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.err, HasSubstr("\"soon\" is no span such as 30s, 1min or 1h"));
}

TEST_F(CompareCommand, IgnoresTopicsAndKinds) {
    const std::string later = object("later.bin", 5, 1);
    EXPECT_EQ(run({"--ignore", "programmes", document(), later}).status, 0);
    EXPECT_EQ(run({"--ignore", "programme-moved,programme-added", document(), later}).status, 0);
    EXPECT_EQ(run({"--ignore", "programme-moved", document(), later}).status, 1);
    const finished_command wrong = run({"--ignore", "programes", document(), later});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.err, HasSubstr("did you mean"));
    EXPECT_EQ(
        run({"--ignore", "services,days,programmes,descriptions,genres,logos", document(), later}).status, 2);
}

TEST_F(CompareCommand, CutsLongListsUnlessAllIsAskedFor) {
    const std::string more = object("more.bin", 0, 30);
    const finished_command cut = run({document(), more});
    EXPECT_THAT(cut.out,
                AllOf(HasSubstr("Programmes that only B has: 30\n"), HasSubstr("\"More 9\""),
                      Not(HasSubstr("\"More 10\"")), HasSubstr("  and 20 more\n"), HasSubstr("--all")));
    const finished_command all = run({"--all", document(), more});
    EXPECT_THAT(all.out, AllOf(HasSubstr("\"More 29\""), Not(HasSubstr("--all"))));
}

TEST_F(CompareCommand, PrintsJson) {
    const finished_command end = run({"--json", "--tolerance", "1min", document(), object("pi.bin", 5, 30)});
    EXPECT_EQ(end.status, 1);
    const json report = json::parse(end.out);
    EXPECT_EQ(report["tolerance"], 60);
    EXPECT_EQ(report["a"]["programmes"], 2);
    EXPECT_EQ(report["b"]["programmes"], 32);
    EXPECT_EQ(report["counts"], json::parse(R"({"programme-added": 30, "programme-moved": 1})"));
    ASSERT_EQ(report["differences"].size(), 31U);
    EXPECT_EQ(report["differences"].back(), json::parse(R"({
        "kind": "programme-moved", "topic": "programmes", "service": "e1.c221.0", "service_name": "e1.c221.0",
        "day": "2026-03-10",
        "a": {"start": "2026-03-10T07:00:00Z", "duration": 3600, "name": "Elevenses"},
        "b": {"start": "2026-03-10T07:05:00Z", "duration": 3600, "name": "Elevenses"},
        "text": "07:00Z \"Elevenses\" begins at 07:05Z, 5 min later"})"));
}

TEST_F(CompareCommand, TakesSeveralInputsASide) {
    const sb::bytes made = sb::si_object(0xE1, 0xC185, {{{"", "Radio One", ""}, {kStation}, {}}});
    const std::string information = write_file(files_, "si.bin", {made.begin(), made.end()});
    const std::string object = this->object("pi.bin");
    EXPECT_EQ(run({"--with-a", information, document(), object}).status, 1);
    EXPECT_EQ(run({"--with-a", information, "--with-b", information, document(), object}).status, 0);
}

TEST_F(CompareCommand, SaysWhatOfADocumentHasNoCoding) {
    const std::string text = kDocument;
    const std::size_t at = text.find("<serviceScope");
    const std::string document =
        write_file(files_, "other.xml",
                   text.substr(0, at) + "<serviceScope id=\"fm:ce1.c221.10000\"/>" + text.substr(at));
    const finished_command end = run({document, object("pi.bin")});
    EXPECT_EQ(end.status, 0) << end.out;
    EXPECT_THAT(end.err, HasSubstr("other.xml: left out: "));
}

}  // namespace
