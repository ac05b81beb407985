// dabspi carousel, as a user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/tools/carousel/small_broadcast.h"
#include "tests/tools/command_line/run_command.h"

namespace {

using carousel_test::small_broadcast;
using testing::HasSubstr;

class CarouselCommand : public testing::Test {
 protected:
    finished_command carousel(const std::vector<std::string>& more) {
        command_input input{
            {"carousel", "--clock", "2026-03-02T10:30", "si.xml", "today.xml", "tomorrow.xml", "logos"}};
        input.arguments.insert(input.arguments.end(), more.begin(), more.end());
        input.directory = broadcast_.folder.path().string();
        return run_dabspi(input);
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(broadcast_.path(name)); }

    small_broadcast broadcast_;
};

TEST_F(CarouselCommand, WritesAMultiplexThatAnnouncesItsSpi) {
    const finished_command end = carousel({"--fec", "-o", "spi.eti"});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.err, "");
    EXPECT_THAT(end.out, testing::StartsWith("spi.eti: ETI(NI), raw, "));
    EXPECT_THAT(end.out,
                HasSubstr("Ensemble e1.c185, 2 services; SPI on E1C00185.0: sub-channel 1, 16 kbit/s, "
                          "address 1, FEC\n"));
    EXPECT_THAT(end.out, HasSubstr("Images: 2, of which receivers write 2\n"));
    EXPECT_THAT(end.out, HasSubstr("Check: "));
    const finished_command scan = run_dabspi({{"scan", "--json", broadcast_.path("spi.eti")}});
    ASSERT_EQ(scan.status, 0) << scan.err;
    const auto report = nlohmann::json::parse(scan.out);
    EXPECT_EQ(report["form"], "raw");
    ASSERT_EQ(report["spi"].size(), 1U);
    EXPECT_EQ(report["spi"][0]["sid"], "E1C00185");
    EXPECT_EQ(report["spi"][0]["fec"], 1);
    EXPECT_EQ(report["services"].size(), 3U);
    EXPECT_EQ(report["frames_missing"], 0);
}

TEST_F(CarouselCommand, EqualInputsGiveEqualBytes) {
    EXPECT_EQ(carousel({"-o", "a.packets", "--compress"}).status, 0);
    EXPECT_EQ(carousel({"-o", "b.packets", "--compress"}).status, 0);
    EXPECT_EQ(read_file(broadcast_.path("a.packets")), read_file(broadcast_.path("b.packets")));
    EXPECT_EQ(read_file(broadcast_.path("a.packets")).size() % 48, 0U);
}

TEST_F(CarouselCommand, WritesToStandardOutputAndReportsBesideIt) {
    const finished_command end = carousel({"--form", "packets", "-o", "-", "--no-check"});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.out.size() % 48, 0U);
    EXPECT_GT(end.out.size(), 1000U);
    EXPECT_THAT(end.err, HasSubstr("A receiver that tunes in has"));
    EXPECT_THAT(end.err, testing::Not(HasSubstr("Check: ")));
}

TEST_F(CarouselCommand, WritesNothingForABadDocument) {
    write_file(broadcast_.folder, "today.xml", "<epg>\n<schedule x='1'");
    const finished_command end = carousel({"-o", "spi.eti"});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.out, "");
    EXPECT_THAT(end.err, HasSubstr("today.xml:2:"));
    EXPECT_THAT(end.err, HasSubstr("nothing was written"));
    EXPECT_FALSE(exists("spi.eti"));
}

TEST_F(CarouselCommand, SaysWhatIsMissingOnTheCommandLine) {
    EXPECT_THAT(carousel({}).err, HasSubstr("say with --output where it goes"));
    EXPECT_THAT(carousel({"-o", "spi.bin"}).err, HasSubstr("say with --form what is written"));
    EXPECT_THAT(carousel({"--budget", "16kbit/s"}).err, HasSubstr("--budget needs --within"));
    EXPECT_EQ(carousel({"-o", "spi.eti", "--bitrate", "12"}).status, 2);
    EXPECT_EQ(carousel({"-o", "spi.eti", "--packet-size", "50"}).status, 2);
    EXPECT_THAT(carousel({"-o", "spi.eti", "--packet-size", "96"}).err,
                HasSubstr("packets of 96 bytes do not fit: a frame holds 48 at 16 kbit/s"));
    EXPECT_THAT(carousel({"--follow", "-o", "spi.eti"}).err,
                HasSubstr("make the pipe first: mkfifo spi.eti"));
    const finished_command no_ensemble =
        run_dabspi({{"carousel", broadcast_.path("logos"), "-o", "-", "--form", "edi"}});
    EXPECT_EQ(no_ensemble.status, 2);
    EXPECT_THAT(no_ensemble.err, HasSubstr("say it with --ensemble"));
}

TEST_F(CarouselCommand, SaysWhatHasToGo) {
    const finished_command nothing = carousel({"--within", "10min"});
    EXPECT_EQ(nothing.status, 0) << nothing.err;
    EXPECT_THAT(nothing.out, HasSubstr("Nothing has to go to have everything within 0:10:00"));
    const finished_command all = carousel({"--budget", "8kbit/s", "--within", "1s"});
    EXPECT_EQ(all.status, 1) << all.err;
    EXPECT_THAT(all.out, HasSubstr("Even without all that may go"));
    EXPECT_THAT(all.out, HasSubstr("(tomorrow's schedules, tomorrow.xml)\n"));
}

TEST_F(CarouselCommand, TakesAPlan) {
    write_file(
        broadcast_.folder, "plan.json",
        R"({"clock": {"from": "2026-03-02T10:30", "to": "2026-03-02T11:00"}, "data_service": "0xE1C00777",
                   "carousels": {"one": {"objects": [{"xml": "si.xml"}, {"xml": "today.xml"},
                                                     {"image": "logos/c221.png"}]}},
                   "steps": [{"carousel": "one"}]})");
    const finished_command end =
        run_dabspi({{"carousel", broadcast_.path("plan.json"), "-o", broadcast_.path("plan.edi")}});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_THAT(end.out, HasSubstr("SPI on E1C00777.0"));
    EXPECT_THAT(end.out, HasSubstr("3 objects"));
    const finished_command scan = run_dabspi({{"scan", broadcast_.path("plan.edi")}});
    EXPECT_THAT(scan.out, HasSubstr("2026-03-02 10:30"));
}

TEST_F(CarouselCommand, FollowsUntilItIsStopped) {
    command_input input{{"carousel", "--clock", "2026-03-02T10:30", "--follow", "--form", "packets", "-o",
                         "-", broadcast_.path("si.xml"), broadcast_.path("logos")}};
    input.signal_at_first_output = SIGINT;
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.signal, SIGINT);
    EXPECT_EQ(end.out.size() % 48, 0U);
    EXPECT_GE(end.out.size(), 48U);
}

}  // namespace
