// The manual pages, as the build has made them from the command line.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "tests/tools/files/files.h"
#include "tools/command_line/command_line.h"
#include "tools/manual/manual_page.h"

namespace {

using dabspi::argument_model;
using dabspi::command_model;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kPages = DABSPI_SHARE "/man/man1/";

std::vector<command_model> commands() {
    CLI::App app;
    dabspi::add_command_line(app);
    return dabspi::model_of(app);
}

std::string page_of(const command_model& command) {
    return read_file(kPages + dabspi::page_name(command) + ".1");
}

TEST(ManualPages, EveryOptionOfEveryCommandStandsInItsPageWithItsHelp) {
    std::size_t options = 0;
    for (const command_model& command : commands()) {
        const std::string page = page_of(command);
        for (const argument_model& option : command.options) {
            for (const std::string& name : option.names)
                EXPECT_THAT(page, HasSubstr("\\fB" + dabspi::roff(name) + "\\fR")) << command.name;
            EXPECT_THAT(page, HasSubstr("\n" + dabspi::roff(option.help))) << command.name;
            for (const std::string& choice : option.choices)
                EXPECT_THAT(page, HasSubstr("\\fB" + dabspi::roff(choice) + "\\fR")) << command.name;
            EXPECT_NE(option.help, "") << command.name << " " << option.names.back();
            ++options;
        }
        for (const argument_model& operand : command.operands)
            EXPECT_THAT(page, HasSubstr(".TP\n\\fI" + operand.value + "\\fR\n" + dabspi::roff(operand.help)));
    }
    EXPECT_GE(options, 8U);
}

TEST(ManualPages, TheFirstOneListsTheOthers) {
    const std::vector<command_model> all = commands();
    ASSERT_GE(all.size(), 2U);
    const std::string first = page_of(all[0]);
    for (std::size_t each = 1; each < all.size(); ++each) {
        EXPECT_THAT(first, HasSubstr(".BR " + dabspi::roff(dabspi::page_name(all[each])) + " (1)\n"));
        EXPECT_THAT(page_of(all[each]), HasSubstr(".SH SEE ALSO\n.BR dabspi (1)"));
    }
}

TEST(ManualPages, BearTheVersionAndNoDate) {
    for (const command_model& command : commands())
        EXPECT_THAT(page_of(command),
                    testing::ContainsRegex("^\\.TH DABSPI[A-Z\\-]* 1 \"\" \"dabspi " DABSPI_VERSION "\""));
}

TEST(ManualPages, AreFormattedWithoutWarnings) {
    if (std::system("man --version >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "the pages are formatted by man, which is not there: apt-get install man-db";
    const temporary_directory folder;
    const std::string errors = (folder.path() / "errors").string();
    for (const command_model& command : commands()) {
        const std::string page = kPages + dabspi::page_name(command) + ".1";
        const std::string line =
            "LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l '" + page + "' >/dev/null 2>'" + errors + "'";
        EXPECT_EQ(std::system(line.c_str()), 0);
        EXPECT_EQ(read_file(errors), "") << page;
    }
}

command_model oven() {
    command_model result;
    result.name = "oven bake";
    result.description = "Bake a cake";
    result.options = {
        {{"-s", "--slow"}, "", dabspi::value_kind::nothing, {}, "Take time", false, false},
        {{"--heat"}, "low|high", dabspi::value_kind::choice, {"low", "high"}, "How hot", true, false},
        {{"--with"}, "SPICE", dabspi::value_kind::file, {}, "A \\ 'spice'.", false, true},
        {{"-h", "--help"}, "", dabspi::value_kind::nothing, {}, "Help", false, false},
    };
    result.operands = {{{"CAKE"}, "CAKE", dabspi::value_kind::file, {}, "What to bake", true, true},
                       {{"TRAY"}, "TRAY", dabspi::value_kind::file, {}, "Where", false, false}};
    return result;
}

std::string oven_page(const dabspi::manual_text& words) {
    command_model whole;
    whole.name = "oven";
    return dabspi::manual_page({whole, oven()}, 1, words, "3");
}

TEST(ManualPage, ShowsInItsSynopsisWhatIsNeededAndWhatRepeats) {
    EXPECT_THAT(oven_page({}), HasSubstr(".B oven bake\n"
                                         "[\\fB\\-\\-slow\\fR]\n"
                                         "\\fB\\-\\-heat\\fR\\~\\fBlow\\fR|\\fBhigh\\fR\n"
                                         "[\\fB\\-\\-with\\fR\\~\\fISPICE\\fR]...\n"
                                         "\\fICAKE\\fR...\n"
                                         "[\\fITRAY\\fR]\n"
                                         ".br\n.B oven bake \\-\\-help\n"));
}

TEST(ManualPage, PutsTheTextWhereItBelongs) {
    dabspi::manual_text words;
    words.description = "Bakes.\n";
    words.options["-s"] = "An hour.\n";
    words.sections = {{"FILES", "The recipe.\n"}};
    const std::string page = oven_page(words);
    EXPECT_THAT(page, StartsWith(".TH OVEN\\-BAKE 1 \"\" \"dabspi 3\" \"User Commands\"\n"
                                 ".SH NAME\noven\\-bake \\- bake a cake\n"));
    EXPECT_THAT(page, HasSubstr(".SH DESCRIPTION\nBakes.\n.SH OPTIONS\n"));
    EXPECT_THAT(page, HasSubstr("\\fB\\-s\\fR, \\fB\\-\\-slow\\fR\nTake time.\nAn hour.\n.TP\n"));
    EXPECT_THAT(page, HasSubstr("\\fB\\-\\-with\\fR\\~\\fISPICE\\fR\nA \\e \\(aqspice\\(aq.\n.TP\n"));
    EXPECT_THAT(page, HasSubstr("\nHelp.\n.SH FILES\nThe recipe.\n.SH SEE ALSO\n"));
}

TEST(ManualPage, HelpIsNeverTakenForACommandOfTheFormatter) {
    EXPECT_EQ(dabspi::roff(".so /etc/passwd"), "\\&.so /etc/passwd");
    EXPECT_EQ(dabspi::roff("'tis"), "\\(aqtis");
    EXPECT_EQ(dabspi::roff("a\\nb"), "a\\enb");
}

}  // namespace
