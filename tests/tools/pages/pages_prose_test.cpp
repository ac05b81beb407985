// The prose of manual pages: what a file may hold, and what stops the build.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/files/files.h"
#include "tools/pages/prose.h"

namespace {

using dabspi::command_model;
using testing::HasSubstr;

command_model bake() {
    command_model result;
    result.name = "oven bake";
    result.options.push_back(
        {{"-s", "--slow"}, "", dabspi::value_kind::nothing, {}, "Take time", false, false});
    result.operands.push_back({{"CAKE"}, "CAKE", dabspi::value_kind::file, {}, "What to bake", true, false});
    return result;
}

dabspi::prose parsed(const std::string& text) {
    return dabspi::parse_prose(text, "bake.prose.1", bake());
}

std::string error_of(const std::string& text) {
    try {
        parsed(text);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

TEST(PagesProse, IsDividedAtItsHeadings) {
    const dabspi::prose words = parsed(
        ".\\\" A comment.\n.SH DESCRIPTION\nBakes.\n.SH OPTIONS\n.\\\" option --slow\nAn hour.\n.\\\" option "
        "CAKE\nRaw.\n"
        ".SH FILES\nThe recipe.\n.SH BUGS\nIt burns.\nAlways.\n");
    EXPECT_EQ(words.description, "Bakes.\n");
    EXPECT_THAT(words.options,
                testing::ElementsAre(testing::Pair("--slow", "An hour.\n"), testing::Pair("CAKE", "Raw.\n")));
    EXPECT_THAT(words.sections, testing::ElementsAre(testing::Pair("FILES", "The recipe.\n"),
                                                     testing::Pair("BUGS", "It burns.\nAlways.\n")));
}

TEST(PagesProse, NeedsADescriptionThatComesFirst) {
    EXPECT_THAT(error_of(""), HasSubstr("there is no .SH DESCRIPTION"));
    EXPECT_THAT(error_of(".SH DESCRIPTION\n"), HasSubstr("nothing in it"));
    EXPECT_EQ(error_of("Bakes.\n"), "bake.prose.1:1: the first section must be .SH DESCRIPTION");
    EXPECT_THAT(error_of(".SH FILES\nx\n.SH DESCRIPTION\nx\n"),
                HasSubstr("bake.prose.1:1: the first section must be"));
    EXPECT_THAT(error_of(".SH DESCRIPTION\nx\n.SH DESCRIPTION\nx\n"), HasSubstr("bake.prose.1:3: "));
}

TEST(PagesProse, MayNotHoldWhatIsMadeFromTheCommandLine) {
    for (const char* made : {"NAME", "SYNOPSIS", "COMMANDS", "SEE ALSO"})
        EXPECT_EQ(error_of(std::string(".SH DESCRIPTION\nx\n.SH ") + made + "\n"),
                  std::string("bake.prose.1:3: ") + made + " is made from the command line");
}

TEST(PagesProse, AddsToOptionsThatThereAreAndInTheirSectionOnly) {
    const std::string start = ".SH DESCRIPTION\nx\n.SH OPTIONS\n";
    EXPECT_EQ(error_of(start + ".\\\" option --fast\n"), "bake.prose.1:4: \"oven bake\" has no --fast");
    EXPECT_THAT(error_of(start + "Free text.\n"), HasSubstr("bake.prose.1:4: OPTIONS holds additions"));
    EXPECT_THAT(error_of(start + ".\\\" option -s\nx\n.\\\" option -s\n"),
                HasSubstr("bake.prose.1:6: -s has an addition already"));
    EXPECT_THAT(error_of(".SH DESCRIPTION\n.\\\" option -s\n"), HasSubstr("stands in .SH OPTIONS"));
}

class PagesProseFiles : public testing::Test {
 protected:
    std::string file(const std::string& name) { return write_file(folder, name, ".SH DESCRIPTION\nx\n"); }
    std::string error_of(const std::vector<std::string>& files) {
        try {
            dabspi::read_proses(files, {bake()});
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no error";
    }
    temporary_directory folder;
};

TEST_F(PagesProseFiles, AreFoundByTheNameOfTheirCommand) {
    EXPECT_EQ(dabspi::read_proses({file("bake.prose.1")}, {bake()}).at("bake").description, "x\n");
}

TEST_F(PagesProseFiles, OneIsNeededForEachCommand) {
    EXPECT_EQ(
        error_of({}),
        "\"oven bake\" has no prose for its manual page: write bake.prose.1 beside its sources below tools/ "
        "(tools/replay/replay.prose.1 shows how), and configure again");
}

TEST_F(PagesProseFiles, NoneMayBelongToNoCommandOrBeOneTooMany) {
    EXPECT_THAT(error_of({file("bake.prose.1"), file("fry.prose.1")}),
                HasSubstr("fry.prose.1: no command has this name"));
    EXPECT_THAT(error_of({file("bake.prose.1"), file("bake.prose.1")}), HasSubstr("there is another prose"));
    EXPECT_THAT(error_of({"prose.1"}), HasSubstr("prose.1: no command has this name"));
    EXPECT_THAT(error_of({(folder.path() / "no" / "bake.prose.1").string()}),
                HasSubstr("bake.prose.1: cannot be read"));
}

}  // namespace
