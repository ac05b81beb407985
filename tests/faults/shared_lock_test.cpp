// The lock of the shared block, when the system refuses what it is made of, or somebody else stands in its
// place. A construction must not hang on it.
#include <sys/stat.h>

#include <cerrno>

#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"
#include "tests/faults/system_faults.h"

namespace {

struct SharedLock : testing::Test {
    const watchdog guard;

    void SetUp() override { whole_reception(surface::kWrapper).run(); }
    void TearDown() override { expect_a_faultless_reception(surface::kWrapper); }  // nothing of it stays

    void play_with(const char* function, int error) {
        reception_fault fault;
        fault.begin = [=] { system_faults::arm(function, 1, system_faults::kFromThenOn, error); };
        fault.end = [] { system_faults::disarm(); };
        result = whole_reception(surface::kWrapper).run(fault);
        EXPECT_TRUE(system_faults::struck());
    }
    static std::string given_up(const std::string& what) {
        return std::string("0 ") + kLockFile + " cannot be " + what + "; locked within this process only\n";
    }
    reception_result result;
};

TEST_F(SharedLock, WhoseFileCannotBeLookedAtIsGivenUp) {
    play_with("fstat", EIO);
    EXPECT_EQ(result.construction, reception_result::kLogicError);  // the block cannot be looked at either
    EXPECT_THAT(lines_and_texts(result), testing::ElementsAre(given_up("looked at"), "151 mmap error\n"));
    EXPECT_EQ(result.left_behind, "");
}

TEST_F(SharedLock, WhoseNameCannotBeLookedUpIsGivenUp) {
    play_with("stat", EACCES);
    EXPECT_EQ(result.construction, reception_result::kConstructed);
    // The logo root cannot be looked up either.
    EXPECT_THAT(lines_and_texts(result), testing::Contains(given_up("looked at")).Times(1));
    EXPECT_EQ(lines_and_texts(result).front(), given_up("looked at"));
    EXPECT_EQ(result.left_behind, "");
}

TEST_F(SharedLock, ThatTheSystemDoesNotGrantIsGivenUpAloud) {
    play_with("flock", ENOLCK);
    EXPECT_EQ(result.notes, reference_notes(surface::kWrapper));
    EXPECT_THAT(lines_and_texts(result), testing::ElementsAre(given_up("locked")));
    EXPECT_EQ(result.left_behind, "");
}

TEST_F(SharedLock, AtWhoseNameAPipeStandsDoesNotHoldTheHostUp) {
    whole_reception reception(surface::kWrapper);
    ASSERT_EQ(mkfifo(reception.here.at(kLockFile).c_str(), 0666), 0);
    expect_faultless(reception.run(), surface::kWrapper);
}

}  // namespace
