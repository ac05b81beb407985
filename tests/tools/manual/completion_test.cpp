// The completion of the command line, as bash does it with the script that the build has made.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "tests/tools/files/files.h"
#include "tools/command_line/command_line.h"
#include "tools/manual/completion.h"

namespace {

using dabspi::argument_model;
using dabspi::command_model;
using testing::Contains;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Completion : public testing::Test {
 protected:
    void SetUp() override {
        if (std::system("bash -c 'type compgen' >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "the completion is run by bash, which is not there: apt-get install bash";
        write_file(folder, "files/day.jsonl", "");
        write_file(folder, "files/day.json", "");
        write_file(folder, "files/notes.txt", "");
        write_file(folder, "files/out/x", "");
        write_file(folder, "files/si.xml", "");
        write_file(folder, "files/two words.jsonl", "");
    }

    // What is offered for the last of `words`, one word of bash each, in a directory with the files above.
    std::vector<std::string> offered(const std::vector<std::string>& words,
                                     const std::string& script = kScript) {
        std::string program = "cd files && source '" + script + "' || exit 1\nCOMP_WORDS=(";
        for (const std::string& word : words)
            program += "'" + word + "' ";
        program += ")\nCOMP_CWORD=" + std::to_string(words.size() - 1) +
                   "\n_dabspi dabspi\n((${#COMPREPLY[@]})) && printf '%s\\n' \"${COMPREPLY[@]}\"\nexit 0\n";
        write_file(folder, "program", program);
        const std::string line = "cd '" + folder.path().string() + "' && bash --norc program >out 2>err";
        EXPECT_EQ(std::system(line.c_str()), 0);
        EXPECT_EQ(read_file((folder.path() / "err").string()), "");
        std::vector<std::string> result;
        std::istringstream lines(read_file((folder.path() / "out").string()));
        for (std::string each; std::getline(lines, each);)
            result.push_back(each);
        return result;
    }

    static std::vector<command_model> commands() {
        CLI::App app;
        dabspi::add_command_line(app);
        return dabspi::model_of(app);
    }

    inline static const std::string kScript = DABSPI_SHARE "/bash-completion/completions/dabspi";
    temporary_directory folder;
};

TEST_F(Completion, EveryOptionOfEveryCommandIsOffered) {
    std::size_t options = 0;
    for (const command_model& command : commands()) {
        std::vector<std::string> words = {"dabspi"};
        if (command.name != "dabspi") words.push_back(dabspi::short_name(command));
        words.emplace_back("-");
        std::vector<std::string> expected;
        for (const argument_model& option : command.options)
            expected.insert(expected.end(), option.names.begin(), option.names.end());
        EXPECT_THAT(offered(words), testing::UnorderedElementsAreArray(expected)) << command.name;
        options += expected.size();
    }
    EXPECT_GE(options, 8U);
}

TEST_F(Completion, EveryCommandIsOfferedAtFirst) {
    const std::vector<std::string> first = offered({"dabspi", ""});
    for (const command_model& command : commands()) {
        if (command.name == "dabspi") continue;
        EXPECT_THAT(first, Contains(dabspi::short_name(command)));
    }
    EXPECT_THAT(offered({"dabspi", "repl"}), UnorderedElementsAre("replay"));
}

TEST_F(Completion, EveryChoiceOfEveryOptionIsOfferedAfterABlankAndAfterAnEqualsSign) {
    std::size_t choices = 0;
    for (const command_model& command : commands()) {
        for (const argument_model& option : command.options) {
            if (option.choices.empty()) continue;
            const std::string name = option.names.back();
            const std::string which = dabspi::short_name(command);
            const auto all = testing::UnorderedElementsAreArray(option.choices);
            EXPECT_THAT(offered({"dabspi", which, name, ""}), all) << which;
            EXPECT_THAT(offered({"dabspi", which, name, "="}), all) << which;
            EXPECT_THAT(offered({"dabspi", which, name, "=", option.choices[0]}),
                        UnorderedElementsAre(option.choices[0]));
            choices += option.choices.size();
        }
    }
    EXPECT_GE(choices, 2U);
}

// Multiplexes have many endings.
TEST_F(Completion, EveryFileIsOfferedWhereARecordingOrAMultiplexIsMeant) {
    EXPECT_THAT(offered({"dabspi", "replay", ""}), UnorderedElementsAre("day.jsonl", "two words.jsonl", "out",
                                                                        "si.xml", "notes.txt", "day.json"));
    EXPECT_THAT(offered({"dabspi", "replay", "--json", "d"}), UnorderedElementsAre("day.jsonl", "day.json"));
    EXPECT_THAT(offered({"dabspi", "replay", "x"}), IsEmpty());
}

TEST_F(Completion, DocumentsAndPlansAreOfferedWhereTheseAreMeant) {
    EXPECT_THAT(offered({"dabspi", "encode", ""}), UnorderedElementsAre("si.xml", "out"));
    EXPECT_THAT(offered({"dabspi", "record", ""}), UnorderedElementsAre("day.json", "out"));
}

TEST_F(Completion, NoFilesAreOfferedWhereAWordIsMeant) {
    EXPECT_THAT(offered({"dabspi", "encode", "--name", ""}), IsEmpty());
    EXPECT_THAT(offered({"dabspi", "encode", "--ensemble", ""}), IsEmpty());
}

TEST_F(Completion, DirectoriesAloneAreOfferedWhereOneIsMeant) {
    EXPECT_THAT(offered({"dabspi", "replay", "--storage", ""}), UnorderedElementsAre("out"));
}

TEST_F(Completion, WordsAreOfferedForOperandsThatAreSome) {
    EXPECT_THAT(offered({"dabspi", "explain", "gap", "over"}), UnorderedElementsAre("overlap"));
}

TEST_F(Completion, NothingIsOfferedForAFormThatIsFilledIn) {
    EXPECT_THAT(offered({"dabspi", "check", "--date", ""}), IsEmpty());
    EXPECT_THAT(offered({"dabspi", "check", "--service", ""}), IsEmpty());
}

TEST_F(Completion, NothingIsOfferedForCommandsThatThereAreNot) {
    EXPECT_THAT(offered({"dabspi", "rewind", ""}), IsEmpty());
}

TEST_F(Completion, FilesNumbersAndUnlikeOperandsAreToldApart) {
    command_model whole;
    whole.name = "dabspi";
    command_model bake;
    bake.name = "dabspi bake";
    bake.options = {
        {{"-n", "--count"}, "N", dabspi::value_kind::number, {}, "", false, false},
        {{"-o"}, "FILE", dabspi::value_kind::file, {}, "", false, false},
    };
    bake.operands = {{{"RECORDING"}, "RECORDING", dabspi::value_kind::recording, {}, "", true, false},
                     {{"DIR"}, "DIR", dabspi::value_kind::directory, {}, "", true, false}};
    const std::string script = write_file(folder, "script", dabspi::completion({whole, bake}));
    const auto everything =
        UnorderedElementsAre("day.json", "day.jsonl", "notes.txt", "si.xml", "two words.jsonl", "out");
    EXPECT_THAT(offered({"dabspi", "bake", "-o", ""}, script), everything);
    EXPECT_THAT(offered({"dabspi", "bake", ""}, script), everything);
    EXPECT_THAT(offered({"dabspi", "bake", "-n", ""}, script), IsEmpty());
    EXPECT_THAT(offered({"dabspi", "bake", "--count", ""}, script), IsEmpty());
}

}  // namespace
