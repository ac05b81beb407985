// dabspi guide as a user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "testkit/spi_builder_objects.h"
#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"

namespace {

namespace sb = spi_builder;
using testing::HasSubstr;

class GuideCommand : public testing::Test {
 protected:
    GuideCommand() {
        sb::schedule_data data;
        data.scope = sb::service_id{0xE1, 0xC185, 0xC221, 0};
        data.programmes = {{{"", "Morning", ""}, sb::local_time(61109, 7, 0, 2), 3600, {}, {}}};
        const sb::bytes made = sb::pi_object({data});
        object_ = write_file(files_, "pi.bin", {made.begin(), made.end()});
        page_ = (files_.path() / "guide.html").string();
    }

    static finished_command run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "guide");
        return run_dabspi({arguments});
    }

    temporary_directory files_;
    std::string object_;
    std::string page_;
};

TEST_F(GuideCommand, WritesThePageToAFileOrToStandardOutput) {
    const finished_command to_file = run({"--html", page_, object_});
    EXPECT_EQ(to_file.status, 0) << to_file.err;
    EXPECT_EQ(to_file.out, "");
    EXPECT_THAT(read_file(page_), HasSubstr("<bdi>Morning</bdi>"));
    EXPECT_EQ(run({"--html", "-", object_}).out, read_file(page_));
}

TEST_F(GuideCommand, WantsToKnowWhereThePageGoes) {
    EXPECT_EQ(run({object_}).status, 2);
    EXPECT_EQ(run({"--html", "", object_}).status, 2);
}

TEST_F(GuideCommand, WritesNothingOverItsInputAndNothingOfNothing) {
    const std::string before = read_file(object_);
    EXPECT_EQ(run({"--html", object_, object_}).status, 2);
    EXPECT_EQ(read_file(object_), before);
    const std::string empty = write_file(
        files_, "empty.jsonl", "{\"call\":\"SetDateTime\",\"date\":\"20260310\",\"time\":\"0530\"}\n");
    const finished_command end = run({"--html", page_, empty});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.err, "dabspi: there is no service and no programme to show; nothing was written\n");
    EXPECT_FALSE(std::filesystem::exists(page_));
}

TEST_F(GuideCommand, Ends3WhereThePageCannotBeWritten) {
    const finished_command end = run({"--html", (files_.path() / "none" / "guide.html").string(), object_});
    EXPECT_EQ(end.status, 3);
    EXPECT_THAT(end.err, HasSubstr("cannot write "));
}

}  // namespace
