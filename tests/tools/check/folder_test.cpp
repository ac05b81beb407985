// Folders of bodies: what is guessed, in which order they are fed, and what is left out.

#include "tools/check/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

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

// Of a dump with one ensemble.
checked_input read_folder(const std::string& path, const folder_options& options) {
    std::vector<checked_input> all = read_folders(path, options);
    EXPECT_EQ(all.size(), 1U);
    return all.front();
}

std::vector<std::string> content_names(const checked_input& in) {
    std::vector<std::string> names;
    for (const dabspi::call& each : in.calls.calls)
        if (const auto* feed = std::get_if<dabspi::feed_mot_body>(&each.what))
            names.push_back(feed->content_name);
    return names;
}

std::set<std::uint32_t> data_services(const checked_input& in) {
    std::set<std::uint32_t> all;
    for (const dabspi::call& each : in.calls.calls)
        if (const auto* feed = std::get_if<dabspi::feed_mot_body>(&each.what)) all.insert(feed->service.sid);
    return all;
}

std::uint16_t ensemble_of(const checked_input& in) {
    for (const dabspi::call& each : in.calls.calls)
        if (const auto* tuned = std::get_if<dabspi::set_current_service>(&each.what)) return tuned->ensemble;
    return 0;
}

// Today's schedule of another station on another ensemble.
bytes other_schedule() {
    spi_builder::schedule_data schedule;
    schedule.scope = spi_builder::service_id{0xE1, 0x1001, 0xC0DE, 0};
    schedule.programmes = whole_day(kToday);
    return spi_builder::pi_object({schedule});
}

check_report look_at(const checked_input& in) {
    const dabspi::storage location = dabspi::storage::temporary();
    return check_input(in, severity::note, location.path());
}

TEST(Folder, IsFedInformationFirstAndImagesLast) {
    const temporary_directory directory;
    write_dump(directory);
    const checked_input in = read_folder(directory.path().string(), {});
    ASSERT_EQ(in.errors, std::vector<std::string>{});
    EXPECT_THAT(content_names(in), ElementsAre("z-si.eib", "b-today.ehb", "c-tomorrow.ehb", "a/128.png"));
    EXPECT_EQ(in.location(3), (directory.path() / "z-si.eib").string());
}

TEST(Folder, GuessesEnsembleDateAndServiceAndSaysSo) {
    const temporary_directory directory;
    write_dump(directory);
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(
        in.said,
        ElementsAre("no ensemble was given: E1.C185, which most objects name",
                    "no date was given: 2026-03-10 at noon, the first of the days that programmes cover most",
                    "no service was given: E1.C221.0, the only one with programmes",
                    "no data service is known: all objects are taken to come on one"));
    EXPECT_EQ(in.clock, clock_source::guessed);
    const check_report report = look_at(in);
    EXPECT_EQ(codes(report), std::vector<std::string>{});
    EXPECT_EQ(report.schedules.at(0).programmes.size(), 8U);
}

TEST(Folder, TakesWhatIsGiven) {
    const temporary_directory directory;
    write_dump(directory);
    folder_options options;
    options.clock = parse_clock("2026-03-12");
    options.service = dabspi::dab_identifier::of_service("E1.C222.0");
    options.ensemble = dabspi::dab_identifier::of_ensemble("0x1000");
    const checked_input in = read_folder(directory.path().string(), options);
    EXPECT_THAT(in.said, ElementsAre(HasSubstr("no data service is known")));
    EXPECT_EQ(in.clock, clock_source::true_clock);
    const auto& tuned = std::get<dabspi::set_current_service>(in.calls.calls.at(1).what);
    EXPECT_EQ(tuned.service.sid, 0xC222U);
    EXPECT_EQ(tuned.ensemble, 0x1000);
    EXPECT_EQ(std::get<dabspi::set_date_time>(in.calls.calls.at(0).what).date, "20260312");
}

TEST(Folder, SaysThatNothingCanBeGuessed) {
    const temporary_directory directory;
    write(directory, "128.png", png(128, 128));
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(
        in.said,
        ElementsAre("no ensemble was given, and no object names one: give it with --ensemble",
                    "no date was given, and no programme has one: give it with --date DATE, or --date today",
                    "no service was given, and no object names one: give it with --service",
                    HasSubstr("no data service is known")));
    EXPECT_TRUE(in.errors.empty());
    EXPECT_EQ(in.clock, clock_source::none);
    for (const dabspi::call& each : in.calls.calls)
        EXPECT_FALSE(std::holds_alternative<dabspi::set_date_time>(each.what)) << "a date was invented";
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

TEST(Folder, FindsImagesUnderTheNamesThatReceiversSave) {
    const std::string url = "http://logos.example/128x128/a.png";
    for (const std::string saved : {"http___logos.example_128x128_a.png", "http_/logos.example/128x128/a.png",
                                    "a.png", "20260310_120000_1234_http___logos.example_128x128_a.png"}) {
        const temporary_directory directory;
        write(directory, "si.eib", information_object(station_with({logo(url, 128, 128)})));
        write(directory, saved, png(128, 128));
        const checked_input in = read_folder(directory.path().string(), {});
        EXPECT_THAT(content_names(in), ElementsAre("si.eib", url)) << saved;
        EXPECT_THAT(in.said, testing::Contains(HasSubstr("1 of 1 images bear announced names when")))
            << saved;
        EXPECT_EQ(codes(look_at(in)), std::vector<std::string>{}) << saved;
    }
}

TEST(Folder, DoesNotSayOfNamesThatCannotBeToldThatTheirImagesWereNotSent) {
    const temporary_directory directory;
    write(directory, "si.eib",
          information_object(station_with({logo("128/a.png", 128, 128), logo("320/a.png", 320, 240)})));
    write(directory, "a.png", png(320, 240));
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(content_names(in), ElementsAre("si.eib", "320/a.png"));
    EXPECT_EQ(codes(look_at(in)), std::vector<std::string>{});
}

TEST(Folder, TakesTheDayThatIsCoveredMostWhereTheScheduleBeginsTheEveningBefore) {
    const temporary_directory directory;
    std::vector<spi_builder::programme_data> day = {programme("Late", kToday - 1, 22, 0, 240),
                                                    programme("Morning", kToday, 2, 0, 600),
                                                    programme("Afternoon", kToday, 12, 0, 600)};
    write(directory, "pi.ehb", schedule_object(day));
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(in.said, testing::Contains(
                             "no date was given: 2026-03-10 at noon, the day that programmes cover most"));
}

TEST(Folder, OfASingleObjectIsAFolderOfOne) {
    const temporary_directory directory;
    const std::string path = write(directory, "pi.ehb", schedule_object(whole_day(kToday)));
    const std::vector<checked_input> all = read_inputs(path, {});
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].errors, std::vector<std::string>{});
    EXPECT_THAT(content_names(all[0]), ElementsAre("pi.ehb"));
}

void write_tree(const temporary_directory& in) {
    write(in, "dump/C185 Lakes/E1C00098/si.eib",
          information_object(station_with({logo("x/128.png", 128, 128)})));
    write(in, "dump/C185 Lakes/E1C00098/x/128.png", png(128, 128));
    write(in, "dump/C185 Lakes/c221/today.ehb", schedule_object(whole_day(kToday)));
    write(in, "dump/1001/guide/pi.ehb", other_schedule());
}

TEST(Tree, IsReadEachEnsembleByItself) {
    const temporary_directory directory;
    write_tree(directory);
    for (const std::string level : {"", "/dump"}) {
        const std::vector<checked_input> all = read_folders(directory.path().string() + level, {});
        ASSERT_EQ(all.size(), 2U) << level;
        EXPECT_EQ(ensemble_of(all[0]), 0x1001) << level;
        EXPECT_EQ(ensemble_of(all[1]), 0xC185) << level;
        EXPECT_THAT(all[1].said, testing::Contains("ensemble E1.C185, as the folder \"C185 Lakes\" says"));
        EXPECT_THAT(all[1].said, testing::Contains("service E1.C221.0, as the folder \"c221\" says"));
        EXPECT_EQ(data_services(all[1]), (std::set<std::uint32_t>{0xC221, 0xE1C00098}));
        EXPECT_THAT(content_names(all[1]), ElementsAre("si.eib", "today.ehb", "x/128.png"));
    }
}

TEST(Tree, IsReadFromEachLevel) {
    const temporary_directory directory;
    write_tree(directory);
    const std::string ensemble = (directory.path() / "dump" / "C185 Lakes").string();
    EXPECT_EQ(ensemble_of(read_folder(ensemble, {})), 0xC185);
    EXPECT_EQ(data_services(read_folder(ensemble, {})).size(), 2U);
    const checked_input carousel = read_folder(ensemble + "/E1C00098/", {});
    EXPECT_EQ(data_services(carousel), (std::set<std::uint32_t>{0xE1C00098}));
    EXPECT_THAT(content_names(carousel), ElementsAre("si.eib", "x/128.png"));
    const checked_input service = read_folder(ensemble + "/c221", {});
    EXPECT_EQ(ensemble_of(service), 0xC185);
    EXPECT_THAT(service.said, testing::Contains("ensemble E1.C185, as the folder \"C185 Lakes\" says"));
}

TEST(Tree, GivesTheEnsembleThatIsAskedFor) {
    const temporary_directory directory;
    write_tree(directory);
    folder_options options;
    options.ensemble = dabspi::dab_identifier::of_ensemble("1001");
    EXPECT_EQ(ensemble_of(read_folder(directory.path().string(), options)), 0x1001);
    options.ensemble = dabspi::dab_identifier::of_ensemble("0xCAFE");
    EXPECT_THAT(read_folder(directory.path().string(), options).errors,
                ElementsAre(HasSubstr("no folder is of ensemble CAFE")));
}

TEST(Tree, OfOneEnsembleWithoutItsNameIsOne) {
    const temporary_directory directory;
    write(directory, "a/si.eib", information_object(station_with({logo("128.png", 128, 128)})));
    write(directory, "b/today.ehb", schedule_object(whole_day(kToday)));
    write(directory, "logos/128.png", png(128, 128));
    const checked_input in = read_folder(directory.path().string(), {});
    EXPECT_THAT(content_names(in), ElementsAre("si.eib", "today.ehb", "128.png"));
    EXPECT_EQ(data_services(in).size(), 2U);
    EXPECT_EQ(look_at(in).past.images.at(0).uses.size(), 1U) << "an image in another folder is announced";
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
