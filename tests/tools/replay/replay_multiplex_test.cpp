// dabspi replay of a multiplex: the same notifications as of a recording of the same calls.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/eti_writer.h"
#include "testkit/on_air/spi_multiplex.h"
#include "testkit/temporary_directory.h"
#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"
#include "tests/tools/recording/sample_broadcast.h"
#include "tools/recording/recording.h"

namespace {

namespace kit = carousel_kit;
namespace mb = multiplex_builder;
using testing::HasSubstr;

std::string as_text(const mb::bytes& file) {
    return {file.begin(), file.end()};
}

// The objects that a recording feeds, as one round of a carousel.
on_air::multiplex on_air_of(const dabspi::recording& broadcast) {
    std::vector<kit::object> objects;
    for (const dabspi::call& each : broadcast.calls) {
        const auto* const fed = std::get_if<dabspi::feed_mot_body>(&each.what);
        if (fed == nullptr) continue;
        kit::object object;
        object.transport_id = 20 + static_cast<unsigned>(objects.size());
        object.content_type = fed->content_type;
        object.content_subtype = fed->content_subtype;
        object.name = fed->content_name;
        object.body = *fed->body;
        objects.push_back(object);
    }
    on_air::multiplex sent;
    sent.spi.emplace_back();
    sent.audio.push_back({0xC222, "Radio 2", 2});
    sent.sub_channels.push_back({30, 192, on_air::stream_of(5, kit::directory_round(9, objects)), false});
    return sent;
}

on_air::multiplex sample_on_air() {
    const temporary_directory directory;
    return on_air_of(
        dabspi::read_recording(sample_broadcast::write_recording(directory, sample_broadcast::whole())));
}

finished_command replay(const mb::bytes& file, std::vector<std::string> arguments) {
    command_input how;
    how.arguments = {"replay"};
    how.arguments.insert(how.arguments.end(), arguments.begin(), arguments.end());
    how.arguments.emplace_back("-");
    how.standard_input = as_text(file);
    return run_dabspi(how);
}

TEST(ReplayOfMultiplex, TellsWhatARecordingOfTheSameCallsTells) {
    const finished_command end = replay(mb::raw_eti(on_air::frames_of(sample_on_air(), 80)), {"--json"});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.err, "");
    EXPECT_EQ(end.out, sample_broadcast::lines(sample_broadcast::whole_received_by_wrapper()));
}

TEST(ReplayOfMultiplex, IsTheSameFromAFileAndFromEveryContainer) {
    const auto frames = on_air::frames_of(sample_on_air(), 80);
    const finished_command piped = replay(mb::raw_eti(frames), {"--json"});
    ASSERT_NE(piped.out, "");
    for (const mb::bytes& file : {mb::streamed_eti(frames), mb::framed_eti(frames), mb::af_stream(frames)}) {
        const temporary_directory directory;
        const std::string path = write_file(directory, "multiplex", as_text(file));
        const finished_command end = run_dabspi({{"replay", "--json", path}});
        EXPECT_EQ(end.status, 0) << end.err;
        EXPECT_EQ(end.out, piped.out);
    }
}

TEST(ReplayOfMultiplex, NamesTheServicesForOneThatIsNotThere) {
    const mb::bytes file = mb::raw_eti(on_air::frames_of(sample_on_air(), 80));
    const finished_command end = replay(file, {"--service", "Radio 9"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err,
                HasSubstr("there is no service \"Radio 9\" in this multiplex; there are C221 Radio 1, "
                          "C222 Radio 2, E1C00098 Guide"));
}

TEST(ReplayOfMultiplex, SaysWhenThereIsNoSpi) {
    on_air::multiplex silent = sample_on_air();
    silent.spi.clear();
    const finished_command end = replay(mb::raw_eti(on_air::frames_of(silent, 40)), {});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.err, HasSubstr("<stdin>: no SPI that can be read is announced"));
}

TEST(ReplayOfMultiplex, RefusesItsOptionsForARecording) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "day.jsonl",
                                        "{\"call\":\"SetDateTime\",\"date\":\"20260302\","
                                        "\"time\":\"1030\"}\n");
    const finished_command end = run_dabspi({{"replay", "--service", "all", path}});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("it is a call recording, which says service and objects itself"));
}

// Recorded, it tells the same.
TEST(ReplayOfMultiplex, IsThatOfItsRecording) {
    const temporary_directory directory;
    const auto frames = on_air::frames_of(sample_on_air(), 80);
    const std::string input = write_file(directory, "multiplex.eti", as_text(mb::raw_eti(frames)));
    for (const char* const deliver : {"every", "once"})
        for (const char* const service : {"Radio 1", "Radio 2", "all"}) {
            const std::string recording = directory / "day.jsonl";
            const finished_command made =
                run_dabspi({{"record", "-o", recording, "--service", service, "--deliver", deliver, input}});
            EXPECT_EQ(made.status, 0) << made.err;
            EXPECT_THAT(made.out, HasSubstr("day.jsonl: "));
            const finished_command replayed = run_dabspi({{"replay", "--json", recording}});
            const finished_command direct =
                run_dabspi({{"replay", "--json", "--service", service, "--deliver", deliver, input}});
            EXPECT_EQ(direct.status, 0) << direct.err;
            EXPECT_EQ(replayed.out, direct.out) << deliver << " " << service;
        }
    EXPECT_TRUE(std::filesystem::exists(directory / "objects/w20260302dC221.EHB"));
}

TEST(ReplayOfMultiplex, RecordingKeepsEachVersionOfABody) {
    on_air::multiplex sent = sample_on_air();
    kit::object first;
    first.name = "a/b";
    first.body = kit::bytes(20, 1);
    kit::object second = first;
    second.transport_id = 2;
    second.body = kit::bytes(20, 2);
    auto groups = kit::directory_round(9, {first});
    kit::append(groups, kit::directory_round(10, {second}));
    sent.sub_channels[0].stream = on_air::stream_of(5, groups);
    const temporary_directory directory;
    const std::string input =
        write_file(directory, "multiplex.eti", as_text(mb::raw_eti(on_air::frames_of(sent, 60))));
    EXPECT_EQ(run_dabspi({{"record", "-o", directory / "out/day.jsonl", input}}).status, 0);
    EXPECT_EQ(read_file(directory / "out/objects/a_b"), std::string(20, '\1'));
    EXPECT_EQ(read_file(directory / "out/objects/a_b.2"), std::string(20, '\2'));
    EXPECT_EQ(run_dabspi({{"record", "-o", input, input}}).status, 2);
    EXPECT_EQ(run_dabspi({{"record", "-o", input + "/day.jsonl", input}}).status, 3);
}

// The other subcommands, of the same multiplex.
TEST(ReplayOfMultiplex, IsExplainedByCheckWithFrameAndTimeOfDay) {
    const temporary_directory directory;
    const auto frames = on_air::frames_of(sample_on_air(), 80);
    const std::string input = write_file(directory, "multiplex.eti", as_text(mb::raw_eti(frames)));
    const finished_command end = run_dabspi({{"check", input}});
    EXPECT_EQ(end.status, 1) << end.err;
    EXPECT_EQ(end.err, "");
    EXPECT_THAT(end.out, HasSubstr("multiplex.eti: 5 calls, 2026-03-02 10:30\n"));
    EXPECT_THAT(end.out,
                testing::ContainsRegex("    frame [0-9]+, 2026-03-02 10:30, w20260302dC221.EHB, byte"));
    const finished_command label = run_dabspi({{"check", "--service", "Radio 2", input}});
    EXPECT_EQ(label.status, 1) << label.err;
    EXPECT_EQ(run_dabspi({{"check", "--service", "Radio 9", input}}).status, 2);
    EXPECT_EQ(run_dabspi({{"check", "--date", "today", input}}).status, 2);
}

TEST(ReplayOfMultiplex, HasItsObjectsInspected) {
    const temporary_directory directory;
    const auto frames = on_air::frames_of(sample_on_air(), 80);
    const std::string input = write_file(directory, "multiplex.eti", as_text(mb::raw_eti(frames)));
    const finished_command end = run_dabspi({{"inspect", input}});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_THAT(end.out, testing::ContainsRegex("multiplex.eti, frame [0-9]+, 2026-03-02 10:30"));
    EXPECT_THAT(end.out, HasSubstr("Elevenses"));
    command_input piped{{"inspect", "--json", "-"}};
    piped.standard_input = as_text(mb::raw_eti(frames));
    EXPECT_THAT(run_dabspi(piped).out, HasSubstr("\"place\":\"frame "));
}

// One sub-channel's bytes, and the FIC beside it.
TEST(ReplayOfMultiplex, IsTheSameFromASubChannelWithItsFic) {
    const temporary_directory directory;
    const auto frames = on_air::frames_of(sample_on_air(), 80);
    std::string fic;
    std::string sub_channel;
    for (const mb::logical_frame& each : frames) {
        fic += as_text(each.fic);
        sub_channel += as_text(each.sub_channels.at(0).content);
    }
    const std::string fic_file = write_file(directory, "fic.bin", fic);
    const std::string input = write_file(directory, "30.bin", sub_channel);
    const std::string whole = replay(mb::raw_eti(frames), {"--json"}).out;
    const finished_command end = run_dabspi({{"replay", "--json", "--fic", fic_file, input}});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.out, whole);
    EXPECT_EQ(run_dabspi({{"replay", "--json", "--fic", fic_file, "--address", "5", input}}).out, whole);
    const finished_command scanned = run_dabspi({{"scan", "--fic", fic_file, input}});
    EXPECT_THAT(scanned.out, HasSubstr("complete: all objects were received"));
    const finished_command other = run_dabspi({{"scan", "--fic", fic_file, "--address", "6", input}});
    EXPECT_EQ(other.status, 2);
    EXPECT_THAT(other.err, HasSubstr("announces no SPI at address 6; there is 5 in sub-channel 30"));
    const finished_command none = run_dabspi({{"scan", "--fic", input, input}});
    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.err, HasSubstr("holds no FIB"));
}

}  // namespace
