// dabspi check and dabspi explain from outside: exit statuses, output, messages.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "testkit/spi_builder_objects.h"
#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"
#include "tests/tools/recording/sample_broadcast.h"
#include "tools/check/catalogue.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

finished_command check(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "check");
    return run_dabspi({arguments});
}

// The sample's logo is no image, and its hours leave gaps: an error, warnings and notes.
std::string sample(const temporary_directory& in) {
    return sample_broadcast::write_recording(in, sample_broadcast::whole());
}

// Two days without a gap, by the sample's station.
std::string clean(const temporary_directory& in) {
    using namespace spi_builder;
    std::string lines =
        "{\"call\":\"SetDateTime\",\"date\":\"20260302\",\"time\":\"0000\"}\n"
        "{\"call\":\"SetCurrentService\",\"sid\":\"0xC221\",\"ecc\":\"0xE1\",\"ensemble\":\"0xC185\"}\n";
    for (unsigned day = 0; day < 2; ++day) {
        schedule_data schedule;
        schedule.scope = spi_builder::service_id{0xE1, 0xC185, 0xC221, 0};
        for (unsigned half = 0; half < 2; ++half) {
            programme_data programme;
            programme.name.medium_name = half == 0 ? "Morning" : "Evening";
            programme.start = local_time(mjd(2026, 3, 2) + day, 12 * half, 0, 0);
            programme.duration = 12 * 3600;
            schedule.programmes.push_back(programme);
        }
        const bytes object = pi_object({schedule});
        const std::string name = "pi" + std::to_string(day) + ".bin";
        write_file(in, name, std::string(object.begin(), object.end()));
        lines += "{\"call\":\"FeedMotBody\",\"content_type\":7,\"content_subtype\":1,\"content_name\":\"" +
                 name + "\",\"sid\":\"0xE1C00098\",\"ecc\":\"0xE1\",\"file\":\"" + name + "\"}\n";
    }
    return write_file(in, "clean.jsonl", lines);
}

TEST(CheckCommand, Ends0WhenNothingIsFound) {
    const temporary_directory directory;
    const finished_command done = check({clean(directory)});
    EXPECT_EQ(done.status, 0) << done.out;
    EXPECT_THAT(done.out, HasSubstr("\nnothing found\n"));
    EXPECT_EQ(done.err, "");
}

TEST(CheckCommand, Ends1WithFindingsAndSaysThem) {
    const temporary_directory directory;
    const finished_command done = check({sample(directory)});
    EXPECT_EQ(done.status, 1);
    EXPECT_THAT(done.out, HasSubstr("error    logo-not-png\n"));
    EXPECT_THAT(done.out, HasSubstr("    line 5, c221-128.png\n"));
    EXPECT_THAT(done.out, Not(HasSubstr("\033")));
    EXPECT_EQ(done.err, "");
}

TEST(CheckCommand, CountsFromTheSeverityAskedFor) {
    const temporary_directory directory;
    const std::string recording = sample(directory);
    const finished_command errors = check({"--severity", "error", recording});
    EXPECT_EQ(errors.status, 1);
    EXPECT_THAT(errors.out, Not(HasSubstr("no-tomorrow")));
    EXPECT_THAT(errors.out, HasSubstr("of lower severity left out"));
    const std::string without_logo = sample_broadcast::write_recording(
        directory, {sample_broadcast::kClock, sample_broadcast::kService, sample_broadcast::kSchedule});
    EXPECT_EQ(check({"--severity", "error", without_logo}).status, 0);
    EXPECT_EQ(check({"--severity", "warning", without_logo}).status, 1);
    EXPECT_EQ(check({"--severity", "awful", recording}).status, 2);
}

TEST(CheckCommand, PrintsJson) {
    const temporary_directory directory;
    const finished_command done = check({"--json", sample(directory)});
    EXPECT_EQ(done.status, 1);
    const auto report = nlohmann::json::parse(done.out);
    EXPECT_EQ(report["errors"], 1);
    EXPECT_EQ(report["findings"][0]["code"], "logo-not-png");
}

TEST(CheckCommand, WritesAPageBesideItsOutput) {
    const temporary_directory directory;
    const std::string page = (directory.path() / "page.html").string();
    const finished_command done = check({"--html", page, sample(directory)});
    EXPECT_EQ(done.status, 1);
    EXPECT_THAT(done.out, HasSubstr("logo-not-png"));
    EXPECT_THAT(read_file(page), StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(check({"--html", "-", sample(directory)}).out, StartsWith("<!DOCTYPE html>"));
}

TEST(CheckCommand, SaysWhyAPageCannotBeWritten) {
    const temporary_directory directory;
    const std::string page = (directory.path() / "none" / "page.html").string();
    const finished_command done = check({"--html", page, sample(directory)});
    EXPECT_EQ(done.status, 3);
    EXPECT_EQ(done.err, "dabspi: cannot write " + page + ": No such file or directory\n");
}

TEST(CheckCommand, Ends2WhenTheInputCannotBeUsed) {
    const temporary_directory directory;
    const std::string bad = write_file(directory, "bad.jsonl", "{\"call\":\"Sing\"}\n");
    const finished_command unusable = check({bad});
    EXPECT_EQ(unusable.status, 2);
    EXPECT_THAT(unusable.err, StartsWith("dabspi: " + bad + ":1: "));
    EXPECT_EQ(unusable.out, "");
    EXPECT_EQ(check({(directory.path() / "missing.jsonl").string()}).status, 2);
    EXPECT_EQ(check({}).status, 2);
    EXPECT_EQ(check({"--json", "--all", bad}).status, 2);
}

TEST(CheckCommand, TakesAFolderAndSaysWhatItGuesses) {
    const temporary_directory directory;
    clean(directory);
    std::filesystem::remove(directory.path() / "clean.jsonl");
    const finished_command done = check({directory.path().string()});
    EXPECT_EQ(done.status, 0) << done.out;
    EXPECT_THAT(done.out, HasSubstr("no date was given: 2026-03-02 at noon"));
    EXPECT_THAT(done.out, HasSubstr("no service was given: E1.C221.0"));
    EXPECT_THAT(done.out, HasSubstr("no ensemble was given: E1.C185"));
    const finished_command given = check({"--date", "2026-03-03T10:00", "--service", "E1.C221.0",
                                          "--ensemble", "0xC185", directory.path().string()});
    EXPECT_EQ(given.status, 1);
    EXPECT_THAT(given.out, Not(HasSubstr("was given")));
    EXPECT_THAT(given.out, HasSubstr("2 objects, 2026-03-03 10:00"));
    EXPECT_THAT(given.out, HasSubstr("no-tomorrow"));
}

TEST(CheckCommand, ReadsATreeEachEnsembleByItselfWithAnIndex) {
    const temporary_directory directory;
    clean(directory);
    std::filesystem::remove(directory.path() / "clean.jsonl");
    const std::string root = (directory.path() / "dump").string();
    for (const std::string ensemble : {"C185", "1001"}) {
        std::filesystem::create_directories(root + "/" + ensemble);
        for (const std::string name : {"pi0.bin", "pi1.bin"})
            std::filesystem::copy(directory.path() / name, root + "/" + ensemble + "/" + name);
    }
    const std::string page = (directory.path() / "night.html").string();
    const finished_command done = check({"--html", page, root});
    EXPECT_EQ(done.status, 1) << "the schedules are of another ensemble than the folder 1001 says";
    EXPECT_THAT(done.out, StartsWith(root + ": 2 ensembles\n  1001, no date: "));
    EXPECT_THAT(done.out,
                HasSubstr("\n  E1.C185, 2026-03-02: 2 objects, 1 service, 4 programmes; nothing found; "));
    EXPECT_THAT(read_file(page), HasSubstr("<a href=\"./night-E1.C185.html\">E1.C185</a>"));
    EXPECT_THAT(read_file((directory.path() / "night-E1.C185.html").string()),
                HasSubstr("<title>E1.C185, 2026-03-02: dabspi check</title>"));
    EXPECT_THAT(read_file((directory.path() / "night-1001.html").string()), HasSubstr("other-ensemble"));

    const auto json = nlohmann::json::parse(check({"--json", root}).out);
    EXPECT_EQ(json["ensembles"].size(), 2U);
    EXPECT_EQ(json["ensembles"][1]["ensemble"], "E1.C185");
    EXPECT_EQ(json["warnings"], json["ensembles"][0]["warnings"]);

    EXPECT_EQ(check({"--ensemble", "e1.c185", root}).status, 0);
    const finished_command refused = check({"--html", "-", root});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.err, HasSubstr("there are 2 ensembles, and a page holds one"));
}

TEST(CheckCommand, RefusesAFoldersOptionsThatAreNone) {
    const temporary_directory directory;
    const std::string folder = directory.path().string();
    const finished_command date = check({"--date", "tomorrow", folder});
    EXPECT_EQ(date.status, 2);
    EXPECT_THAT(date.err, HasSubstr("\"tomorrow\" is no date; a date is written 2026-03-10"));
    const finished_command service = check({"--service", "Radio", folder});
    EXPECT_EQ(service.status, 2);
    EXPECT_THAT(service.err, HasSubstr("\"Radio\" is no service; a service is written 0xC221"));
    EXPECT_EQ(check({"--ensemble", "0x10000", folder}).status, 2);
    EXPECT_THAT(check({"--date", "2026-03-02", sample(directory)}).err, HasSubstr("are for folders"));
    EXPECT_THAT(check({folder + "/objects/none"}).err, HasSubstr("cannot open the recording"));
}

TEST(CheckCommand, ReadsARecordingFromStandardInput) {
    const temporary_directory directory;
    command_input input{{"check", "-"}};
    input.standard_input = read_file(clean(directory));
    input.directory = directory.path().string();
    const finished_command done = run_dabspi(input);
    EXPECT_EQ(done.status, 0) << done.out << done.err;
}

TEST(CheckCommand, ColoursOnDemandOnly) {
    const temporary_directory directory;
    const std::string recording = sample(directory);
    EXPECT_THAT(check({"--color", "always", recording}).out, HasSubstr("\033["));
    EXPECT_THAT(check({"--color", "never", recording}).out, Not(HasSubstr("\033")));
    EXPECT_EQ(check({"--color", "pink", recording}).status, 2);
}

TEST(CheckCommand, IsSilentAboutAReaderThatHasReadEnough) {
    const temporary_directory directory;
    for (const char* const option : {"--all", "--json"}) {
        command_input input{{"check", option, DABSPI_RECORDINGS "/day-on-air.jsonl"}};
        input.close_after_first_output = true;
        const finished_command done = run_dabspi(input);
        EXPECT_EQ(done.err, "");
        EXPECT_EQ(done.signal, 0);
    }
}

TEST(CheckCommand, SaysThatOutputCannotBeWritten) {
    command_input input{{"check", DABSPI_RECORDINGS "/day-on-air.jsonl"}};
    input.standard_output = "/dev/full";
    const finished_command done = run_dabspi(input);
    EXPECT_EQ(done.status, 3);
    EXPECT_EQ(done.err, "dabspi: cannot write to standard output: No space left on device\n");
}

TEST(CheckCommand, LeavesNothingBehind) {
    const temporary_directory directory;
    const temporary_directory temporary;
    command_input input{{"check", sample(directory)}};
    input.environment["TMPDIR"] = temporary.path().string();
    EXPECT_EQ(run_dabspi(input).status, 1);
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST(ExplainCommand, ListsEveryCode) {
    const finished_command done = run_dabspi({{"explain"}});
    EXPECT_EQ(done.status, 0);
    std::istringstream lines(done.out);
    for (const dabspi::check::catalogue_entry& each : dabspi::check::catalogue()) {
        std::string severity, name;
        lines >> severity >> name;
        EXPECT_EQ(severity, severity_name(each.how_bad));
        EXPECT_EQ(name, each.name);
        std::getline(lines, name);
    }
    std::string more;
    EXPECT_FALSE(lines >> more) << more;
}

TEST(ExplainCommand, ExplainsEveryCode) {
    command_input input{{"explain"}};
    for (const dabspi::check::catalogue_entry& each : dabspi::check::catalogue())
        input.arguments.emplace_back(each.name);
    const finished_command done = run_dabspi(input);
    EXPECT_EQ(done.status, 0);
    for (const dabspi::check::catalogue_entry& each : dabspi::check::catalogue())
        EXPECT_THAT(done.out, HasSubstr(std::string(each.name) + " (" + severity_name(each.how_bad) +
                                        "): " + each.title));
}

TEST(ExplainCommand, PrintsThePageOfTheDocumentation) {
    const finished_command done = run_dabspi({{"explain", "--markdown"}});
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.out, read_file(DABSPI_FINDINGS))
        << "dabspi explain --markdown >docs/findings.md repairs it";
    for (const dabspi::check::catalogue_entry& each : dabspi::check::catalogue()) {
        EXPECT_THAT(done.out, HasSubstr(std::string("| `") + each.name + "` | "));
        // A bar would begin another column.
        for (const std::string text : {each.title, each.why, each.remedy})
            EXPECT_EQ(text.find('|'), std::string::npos) << each.name;
    }
    EXPECT_EQ(run_dabspi({{"explain", "--markdown", "gap"}}).status, 2);
}

TEST(ExplainCommand, SaysWhatMayHaveBeenMeant) {
    const finished_command near = run_dabspi({{"explain", "overlaps", "gap"}});
    EXPECT_EQ(near.status, 2);
    EXPECT_EQ(near.err, "dabspi: there is no finding \"overlaps\"; did you mean overlap?\n");
    EXPECT_THAT(near.out, StartsWith("gap (warning)"));
    EXPECT_EQ(run_dabspi({{"explain", "something-else"}}).err,
              "dabspi: there is no finding \"something-else\"; \"dabspi explain\" lists them all\n");
}

TEST(ExplainCommand, SaysThatOutputCannotBeWritten) {
    command_input input{{"explain"}};
    input.standard_output = "/dev/full";
    const finished_command done = run_dabspi(input);
    EXPECT_EQ(done.status, 3);
    EXPECT_EQ(done.err, "dabspi: cannot write to standard output: No space left on device\n");
}

TEST(CheckCommand, ThePageIsNotWrittenOverWhatIsChecked) {
    const temporary_directory files;
    const std::string text = "{\"call\":\"SetDateTime\",\"date\":\"20260310\",\"time\":\"1000\"}\n";
    write_file(files, "day.jsonl", text);
    command_input input{{"check", "--html", "./day.jsonl", "day.jsonl"}};
    input.directory = files.path().string();
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, testing::HasSubstr("is what is checked, and would be written over"));
    EXPECT_EQ(read_file((files.path() / "day.jsonl").string()), text);
    input.arguments = {"check", "--html", "", "day.jsonl"};
    EXPECT_EQ(run_dabspi(input).status, 2);
}

}  // namespace
