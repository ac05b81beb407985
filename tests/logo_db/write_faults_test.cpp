// Writes that fail: nothing is told, and what was begun is deleted.
#include <sys/resource.h>

#include <cerrno>
#include <csignal>

#include "tests/logo_db/logo_db_fixture.h"
#include "tests/logo_db/write_faults.h"

namespace logo_db {
namespace {

class WriteFaults : public LogoDb {
 protected:
    WriteFaults() {
        announce("logo", 4);
        put("E1C2210_3.PNG");
        put("E1C2220_4.PNG");
    }
    ~WriteFaults() override { EXPECT_EQ(write_faults::left_open(), 0); }

    void expect_failed_and_cleaned() {
        expect_reported({});
        expect_files({"E1C2210_3.PNG", "E1C2220_4.PNG"});  // other sizes and stations stay
    }
    static constexpr const char* name = "E1C2210_4.PNG";
};

TEST_F(WriteFaults, AFileThatCannotBeOpened) {
    put(name);
    const write_faults::scope faults({EACCES, 0, {}, 0});
    EXPECT_EQ(receive("logo", "image"), 0);
    EXPECT_EQ(write_faults::opens(), 1);
    EXPECT_EQ(write_faults::writes(), 0);
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, ADiskThatIsFull) {
    const write_faults::scope faults({0, ENOSPC, {}, 0});
    receive("logo", "image");
    EXPECT_EQ(write_faults::writes(), 1);  // not tried again
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, ABodyThatIsWrittenInPart) {
    const write_faults::scope faults({0, 0, 4, 0});
    receive("logo", "image");
    EXPECT_EQ(write_faults::writes(), 1);  // the rest is not written after it
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, ABodyOfWhichNothingIsWritten) {
    const write_faults::scope faults({0, 0, 0, 0});
    receive("logo", "image");
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, AnErrorThatShowsOnlyAtTheClose) {
    const write_faults::scope faults({0, 0, {}, EIO});
    receive("logo", "image");
    EXPECT_EQ(write_faults::writes(), 1);
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, AnErrorAtTheCloseOfAnEmptyBody) {
    const write_faults::scope faults({0, 0, {}, EIO});
    receive("logo", "");
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, TakeAnOlderGoodFileAway) {
    put(name, "the good logo of yesterday");
    const write_faults::scope faults({0, ENOSPC, {}, 0});
    receive("logo", "image");
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, TakeEveryFileOfThatSizeAway) {
    put("E1C2210_4.JPG");
    put("E1C2210_40.PNG");
    const write_faults::scope faults({0, ENOSPC, {}, 0});
    receive("logo", "image");
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, UseTheAnnouncementUp) {
    {
        const write_faults::scope faults({0, ENOSPC, {}, 0});
        receive("logo", "image");
    }
    EXPECT_EQ(receive("logo", "image"), 1);
    expect_failed_and_cleaned();
    announce("logo", 4);
    EXPECT_EQ(receive("logo", "image"), 0);
    expect_reported({name});
}

TEST_F(WriteFaults, OfOneAnnouncementDoNotKeepTheOthersFromBeingTried) {
    announce("logo", 3, kPng, {0xC225, 0xE1, 0});
    const write_faults::scope faults({0, ENOSPC, {}, 0});
    receive("logo", "image");
    EXPECT_EQ(write_faults::writes(), 2);
    expect_failed_and_cleaned();
}

// A real limit instead of a pretended one: the system itself cuts the write short.
class file_size_limit {
 public:
    explicit file_size_limit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        struct rlimit limit = before_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~file_size_limit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    file_size_limit(const file_size_limit&) = delete;
    file_size_limit& operator=(const file_size_limit&) = delete;

 private:
    struct rlimit before_ {};
    void (*handler_)(int);
};

TEST_F(WriteFaults, TheSystemsOwnLimitCutsABodyShort) {
    int result = -1;
    {
        const file_size_limit limit(100);
        result = receive("logo", std::string(101, 'x'));
    }
    EXPECT_EQ(result, 0);
    expect_failed_and_cleaned();
}

TEST_F(WriteFaults, ABodyThatJustFitsIsWritten) {
    {
        const file_size_limit limit(100);
        receive("logo", std::string(100, 'x'));
    }
    expect_reported({name});
    EXPECT_EQ(content(name), std::string(100, 'x'));
}

}  // namespace
}  // namespace logo_db
