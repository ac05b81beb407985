// A disk that is full at every byte of a logo: pretended by a write that takes less, and by the system's own
// limit.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/faults/logo_reception.h"
#include "tests/faults/system_faults.h"

namespace {

class disk_reception : public logo_reception {
 public:
    explicit disk_reception(surface interface) : logo_reception(interface) {}

    void try_each_byte_under_the_systems_limit() {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        const rlim_t before = limit.rlim_cur;
        for (std::size_t bytes = 0; bytes <= on_air::png().size(); ++bytes) {
            const std::string name = announce();
            limit.rlim_cur = bytes;
            setrlimit(RLIMIT_FSIZE, &limit);
            receive(name);
            limit.rlim_cur = before;
            setrlimit(RLIMIT_FSIZE, &limit);
            expect_whole_or_nothing(bytes);
        }
    }

 protected:
    // With room for `bytes`: told and there only when all of it fits.
    void expect_whole_or_nothing(std::size_t bytes) {
        const bool fits = bytes >= on_air::png().size();
        EXPECT_EQ(reported(), fits ? std::vector<std::string>{kReported} : std::vector<std::string>{})
            << bytes;
        EXPECT_EQ(tree(root), fits ? (entries_t{{kFile, on_air::png_text()}}) : entries_t{}) << bytes;
        EXPECT_TRUE(messages().empty());
    }
};

class FullDisk : public testing::TestWithParam<surface>, protected disk_reception {
 protected:
    FullDisk() : disk_reception(GetParam()) {}

 private:
    const watchdog guard_;
};

TEST_P(FullDisk, LeavesAWholeLogoOrNoneAtEveryByte) {
    for (std::size_t bytes = 0; bytes <= on_air::png().size(); ++bytes) {
        const std::string name = announce();
        system_faults::take_only(bytes);
        receive(name);
        system_faults::take_all();
        expect_whole_or_nothing(bytes);
    }
    report_tried("write, cut short", GetParam(), "each byte", static_cast<long>(on_air::png().size()) + 1);
}

TEST_P(FullDisk, TakesTheOlderLogoAwayAtEveryByte) {
    for (std::size_t bytes = 0; bytes < on_air::png().size(); ++bytes) {
        announce_and_receive();
        ASSERT_EQ(reported(), std::vector<std::string>{kReported});
        const std::string name = announce();
        system_faults::take_only(bytes);
        receive(name);
        system_faults::take_all();
        expect_whole_or_nothing(bytes);
    }
}

class DiskLimit : public testing::TestWithParam<surface> {};

// The limit is a whole process's, so the reception is that of a process of its own.
TEST_P(DiskLimit, LeavesAWholeLogoOrNoneAtEveryByte) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        alarm(100);
        disk_reception(GetParam()).try_each_byte_under_the_systems_limit();
        std::fflush(stdout);
        _exit(HasFailure() ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    report_tried("RLIMIT_FSIZE", GetParam(), "each byte", static_cast<long>(on_air::png().size()) + 1);
}

INSTANTIATE_TEST_SUITE_P(Of, FullDisk, testing::Values(surface::kCore, surface::kWrapper), &surface_name);

INSTANTIATE_TEST_SUITE_P(Of, DiskLimit, testing::Values(surface::kCore, surface::kWrapper), &surface_name);

}  // namespace
