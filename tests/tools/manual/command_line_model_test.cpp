// What is taken over from a command line into its manual and its completion.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

#include "tools/manual/command_line_model.h"

namespace {

using dabspi::argument_model;
using dabspi::value_kind;
using testing::ElementsAre;
using testing::IsEmpty;

class CommandLineModel : public testing::Test {
 protected:
    argument_model only_option() {
        const dabspi::command_model model = dabspi::model_of(app_)[0];
        EXPECT_EQ(model.options.size(), 2U) << "the option, and --help";
        return model.options.at(0);
    }
    CLI::App app_{"A tool", "tool"};
    std::string text_;
    unsigned number_ = 0;
    std::vector<std::string> texts_;
    bool flag_ = false;
};

TEST_F(CommandLineModel, AFlagHasNamesAndNoValue) {
    app_.add_flag("-q,--quiet", flag_, "Say\n  nothing");
    const argument_model option = only_option();
    EXPECT_THAT(option.names, ElementsAre("-q", "--quiet"));
    EXPECT_EQ(option.value, "");
    EXPECT_EQ(option.kind, value_kind::nothing);
    EXPECT_EQ(option.help, "Say nothing");
    EXPECT_FALSE(option.repeats);
}

TEST_F(CommandLineModel, ChoicesComeFromTheTextOrFromTheCheck) {
    app_.add_option("--way", text_, "")->option_text("up|down");
    EXPECT_THAT(only_option().choices, ElementsAre("up", "down"));
    EXPECT_EQ(only_option().kind, value_kind::choice);
    app_.remove_option(app_.get_option("--way"));

    app_.add_option("--side", text_, "")->check(CLI::IsMember({"left", "right"}));
    EXPECT_THAT(only_option().choices, ElementsAre("left", "right"));
    EXPECT_EQ(only_option().value, "left|right");
}

TEST_F(CommandLineModel, PlaceholdersAreNoChoices) {
    app_.add_option("--at", text_, "")->option_text("FILE|DIR");
    EXPECT_THAT(only_option().choices, IsEmpty());
    EXPECT_EQ(only_option().value, "FILE|DIR");
}

TEST_F(CommandLineModel, NumbersAreKnownByTheirTypeAndDirectoriesByTheirName) {
    app_.add_option("--line", number_, "")->option_text("N");
    EXPECT_EQ(only_option().kind, value_kind::number);
    EXPECT_EQ(only_option().value, "N");
    app_.remove_option(app_.get_option("--line"));

    app_.add_option("--to", text_, "")->option_text("DIR");
    EXPECT_EQ(only_option().kind, value_kind::directory);
    app_.remove_option(app_.get_option("--to"));

    app_.add_option("--from", text_, "");
    EXPECT_EQ(only_option().kind, value_kind::file);
    EXPECT_EQ(only_option().value, "TEXT");
}

TEST_F(CommandLineModel, NothingIsOfferedForAFormThatIsFilledIn) {
    app_.add_option("--date", text_, "")->option_text("DATE[Thh:mm]");
    EXPECT_EQ(only_option().kind, value_kind::nothing);
    EXPECT_EQ(only_option().value, "DATE[Thh:mm]");
}

TEST_F(CommandLineModel, AnOperandKeepsItsNameBesideItsWords) {
    app_.add_option("CODE", texts_, "What to explain")->type_name("{gap,overlap}")->option_text("...");
    const dabspi::command_model model = dabspi::model_of(app_)[0];
    ASSERT_EQ(model.operands.size(), 1U);
    EXPECT_EQ(model.operands[0].value, "CODE");
    EXPECT_EQ(model.operands[0].kind, value_kind::choice);
    EXPECT_THAT(model.operands[0].choices, ElementsAre("gap", "overlap"));
}

TEST_F(CommandLineModel, OperandsAreToldFromOptions) {
    app_.add_option("RECORDING", texts_, "What to read")->required()->option_text(" ");
    const dabspi::command_model model = dabspi::model_of(app_)[0];
    ASSERT_EQ(model.operands.size(), 1U);
    EXPECT_THAT(model.operands[0].names, ElementsAre("RECORDING"));
    EXPECT_EQ(model.operands[0].kind, value_kind::recording);
    EXPECT_TRUE(model.operands[0].required);
    EXPECT_TRUE(model.operands[0].repeats);
}

TEST_F(CommandLineModel, SubcommandsFollowInTheirOrder) {
    app_.add_subcommand("write", "Write");
    app_.add_subcommand("read", "Read");
    const std::vector<dabspi::command_model> models = dabspi::model_of(app_);
    ASSERT_EQ(models.size(), 3U);
    EXPECT_EQ(models[0].name, "tool");
    EXPECT_EQ(models[1].name, "tool write");
    EXPECT_EQ(models[2].name, "tool read");
    EXPECT_EQ(dabspi::short_name(models[2]), "read");
}

TEST_F(CommandLineModel, HiddenOptionsStayHidden) {
    app_.add_flag("--secret", flag_, "")->group("");
    EXPECT_THAT(dabspi::model_of(app_)[0].options, testing::SizeIs(1));
}

}  // namespace
