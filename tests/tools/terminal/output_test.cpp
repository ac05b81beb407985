// What is printed, and what is noticed while printing.

#include "tools/terminal/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>

#include "tests/tools/files/files.h"
#include "tools/terminal/progress.h"
#include "tools/terminal/standard_streams.h"

namespace {

using dabspi::output;
using dabspi::progress_line;

struct opened {
    int descriptor;
    ~opened() { ::close(descriptor); }
};

TEST(Output, KeepsTextBackUntilItIsFlushed) {
    const temporary_directory directory;
    const opened file{::open((directory / "out").c_str(), O_WRONLY | O_CREAT, 0600)};
    output out(file.descriptor);
    EXPECT_TRUE(out.write("one\n"));
    EXPECT_TRUE(out.write("two\n"));
    EXPECT_EQ(read_file(directory / "out"), "");
    EXPECT_TRUE(out.flush());
    EXPECT_EQ(read_file(directory / "out"), "one\ntwo\n");
    EXPECT_TRUE(out.flush());
    EXPECT_EQ(read_file(directory / "out"), "one\ntwo\n");
}

TEST(Output, WritesMuchTextWithoutBeingFlushed) {
    const temporary_directory directory;
    const opened file{::open((directory / "out").c_str(), O_WRONLY | O_CREAT, 0600)};
    output out(file.descriptor);
    const std::string line(1000, 'x');
    std::string all;
    for (int i = 0; i < 200; ++i) {
        all += line;
        ASSERT_TRUE(out.write(line));
    }
    EXPECT_GE(read_file(directory / "out").size(), 100000u);
    EXPECT_TRUE(out.flush());
    EXPECT_EQ(read_file(directory / "out"), all);
}

TEST(Output, AFullDiskIsNoticedAndStaysNoticed) {
    const opened full{::open("/dev/full", O_WRONLY)};
    output out(full.descriptor);
    EXPECT_TRUE(out.write("text"));
    EXPECT_FALSE(out.flush());
    EXPECT_EQ(out.error(), ENOSPC);
    EXPECT_FALSE(out.write("more"));
    EXPECT_FALSE(out.flush());
}

TEST(Output, AClosedPipeIsNoticed) {
    std::signal(SIGPIPE, SIG_IGN);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ::close(ends[0]);
    const opened writing{ends[1]};
    output out(writing.descriptor);
    out.write("text");
    EXPECT_FALSE(out.flush());
    EXPECT_EQ(out.error(), EPIPE);
}

TEST(Output, AClosedDescriptorIsNoticed) {
    const int descriptor = ::open("/dev/null", O_WRONLY);
    ::close(descriptor);
    output out(descriptor);
    out.write("text");
    EXPECT_FALSE(out.flush());
    EXPECT_EQ(out.error(), EBADF);
}

TEST(StandardDescriptors, AClosedOneIsNotGivenToTheNextFile) {
    const auto closed_ones_stay_closed = [] {
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::close(descriptor);
        dabspi::occupy_closed_standard_streams();
        const int next = ::open("/dev/null", O_RDWR);
        char byte = 0;
        const bool refused = ::read(STDIN_FILENO, &byte, 1) == -1 && ::write(STDOUT_FILENO, &byte, 1) == -1 &&
                             ::write(STDERR_FILENO, &byte, 1) == -1 && errno == EBADF;
        return next > STDERR_FILENO && refused;
    };
    EXPECT_EXIT(::_exit(closed_ones_stay_closed() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(StandardDescriptors, OpenOnesAreLeftAlone) {
    const auto stay_open = [] {
        dabspi::occupy_closed_standard_streams();
        return ::write(STDERR_FILENO, "still here", 10) == 10;
    };
    EXPECT_EXIT(::_exit(stay_open() ? 0 : 1), testing::ExitedWithCode(0), "still here");
}

class Progress : public testing::Test {
 protected:
    void pass(std::chrono::milliseconds time) { now_ += time; }

    std::string shown() const { return read_file(directory_ / "terminal"); }

    temporary_directory directory_;
    std::chrono::steady_clock::time_point now_{};
    opened terminal_{::open((directory_ / "terminal").c_str(), O_WRONLY | O_CREAT, 0600)};
    progress_line::clock clock_ = [this] { return now_; };
};

TEST_F(Progress, AShortReplayShowsNone) {
    {
        progress_line line(terminal_.descriptor, true, 100, "calls", clock_);
        pass(std::chrono::milliseconds(999));
        line.update(100);
    }
    EXPECT_EQ(shown(), "");
}

TEST_F(Progress, ALongReplayShowsHowFarItIsAndErasesTheLineAtItsEnd) {
    {
        progress_line line(terminal_.descriptor, true, 100, "calls", clock_);
        pass(std::chrono::milliseconds(1000));
        line.update(7);
        EXPECT_EQ(shown(), "\rdabspi: 7 of 100 calls\x1B[K");
    }
    EXPECT_EQ(shown(), "\rdabspi: 7 of 100 calls\x1B[K\r\x1B[K");
}

TEST_F(Progress, WithoutATotalItCounts) {
    progress_line line(terminal_.descriptor, true, 0, "files read", clock_);
    pass(std::chrono::milliseconds(1000));
    line.update(7);
    EXPECT_EQ(shown(), "\rdabspi: 7 files read\x1B[K");
}

TEST_F(Progress, IsNotDrawnWithEveryCall) {
    progress_line line(terminal_.descriptor, true, 100, "calls", clock_);
    pass(std::chrono::milliseconds(1000));
    line.update(7);
    pass(std::chrono::milliseconds(199));
    line.update(8);
    EXPECT_EQ(shown(), "\rdabspi: 7 of 100 calls\x1B[K");
    pass(std::chrono::milliseconds(1));
    line.update(9);
    EXPECT_EQ(shown(), "\rdabspi: 7 of 100 calls\x1B[K\rdabspi: 9 of 100 calls\x1B[K");
}

TEST_F(Progress, TellsTheTimeLeftOnceItCanBeKnown) {
    progress_line line(terminal_.descriptor, true, 100, "MiB", clock_);
    pass(std::chrono::milliseconds(4000));
    line.update(5);
    EXPECT_EQ(shown(), "\rdabspi: 5 of 100 MiB, 1 min 16 s left\x1B[K");
}

TEST_F(Progress, IsErasedOnce) {
    progress_line line(terminal_.descriptor, true, 100, "calls", clock_);
    pass(std::chrono::milliseconds(1000));
    line.update(7);
    line.erase();
    line.erase();
    EXPECT_EQ(shown(), "\rdabspi: 7 of 100 calls\x1B[K\r\x1B[K");
}

TEST_F(Progress, ShowsNothingWhereItIsNotWanted) {
    progress_line line(terminal_.descriptor, false, 100, "calls", clock_);
    pass(std::chrono::hours(1));
    line.update(7);
    line.erase();
    EXPECT_EQ(shown(), "");
}

}  // namespace
