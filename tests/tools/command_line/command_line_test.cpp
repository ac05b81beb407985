// dabspi's command line: help, version, usage errors.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(CommandLine, WithoutACommandItExplainsItself) {
    const finished_command end = run_dabspi({{}});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.out, "");
    EXPECT_THAT(end.err, StartsWith("dabspi: a command is needed\n"));
    EXPECT_THAT(end.err, HasSubstr("replay"));
}

TEST(CommandLine, HelpGoesToStandardOutputAndShowsExamples) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--help"}, {"-h"}, {"replay", "--help"}}) {
        const finished_command end = run_dabspi({arguments});
        EXPECT_EQ(end.status, 0);
        EXPECT_EQ(end.err, "");
        EXPECT_THAT(end.out, HasSubstr("Examples:\n"));
        EXPECT_THAT(end.out, HasSubstr("  dabspi replay "));
    }
}

TEST(CommandLine, HelpOfReplayNamesEveryOption) {
    const finished_command end = run_dabspi({{"replay", "--help"}});
    for (const char* option :
         {"RECORDING", "--json", "--api wrapper|core", "--storage DIR", "--no-wait", "--keep"})
        EXPECT_THAT(end.out, HasSubstr(option));
}

TEST(CommandLine, TellsItsVersion) {
    const finished_command end = run_dabspi({{"--version"}});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.out, "dabspi " DABSPI_VERSION "\n");
}

TEST(CommandLine, UsageErrorsEndWithTwoAndPrintNothing) {
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string>{"rewind"},
             {"--no-such-option"},
             {"replay"},
             {"replay", "a.jsonl", "b.jsonl"},
             {"replay", "--no-such-option", "a.jsonl"},
             {"replay", "--api", "neither", "a.jsonl"},
             {"replay", "--api"},
             {"replay", "--storage", "", "a.jsonl"},
             {"replay", "--storage", "a", "--storage", "b", "a.jsonl"},
         }) {
        const finished_command end = run_dabspi({arguments});
        EXPECT_EQ(end.status, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(end.out, "") << testing::PrintToString(arguments);
        EXPECT_THAT(end.err, StartsWith("dabspi: ")) << testing::PrintToString(arguments);
    }
}

std::string said(const std::vector<std::string>& arguments) {
    const finished_command end = run_dabspi({arguments});
    EXPECT_EQ(end.status, 2);
    return end.err.substr(0, end.err.find('\n'));
}

TEST(CommandLine, SuggestsWhatMayHaveBeenMeant) {
    EXPECT_EQ(said({"repaly", "day.jsonl"}), "dabspi: there is no command \"repaly\"; did you mean replay?");
    EXPECT_EQ(said({"replay", "--jsno", "day.jsonl"}),
              "dabspi: replay: there is no option --jsno; did you mean --json?");
    EXPECT_EQ(said({"replay", "--storag=x", "day.jsonl"}),
              "dabspi: replay: there is no option --storag; did you mean --storage?");
    EXPECT_EQ(said({"--versoin"}), "dabspi: there is no option --versoin; did you mean --version?");
    EXPECT_EQ(said({"rewind"}), "dabspi: there is no command \"rewind\"");
    EXPECT_EQ(said({"replay", "a.jsonl", "b.jsonl"}), "dabspi: replay: \"b.jsonl\" is one argument too many");
    EXPECT_EQ(said({"replay", "--\x1b[31m", "a"}), "dabspi: replay: there is no option --\\u001b[31m");
}

TEST(CommandLine, SaysWhatTakesAFileThatStandsWhereACommandBelongs) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "pi.xml", "<epg/>");
    EXPECT_EQ(said({path}),
              "dabspi: there is no command \"" + path +
                  "\"; it is an XML document of programme information; \"dabspi encode\" takes it");
}

// A line for each subcommand and each thing that it is given and does not take.
TEST(CommandLine, SaysWhatItWasGivenInOneLine) {
    const temporary_directory directory;
    const std::string xml = write_file(directory, "pi.xml", "<epg/>");
    const std::string plan = write_file(directory, "plan.json", "{\"steps\": []}");
    const std::string calls = write_file(directory, "calls.jsonl", "{\"call\":\"ResendNowNext\"}\n");
    const std::string image = write_file(directory, "a.png", "\x89PNG\r\n\x1A\n");
    const std::string object = write_file(directory, "pi.bin", std::string("\x02\x00", 2));
    std::string frames;
    for (const char* const sync : {"\xFF\x07\x3A\xB6", "\xFF\xF8\xC5\x49", "\xFF\x07\x3A\xB6"})
        frames += sync + std::string(6140, '\x55');
    const std::string eti = write_file(directory, "a.eti", frames);
    const std::string edi = write_file(directory, "a.edi", std::string("AF\0\0\x01\0\0\x05\x90T", 10));
    const std::string capture = write_file(directory, "a.pcap", "\xD4\xC3\xB2\xA1");
    const std::string folder = directory.path().string();
    const std::map<std::string, std::pair<std::vector<std::string>, std::string>> takes = {
        {"replay",
         {{xml, plan, image, object, eti, edi, capture, folder}, "this is no call recording: it is "}},
        {"check", {{xml, plan, eti, edi, capture}, "this is no call recording: it is "}},
        {"inspect", {{xml, plan, eti, edi, capture}, "this is no binary SPI object: it is "}},
        {"encode", {{plan, calls, image, object, eti, edi, capture}, "this is no XML document: it is "}},
        {"record", {{xml, calls, image, object, eti, edi, capture}, "this is no plan: it is "}},
    };
    for (const auto& [command, refused] : takes) {
        for (const std::string& each : refused.first) {
            const finished_command end = run_dabspi({{command, each}});
            EXPECT_EQ(end.status, 2) << command << " " << each;
            EXPECT_THAT(end.err, HasSubstr(each + ": " + refused.second));
            EXPECT_LE(std::count(end.err.begin(), end.err.end(), '\n'), 2) << end.err;
        }
    }
}

TEST(CommandLine, HelpThatCannotBePrintedIsAFailure) {
    command_input input{{"--help"}};
    input.standard_output = "/dev/full";
    EXPECT_EQ(run_dabspi(input).status, 3);
}

}  // namespace
