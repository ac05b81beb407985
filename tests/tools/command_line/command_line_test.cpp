// dabspi's command line: help, version, usage errors.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

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
         {"INPUT", "--json", "--service SERVICE", "--deliver every|once", "--flow [ADDRESS:]PORT",
          "--api wrapper|core", "--storage DIR", "--no-wait", "--keep"})
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

TEST(CommandLine, HelpThatCannotBePrintedIsAFailure) {
    command_input input{{"--help"}};
    input.standard_output = "/dev/full";
    EXPECT_EQ(run_dabspi(input).status, 3);
}

}  // namespace
