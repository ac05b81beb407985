// The texts of manual pages: what a file may hold, and what stops the build.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/files/files.h"
#include "tools/manual/manual_text.h"

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

dabspi::manual_text parsed(const std::string& text) {
    return dabspi::parse_manual_text(text, "bake.manual.1", bake());
}

std::string error_of(const std::string& text) {
    try {
        parsed(text);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

TEST(ManualText, IsDividedAtItsHeadings) {
    const dabspi::manual_text words = parsed(
        ".\\\" A comment.\n.SH DESCRIPTION\nBakes.\n.SH OPTIONS\n.\\\" option --slow\nAn hour.\n.\\\" option "
        "CAKE\nRaw.\n"
        ".SH FILES\nThe recipe.\n.SH BUGS\nIt burns.\nAlways.\n");
    EXPECT_EQ(words.description, "Bakes.\n");
    EXPECT_THAT(words.options,
                testing::ElementsAre(testing::Pair("--slow", "An hour.\n"), testing::Pair("CAKE", "Raw.\n")));
    EXPECT_THAT(words.sections, testing::ElementsAre(testing::Pair("FILES", "The recipe.\n"),
                                                     testing::Pair("BUGS", "It burns.\nAlways.\n")));
}

TEST(ManualText, NeedsADescriptionThatComesFirst) {
    EXPECT_THAT(error_of(""), HasSubstr("there is no .SH DESCRIPTION"));
    EXPECT_THAT(error_of(".SH DESCRIPTION\n"), HasSubstr("nothing in it"));
    EXPECT_EQ(error_of("Bakes.\n"), "bake.manual.1:1: the first section must be .SH DESCRIPTION");
    EXPECT_THAT(error_of(".SH FILES\nx\n.SH DESCRIPTION\nx\n"),
                HasSubstr("bake.manual.1:1: the first section must be"));
    EXPECT_THAT(error_of(".SH DESCRIPTION\nx\n.SH DESCRIPTION\nx\n"), HasSubstr("bake.manual.1:3: "));
}

TEST(ManualText, MayNotHoldWhatIsMadeFromTheCommandLine) {
    for (const char* made : {"NAME", "SYNOPSIS", "COMMANDS", "SEE ALSO"})
        EXPECT_EQ(error_of(std::string(".SH DESCRIPTION\nx\n.SH ") + made + "\n"),
                  std::string("bake.manual.1:3: ") + made + " is made from the command line");
}

TEST(ManualText, AddsToOptionsThatThereAreAndInTheirSectionOnly) {
    const std::string start = ".SH DESCRIPTION\nx\n.SH OPTIONS\n";
    EXPECT_EQ(error_of(start + ".\\\" option --fast\n"), "bake.manual.1:4: \"oven bake\" has no --fast");
    EXPECT_THAT(error_of(start + "Free text.\n"), HasSubstr("bake.manual.1:4: OPTIONS holds additions"));
    EXPECT_THAT(error_of(start + ".\\\" option -s\nx\n.\\\" option -s\n"),
                HasSubstr("bake.manual.1:6: -s has an addition already"));
    EXPECT_THAT(error_of(".SH DESCRIPTION\n.\\\" option -s\n"), HasSubstr("stands in .SH OPTIONS"));
}

class ManualTextFiles : public testing::Test {
 protected:
    std::string file(const std::string& name) { return write_file(folder, name, ".SH DESCRIPTION\nx\n"); }
    std::string error_of(const std::vector<std::string>& files) {
        try {
            dabspi::read_manual_texts(files, {bake()});
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no error";
    }
    temporary_directory folder;
};

TEST_F(ManualTextFiles, AreFoundByTheNameOfTheirCommand) {
    EXPECT_EQ(dabspi::read_manual_texts({file("bake.manual.1")}, {bake()}).at("bake").description, "x\n");
}

TEST_F(ManualTextFiles, OneIsNeededForEachCommand) {
    EXPECT_EQ(
        error_of({}),
        "\"oven bake\" has no text for its manual page: write bake.manual.1 beside its sources below tools/ "
        "(tools/replay/replay.manual.1 shows how), and configure again");
}

TEST_F(ManualTextFiles, NoneMayBelongToNoCommandOrBeOneTooMany) {
    EXPECT_THAT(error_of({file("bake.manual.1"), file("fry.manual.1")}),
                HasSubstr("fry.manual.1: no command has this name"));
    EXPECT_THAT(error_of({file("bake.manual.1"), file("bake.manual.1")}), HasSubstr("there is another text"));
    EXPECT_THAT(error_of({"manual.1"}), HasSubstr("manual.1: no command has this name"));
    EXPECT_THAT(error_of({(folder.path() / "no" / "bake.manual.1").string()}),
                HasSubstr("bake.manual.1: cannot be read"));
}

}  // namespace
