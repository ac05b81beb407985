// Folders of bodies: what is guessed, in which order they are fed, and what is left out.

#include "tools/check/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/check/broadcast.h"
#include "tests/tools/files/files.h"
#include "tools/playing/storage.h"

namespace {

using namespace check_test;
using namespace dabspi::check;
using testing::ElementsAre;
using testing::HasSubstr;

std::string write(const temporary_directory& in, const std::string& name, const bytes& body) {
    return write_file(in, name, std::string(body.begin(), body.end()));
}

void write_dump(const temporary_directory& in) {
    write(in, "a/128.png", png(128, 128));
    write(in, "b-today.ehb", schedule_object(whole_day(kToday)));
    write(in, "c-tomorrow.ehb", schedule_object(whole_day(kToday + 1)));
    write(in, "z-si.eib", information_object(station_with({logo("a/128.png", 128, 128)})));
}

TEST(Folder, IsFedInformationFirstAndImagesLast) {
    const temporary_directory directory;
    write_dump(directory);
    const checked_input in = read_folder(directory.path().string(), {});
    ASSERT_EQ(in.errors, std::vector<std::string>{});
    std::vector<std::string> names;
    for (const dabspi::call& each : in.calls.calls)
        if (const auto* feed = std::get_if<dabspi::feed_mot_body>(&each.what))
            names.push_back(feed->content_name);
    EXPECT_THAT(names, ElementsAre("z-si.eib", "b-today.ehb", "c-tomorrow.ehb", "a/128.png"));
    EXPECT_EQ(in.location(3), (directory.path() / "z-si.eib").string());
}

TEST(Folder, GuessesEnsembleDateAndServiceAndSaysSo) {
    const temporary_directory directory;
    write_dump(directory);
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(in.said,
                ElementsAre(HasSubstr("ensemble is taken to be 0xC185"),
                            HasSubstr("date is taken to be 2026-03-10, noon"),
                            HasSubstr("service is taken to be E1.C221.0, the one with most programmes")));
    const dabspi::storage location = dabspi::storage::temporary();
    const check_report report = check_input(in, severity::note, location.path());
    EXPECT_EQ(codes(report), std::vector<std::string>{});
    EXPECT_EQ(report.schedules.at(0).programmes.size(), 8U);
}

TEST(Folder, TakesWhatIsGiven) {
    const temporary_directory directory;
    write_dump(directory);
    folder_options options;
    options.clock = parse_clock("2026-03-12");
    options.service = parse_service("E1.C222.0");
    options.ensemble = 0x1000;
    const checked_input in = read_folder(directory.path().string(), options);
    EXPECT_THAT(in.said, ElementsAre());
    const auto& tuned = std::get<dabspi::set_current_service>(in.calls.calls.at(1).what);
    EXPECT_EQ(tuned.service.sid, 0xC222U);
    EXPECT_EQ(tuned.ensemble, 0x1000);
    EXPECT_EQ(std::get<dabspi::set_date_time>(in.calls.calls.at(0).what).date, "20260312");
}

TEST(Folder, SaysThatNothingCanBeGuessed) {
    const temporary_directory directory;
    write(directory, "128.png", png(128, 128));
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(in.said,
                ElementsAre(HasSubstr("no object names an ensemble"), HasSubstr("no programme has a date"),
                            HasSubstr("no object names a service")));
    EXPECT_TRUE(in.errors.empty());
}

TEST(Folder, GuessesAnAnnouncedServiceWithoutProgrammes) {
    const temporary_directory directory;
    write(directory, "si.eib", information_object(station_with({})));
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(in.said, testing::Contains(HasSubstr("E1.C221.0, the first one announced")));
}

TEST(Folder, LeavesOutWhatIsNoBody) {
    const temporary_directory directory;
    write_dump(directory);
    write_file(directory, "notes.xml", "<xml/>");
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(in.said, testing::Contains(HasSubstr("notes.xml: left out, it is an XML document")));
}

TEST(Folder, OfOtherThingsCannotBeUsed) {
    const temporary_directory directory;
    write_file(directory, "notes.xml", "<xml/>");
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(in.errors, ElementsAre(HasSubstr("no SPI object and no image")));
    const temporary_directory empty;
    EXPECT_THAT(read_folder(empty.path().string(), {}).errors,
                ElementsAre(HasSubstr("no file in the folder")));
}

// The command stops noting Ctrl-C then: the examination has nothing to tidy up.
TEST(CheckInput, SaysWhenItHasPlayed) {
    const dabspi::storage location = dabspi::storage::temporary();
    std::size_t fed = 0;
    std::size_t fed_when_played = 0;
    int played = 0;
    dabspi::recording calls = dabspi::parse_recording(
        "{\"call\":\"SetDateTime\",\"date\":\"20260310\",\"time\":\"1000\"}\n", "a.jsonl", "");
    dabspi::check::check_input(
        dabspi::check::input_of(std::move(calls)), dabspi::check::severity::note, location.path(),
        [&](std::size_t count) {
            fed = count;
            return true;
        },
        [&] {
            ++played;
            fed_when_played = fed;
        });
    EXPECT_EQ(played, 1);
    EXPECT_EQ(fed_when_played, 1u);
}

}  // namespace
