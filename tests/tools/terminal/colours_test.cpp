#include "tools/terminal/colours.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

using namespace dabspi;

TEST(Colouring, ColoursOnlyWhereTheyAreWanted) {
    EXPECT_EQ(colouring(true)(text_colour::fault, "x"), "\033[31mx\033[0m");
    EXPECT_EQ(colouring(false)(text_colour::fault, "x"), "x");
    EXPECT_EQ(colouring(true)(text_colour::plain, "x"), "x");
    EXPECT_EQ(colouring(true)(text_colour::fault, ""), "");
}

TEST(Colouring, NothingButATerminalIsColouredUnasked) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    EXPECT_FALSE(wants_colour("auto", ends[1]));
    EXPECT_TRUE(wants_colour("always", ends[1]));
    EXPECT_FALSE(wants_colour("never", ends[1]));
    ::close(ends[0]);
    ::close(ends[1]);
}

// A terminal of its own.
class ColouringOnATerminal : public testing::Test {
 protected:
    void SetUp() override {
        master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) skip();
        const char* const name = IsSkipped() ? nullptr : ::ptsname(master_);
        if (name != nullptr) terminal_ = ::open(name, O_RDWR | O_NOCTTY);
        if (terminal_ < 0 && !IsSkipped()) skip();
        ::setenv("TERM", "xterm", 1);
        ::unsetenv("NO_COLOR");
    }
    void TearDown() override {
        ::unsetenv("NO_COLOR");
        if (terminal_ >= 0) ::close(terminal_);
        if (master_ >= 0) ::close(master_);
    }
    static void skip() {
        GTEST_SKIP() << "this machine gives no pseudo-terminal (" << std::strerror(errno)
                     << "); is /dev/pts mounted?";
    }
    int master_ = -1;
    int terminal_ = -1;
};

TEST_F(ColouringOnATerminal, ItIsColoured) {
    EXPECT_TRUE(wants_colour("auto", terminal_));
}

TEST_F(ColouringOnATerminal, NotWithNoColor) {
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_FALSE(wants_colour("auto", terminal_));
    EXPECT_TRUE(wants_colour("always", terminal_));
    ::setenv("NO_COLOR", "", 1);  // empty is as good as not set
    EXPECT_TRUE(wants_colour("auto", terminal_));
}

TEST_F(ColouringOnATerminal, NotOnADumbOne) {
    ::setenv("TERM", "dumb", 1);
    EXPECT_FALSE(wants_colour("auto", terminal_));
}

}  // namespace
