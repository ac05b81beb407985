// What each subcommand says of inputs that another one takes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"

namespace {

using testing::HasSubstr;

// A line for each subcommand and each thing that it is given and does not take.
TEST(RefusedInputs, AreNamedInOneLine) {
    const temporary_directory directory;
    const std::string xml = write_file(directory, "pi.xml", "<epg/>");
    const std::string plan = write_file(directory, "plan.json", "{\"steps\": []}");
    const std::string calls = write_file(directory, "calls.jsonl", "{\"call\":\"ResendNowNext\"}\n");
    const std::string image = write_file(directory, "a.png", "\x89PNG\r\n\x1A\n");
    const std::string object = write_file(directory, "pi.bin", std::string("\x02\x00", 2));
    std::string frames;
    for (const char* const sync : {"\xFF\x07\x3A\xB6", "\xFF\xF8\xC5\x49", "\xFF\x07\x3A\xB6"})
        frames += sync + std::string(6140, '\x55');
    const std::string eti = write_file(directory, "a.eti", frames);
    const std::string edi = write_file(directory, "a.edi", std::string("AF\0\0\x01\0\0\x05\x90T", 10));
    const std::string capture = write_file(directory, "a.pcap", "\xD4\xC3\xB2\xA1");
    const std::string folder = directory.path().string();
    const std::map<std::string, std::pair<std::vector<std::string>, std::string>> takes = {
        {"replay", {{xml, plan, image, object, folder}, "this is no call recording: it is "}},
        {"check", {{xml, plan}, "this is no call recording: it is "}},
        {"inspect", {{xml, plan}, "this is no binary SPI object: it is "}},
        {"encode", {{plan, calls, image, object, eti, edi, capture}, "this is no XML document: it is "}},
        {"record", {{xml, calls, image, object, eti, edi, capture}, "this is no plan: it is "}},
    };
    const auto expect_refused = [](const std::string& command, const std::string& input,
                                   const std::string& why) {
        const finished_command end = run_dabspi({{command, input}});
        EXPECT_EQ(end.status, 2) << command << " " << input;
        EXPECT_THAT(end.err, HasSubstr(input + ": " + why));
        EXPECT_LE(std::count(end.err.begin(), end.err.end(), '\n'), 2) << end.err;
    };
    for (const auto& [command, refused] : takes)
        for (const std::string& each : refused.first)
            expect_refused(command, each, refused.second);
    // Multiplexes of which nothing is left.
    for (const char* const command : {"scan", "replay", "check", "inspect"}) {
        expect_refused(command, eti, "there is no whole frame in it");
        expect_refused(command, edi, "there is no whole frame in it");
        expect_refused(command, capture, "the capture cannot be read: ");
    }
}

}  // namespace
