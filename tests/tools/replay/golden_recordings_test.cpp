// Every recording under examples/recordings, replayed by the command and compared with what it must give.
//
// NAME.jsonl is compared with NAME.wrapper.expected and NAME.core.expected, NAME.core.jsonl with
// NAME.core.expected.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"
#include "tools/recording/recording.h"

namespace {

namespace fs = std::filesystem;

struct golden {
    std::string recording;
    std::string api;
    std::string expected;  // a file

    std::string name() const {
        std::string text = fs::path(recording).stem().string() + "_" + api;
        std::replace_if(
            text.begin(), text.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); },
            '_');
        return text;
    }
};

void PrintTo(const golden& of, std::ostream* to) {
    *to << of.recording << " through " << of.api;
}

std::vector<std::string> recordings() {
    std::vector<std::string> found;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(DABSPI_RECORDINGS, missing))
        if (entry.path().extension() == ".jsonl") found.push_back(entry.path().string());
    std::sort(found.begin(), found.end());
    return found;
}

bool for_core_only(const std::string& recording) {
    return fs::path(recording).stem().extension() == ".core";
}

std::vector<golden> goldens() {
    std::vector<golden> found;
    for (const std::string& recording : recordings()) {
        const std::string stem = recording.substr(0, recording.size() - std::string(".jsonl").size());
        if (for_core_only(recording)) {
            found.push_back({recording, "core", stem + ".expected"});
        } else {
            for (const char* api : {"wrapper", "core"})
                found.push_back({recording, api, stem + "." + api + ".expected"});
        }
    }
    return found;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

bool is_event(const std::string& line, const std::string& event) {
    return line.rfind("{\"event\":\"" + event + "\"", 0) == 0;
}

// Where one image is announced several times under one content name, the order of its logos among themselves
// is not defined: logos that follow one another are compared as a set.
std::vector<std::string> in_defined_order(std::vector<std::string> lines) {
    const auto is_logo = [](const std::string& line) { return is_event(line, "station_logo"); };
    for (auto first = std::find_if(lines.begin(), lines.end(), is_logo); first != lines.end();) {
        const auto last = std::find_if_not(first, lines.end(), is_logo);
        std::sort(first, last);
        first = std::find_if(last, lines.end(), is_logo);
    }
    return lines;
}

finished_command replay(const golden& of, const std::vector<std::string>& more = {}) {
    command_input input{{"replay", "--json", "--api", of.api}};
    input.arguments.insert(input.arguments.end(), more.begin(), more.end());
    input.arguments.push_back(of.recording);
    return run_dabspi(input);
}

// Without waiting, calls that reach the programme database directly overtake the programmes that still wait
// in the parser's queue; then even what is notified is left to chance. The one path that keeps its order
// whatever happens leads from the parser over the database to the listener. So the notifications about
// programmes are sure where every call that takes another path to the database (the clock, the service, a
// resend) stands before the first object.
bool programmes_are_sure_without_waiting(const dabspi::recording& of) {
    bool object_seen = false;
    for (const dabspi::call& each : of.calls) {
        if (std::holds_alternative<dabspi::feed_mot_body>(each.what)) {
            object_seen = true;
        } else if (object_seen) {
            return false;
        }
    }
    return true;
}

std::vector<std::string> programmes_of(const std::vector<std::string>& lines) {
    std::vector<std::string> result;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(result),
                 [](const std::string& line) { return !is_event(line, "station_logo"); });
    return result;
}

class GoldenRecording : public testing::TestWithParam<golden> {};

INSTANTIATE_TEST_SUITE_P(Examples, GoldenRecording, testing::ValuesIn(goldens()),
                         [](const auto& chosen) { return chosen.param.name(); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GoldenRecording);  // the next test tells it better

TEST(GoldenRecordings, AreThere) {
    EXPECT_FALSE(goldens().empty()) << "no recording in " << DABSPI_RECORDINGS;
}

TEST_P(GoldenRecording, GivesWhatIsExpected) {
    ASSERT_TRUE(fs::exists(GetParam().expected)) << GetParam().expected << " is missing";
    const finished_command end = replay(GetParam());
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(in_defined_order(lines_of(end.out)),
              in_defined_order(lines_of(read_file(GetParam().expected))));
}

TEST_P(GoldenRecording, IsPlayedWithoutWaiting) {
    const finished_command end = replay(GetParam(), {"--no-wait"});
    EXPECT_EQ(end.status, 0) << end.err;
    const std::vector<std::string> received = lines_of(end.out);
    for (const std::string& line : received) {
        EXPECT_TRUE(is_event(line, "now_next") || is_event(line, "station_logo") ||
                    is_event(line, "programme_info"))
            << line;
    }
    if (programmes_are_sure_without_waiting(dabspi::read_recording(GetParam().recording))) {
        EXPECT_EQ(programmes_of(received), programmes_of(lines_of(read_file(GetParam().expected))));
    }
}

}  // namespace
