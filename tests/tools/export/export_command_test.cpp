// dabspi export as a user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tools/command_line/run_command.h"
#include "tests/tools/export/example_guide.h"
#include "tests/tools/files/files.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ExportCommand : public testing::Test {
 protected:
    ExportCommand() {
        const auto schedule = example_guide::schedule();
        const auto information = example_guide::information(example_guide::kOne);
        schedule_ = write_file(files_, "pi.bin", {schedule.begin(), schedule.end()});
        information_ = write_file(files_, "si.bin", {information.begin(), information.end()});
    }

    static finished_command run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "export");
        return run_dabspi({arguments});
    }

    std::string path(const std::string& name) const { return (files_.path() / name).string(); }

    temporary_directory files_;
    std::string schedule_;
    std::string information_;
};

TEST_F(ExportCommand, WritesXmltvToAFileOrToStandardOutput) {
    const finished_command to_file = run({"--xmltv", path("guide.xml"), schedule_, information_});
    EXPECT_EQ(to_file.status, 0) << to_file.err;
    EXPECT_EQ(to_file.out, "");
    const finished_command to_output = run({"--xmltv", "-", schedule_, information_});
    EXPECT_EQ(to_output.status, 0);
    EXPECT_EQ(to_output.out, read_file(path("guide.xml")));
    EXPECT_THAT(to_output.out, HasSubstr("<channel id=\"0.c221.ce1.dab\">"));
}

TEST_F(ExportCommand, WritesDocumentsIntoAFolder) {
    const finished_command end = run({"--spi", path("htdocs"), schedule_, information_});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_THAT(end.err, HasSubstr("3 files written to "));
    EXPECT_TRUE(std::filesystem::exists(path("htdocs/radiodns/spi/3.1/SI.xml")));
    EXPECT_TRUE(std::filesystem::exists(path("htdocs/radiodns/spi/3.1/dab/ce1/c185/c221/0/20260310_PI.xml")));
}

TEST_F(ExportCommand, PrintsJson) {
    const finished_command end = run({"--json", information_});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.out, StartsWith("{\"ensembles\": [{\"id\":\"e1.c185\""));
}

TEST_F(ExportCommand, RefusesWhatItCannotDo) {
    EXPECT_EQ(run({schedule_}).err, "dabspi: say what is wanted: --xmltv FILE, --spi DIR or --json\n");
    EXPECT_EQ(run({"--json", "--xmltv", "-", schedule_}).status, 2);
    const finished_command over = run({"--xmltv", schedule_, schedule_});
    EXPECT_EQ(over.status, 2);
    EXPECT_THAT(over.err, HasSubstr("is an input, and would be written over"));
    EXPECT_EQ(run({"--spi", "", schedule_}).status, 2);
    const finished_command none = run({"--json", path("missing")});
    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.err, HasSubstr("missing: cannot open"));
}

TEST_F(ExportCommand, SaysWhenThereIsNothingToExport) {
    const std::string empty = write_file(files_, "empty.bin", std::string("\x02\x00", 2));
    const finished_command end = run({"--xmltv", path("guide.xml"), empty});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("there is no service and no programme to export; nothing was written"));
    EXPECT_FALSE(std::filesystem::exists(path("guide.xml")));
}

TEST_F(ExportCommand, FailsWhereItCannotWrite) {
    const finished_command end = run({"--xmltv", path("no/such/guide.xml"), schedule_});
    EXPECT_EQ(end.status, 3);
    EXPECT_THAT(end.err, HasSubstr("guide.xml: No such file or directory"));
    command_input full{{"export", "--json", schedule_}};
    full.standard_output = "/dev/full";
    EXPECT_EQ(run_dabspi(full).status, 3);
}

}  // namespace
