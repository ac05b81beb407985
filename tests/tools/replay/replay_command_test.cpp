// dabspi replay as a user runs it: what it prints, how it ends, what it leaves behind.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/zeb_shared_memory.h"
#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"
#include "tests/tools/recording/sample_broadcast.h"

namespace {

namespace fs = std::filesystem;
using namespace sample_broadcast;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

class ReplayCommand : public testing::TestWithParam<const char*> {
 protected:
    // `more` are the arguments behind "replay --api API".
    command_input replay(const std::vector<std::string>& more) const {
        command_input input{{"replay", "--api", GetParam()}};
        input.arguments.insert(input.arguments.end(), more.begin(), more.end());
        input.environment["TMPDIR"] = temporary_.path().string();
        return input;
    }

    bool core() const { return std::string(GetParam()) == "core"; }

    std::string whole_as_json() const {
        return lines(core() ? whole_received_by_core() : whole_received_by_wrapper());
    }

    // Calls that the core answers with more lines than a pipe holds: whoever does not read holds up the
    // replay.
    std::string endless_recording() const {
        std::string text = lines({kClock, kService, kSchedule});
        for (int i = 0; i < 2000; ++i)
            text += lines(
                {kService,
                 core() ? kResend : R"({"call":"SetCurrentService","sid":1,"ecc":1,"ensemble":"0xC185"})"});
        write_recording(files_, {});
        return write_file(files_, "endless.jsonl", text);
    }

    temporary_directory files_;
    temporary_directory temporary_;  // where the command makes its temporary directories
};

INSTANTIATE_TEST_SUITE_P(Interfaces, ReplayCommand, testing::Values("wrapper", "core"),
                         [](const auto& chosen) { return chosen.param; });

TEST_P(ReplayCommand, PrintsNotificationsAsJson) {
    const finished_command end = run_dabspi(replay({"--json", write_recording(files_, whole())}));
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.out, whole_as_json());
}

TEST_P(ReplayCommand, PrintsNotificationsForAPerson) {
    const finished_command end =
        run_dabspi(replay({"--storage", files_ / "storage", write_recording(files_, whole())}));
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.out,
                HasSubstr("2026-03-02 10:30  E1.C221.0  now   2026-03-02 10:00    60 min  Breakfast\n"
                          "                             next  2026-03-02 11:00    60 min  Elevenses\n"));
    const std::string root = (fs::canonical(files_ / "storage") / "HdStationLogo").string();
    EXPECT_THAT(end.out, HasSubstr("2026-03-02 10:30  E1.C221.0  logo  PNG 128x128  " + root + "/" +
                                   kLogoFile + "\n"));
    EXPECT_EQ(end.out.find('\x1B'), std::string::npos)
        << "no colours and no cursor movements outside a terminal";
}

TEST_P(ReplayCommand, ReadsStandardInputWithBodyFilesFromTheCurrentDirectory) {
    write_recording(files_, {});
    command_input input = replay({"--json", "-"});
    input.standard_input = lines(whole());
    input.directory = files_.path().string();
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.out, whole_as_json());
}

TEST_P(ReplayCommand, WaitsOnceAtTheEndOnDemand) {
    const std::string recording = write_recording(files_, {kClock, kService, kSchedule});
    const finished_command waiting = run_dabspi(replay({"--json", recording}));
    const finished_command not_waiting = run_dabspi(replay({"--json", "--no-wait", recording}));
    EXPECT_EQ(not_waiting.status, 0);
    EXPECT_NE(waiting.out, "");
    EXPECT_EQ(not_waiting.out, waiting.out);
}

TEST_P(ReplayCommand, AnEmptyRecordingIsPlayed) {
    const finished_command end = run_dabspi(replay({write_file(files_, "empty.jsonl", "# nothing\n")}));
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.out, "");
}

TEST_P(ReplayCommand, TheUsersStorageIsMadeAndStays) {
    const std::string storage = files_ / "deep/storage";
    const finished_command end = run_dabspi(replay({"--storage", storage, write_recording(files_, whole())}));
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(read_file(storage + "/HdStationLogo/" + kLogoFile), kLogoBytes);
    EXPECT_TRUE(fs::is_empty(temporary_.path()));
}

TEST_P(ReplayCommand, TheTemporaryStorageIsRemoved) {
    const finished_command end = run_dabspi(replay({write_recording(files_, whole())}));
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.out, HasSubstr(temporary_.path().string()));
    EXPECT_TRUE(fs::is_empty(temporary_.path()));
}

TEST_P(ReplayCommand, TheTemporaryStorageIsKeptOnDemand) {
    const finished_command end = run_dabspi(replay({"--keep", "--json", write_recording(files_, whole())}));
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.out, whole_as_json());
    std::vector<fs::path> kept(fs::directory_iterator(temporary_.path()), fs::directory_iterator{});
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(read_file((kept[0] / "HdStationLogo" / kLogoFile).string()), kLogoBytes);
    EXPECT_THAT(end.err, HasSubstr("dabspi: the storage directory is kept: " + kept[0].string() + "\n"));
}

TEST_P(ReplayCommand, NothingOfAnUnusableRecordingIsFed) {
    std::vector<const char*> calls = whole();
    calls.push_back("{\"call\":\"SetDateTime\"}");
    calls.push_back("nonsense");
    const std::string recording = write_recording(files_, calls);
    const finished_command end = run_dabspi(replay({"--storage", files_ / "storage", recording}));
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.out, "");
    EXPECT_EQ(end.err,
              recording + ":6: SetDateTime needs the key \"date\"\n" + recording +
                  ":6: SetDateTime needs the key \"time\"\n" + recording +
                  ":7: this is not JSON: column 2: syntax error while parsing value - invalid literal; "
                  "last read: 'no'\n");
    EXPECT_FALSE(fs::exists(files_ / "storage")) << "not even the storage is made";
}

TEST_P(ReplayCommand, TheFirstHundredErrorsAreNamedAndTheOthersCounted) {
    std::string text;
    for (int i = 0; i < 123; ++i)
        text += "{}\n";
    const std::string recording = write_file(files_, "bad.jsonl", text);
    const finished_command end = run_dabspi(replay({recording}));
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(std::count(end.err.begin(), end.err.end(), '\n'), 101);
    EXPECT_THAT(end.err, HasSubstr(recording + ":100: the key \"call\" is missing\n" + recording +
                                   ": and 23 more errors\n"));
}

TEST_P(ReplayCommand, AMissingRecordingIsNamed) {
    const finished_command end = run_dabspi(replay({files_ / "none.jsonl"}));
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.out, "");
    EXPECT_EQ(end.err, (files_ / "none.jsonl") + ": cannot open the recording: No such file or directory\n");
}

TEST_P(ReplayCommand, AStorageThatCannotBeMadeIsAFailure) {
    const std::string in_the_way = write_file(files_, "file", "x");
    const finished_command end =
        run_dabspi(replay({"--storage", in_the_way, write_recording(files_, whole())}));
    EXPECT_EQ(end.status, 3);
    EXPECT_EQ(end.out, "");
    EXPECT_THAT(end.err, StartsWith("dabspi: cannot make the directory " + in_the_way + ": "));
}

TEST_P(ReplayCommand, AFailureAtTheStartLeavesNoTemporaryStorage) {
    command_input input = replay({write_recording(files_, whole())});
    input.environment["TMPDIR"] = files_ / "none";
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.status, 3);
    EXPECT_THAT(end.err, HasSubstr("set TMPDIR, or give a directory with --storage"));
}

TEST_P(ReplayCommand, ClosedStandardOutputIsAFailureAndNothingElseIsOverwritten) {
    command_input input =
        replay({"--json", "--storage", files_ / "storage", write_recording(files_, whole())});
    input.standard_output_closed = true;
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.status, 3);
    EXPECT_THAT(end.err, HasSubstr("dabspi: cannot write to standard output: Bad file descriptor\n"));
    for (const auto& entry : fs::recursive_directory_iterator(files_.path())) {
        if (!entry.is_regular_file()) continue;
        EXPECT_EQ(read_file(entry.path().string()).find("\"event\""), std::string::npos) << entry.path();
    }
}

TEST_P(ReplayCommand, AFullDiskUnderStandardOutputIsAFailure) {
    command_input input = replay({write_recording(files_, whole())});
    input.standard_output = "/dev/full";
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.status, 3);
    EXPECT_THAT(end.err, HasSubstr("dabspi: cannot write to standard output: No space left on device\n"));
    EXPECT_TRUE(fs::is_empty(temporary_.path()));
}

TEST_P(ReplayCommand, AReaderThatHasReadEnoughEndsItQuietly) {
    command_input input = replay({"--json", endless_recording()});
    input.close_after_first_output = true;
    const finished_command end = run_dabspi(input);
    EXPECT_EQ(end.status, 3);
    EXPECT_EQ(end.err.find("dabspi:"), std::string::npos) << end.err;
    EXPECT_TRUE(fs::is_empty(temporary_.path()));
}

TEST_P(ReplayCommand, ASignalEndsItInGoodOrder) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        command_input input = replay({"--json", endless_recording()});
        input.signal_at_first_output = signal;
        const finished_command end = run_dabspi(input);
        EXPECT_EQ(end.signal, signal);
        EXPECT_TRUE(fs::is_empty(temporary_.path()));
    }
}

TEST_P(ReplayCommand, ReplaysAtOnceDoNotDisturbOneAnother) {
    const std::string recording = write_recording(files_, whole());
    std::vector<command_input> inputs;
    for (int i = 0; i < 8; ++i)
        inputs.push_back(
            replay({"--json", "--storage", files_ / ("storage-" + std::to_string(i)), recording}));
    for (const finished_command& end : run_dabspi_together(inputs)) {
        EXPECT_EQ(end.status, 0) << end.err;
        EXPECT_EQ(end.out, whole_as_json());
    }
    for (int i = 0; i < 8; ++i) {
        const std::string root = files_ / ("storage-" + std::to_string(i) + "/HdStationLogo/");
        EXPECT_EQ(read_file(root + kLogoFile), kLogoBytes);
    }
}

TEST_P(ReplayCommand, TheSharedBlockDoesNotKeepTheStoragePath) {
    const std::string storage = files_ / "storage";
    const finished_command end = run_dabspi(replay({"--storage", storage, write_recording(files_, whole())}));
    EXPECT_EQ(end.status, 0);
    // Whoever else uses the block at this moment keeps to its lock.
    const ZebSharedSyncObject lock("SysDataInfo");
    const ZebSyncGuard<ZebSharedSyncObject> guard(lock);
    const int block = ::shm_open("/SysDataInfo", O_RDONLY, 0);
    if (block == -1) return;  // gone, as it was before
    std::string bytes(5140, '\0');
    const ssize_t got = ::pread(block, bytes.data(), bytes.size(), 0);
    ::close(block);
    ASSERT_GE(got, 0);
    EXPECT_EQ(bytes.find(storage), std::string::npos);
}

TEST_P(ReplayCommand, ResendNowNextIsPlayedThroughTheCoreOnly) {
    const std::string recording = write_recording(files_, {kClock, kResend});
    const finished_command end = run_dabspi(replay({"--json", recording}));
    if (core()) {
        EXPECT_EQ(end.status, 0);
        EXPECT_EQ(end.out, lines({kEmptyPair}));
    } else {
        EXPECT_EQ(end.status, 2);
        EXPECT_EQ(end.out, "");
        EXPECT_EQ(end.err,
                  recording + ":2: ResendNowNext exists on the core interface only; use --api core\n");
    }
}

}  // namespace
