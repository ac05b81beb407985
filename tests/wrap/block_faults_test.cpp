// A block that cannot be opened, sized or mapped: which message comes, and how construction ends.
#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <string>

#include "spi_wrap/to_spi_server.h"
#include "tests/wrap/recording_core.h"
#include "tests/wrap/wrap_fixture.h"

namespace {

class BlockFaults : public Wrapped {
 protected:
    BlockFaults() { recording_core::forget(); }

    bool called(const std::string& begin) const {
        for (const std::string& call : calls)
            if (call.compare(0, begin.size(), begin) == 0) return true;
        return false;
    }
    // Constructs a server, which must fail with a logic error and leave nothing.
    void expect_failure() {
        const int descriptors = open_descriptors();
        const int threads = running_threads();
        here.take_calls();
        try {
            const spi_wrap::toSpiServer server(nullptr);
            ADD_FAILURE() << "a server without its block";
        } catch (const std::logic_error& error) {
            const std::string text = error.what();
            EXPECT_EQ(text.rfind("basic_string: construction from null is not valid: ", 0), 0u) << text;
            EXPECT_NE(text.find("mount a tmpfs on /dev/shm"), std::string::npos) << text;
        }
        calls = here.take_calls();
        EXPECT_TRUE(recording_core::record().made.empty());
        EXPECT_EQ(open_descriptors(), descriptors);
        EXPECT_EQ(mappings_of("SysDataInfo"), 0);
        EXPECT_TRUE(wait_for_threads(threads));
        EXPECT_FALSE(std::filesystem::exists(here.at("/dev/shm/dabspi-SysDataInfo.lock")));
        EXPECT_FALSE(called("mkdir"));  // there is no default path, and no directory is made
    }
    void expect_messages(const std::vector<std::pair<int, std::string>>& expected) {
        std::vector<std::pair<int, std::string>> got;
        for (const ZebDebugMessage& m : debug.take()) {
            EXPECT_EQ(m.channel, ZebDebugMessage::kStdErr);
            EXPECT_EQ(m.source, "ZebSharedMemory");
            EXPECT_EQ(m.function, "ZebSharedMemory");
            got.emplace_back(m.line, m.text);
        }
        EXPECT_EQ(got, expected);
    }
    std::vector<std::string> calls;
};

TEST_F(BlockFaults, AnOpenThatFailsIsReportedAndNothingIsMapped) {
    for (const int error : {EACCES, EMFILE, ENFILE, EINVAL, ENOENT}) {
        here.faults.exclusive_shm_open = error;
        expect_failure();
        expect_messages({{122, "shm_open error\n"}});
        EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                                [](const std::string& c) { return c.compare(0, 8, "shm_open") == 0; }),
                  1);
        EXPECT_FALSE(called("mmap"));
        EXPECT_FALSE(called("ftruncate"));
    }
}

TEST_F(BlockFaults, ASecondOpenThatFailsShowsAtTheMappingOnly) {
    put_block(block_with("/mnt/data"));
    here.faults.second_shm_open = EACCES;
    expect_failure();
    expect_messages({{151, "mmap error\n"}});
    EXPECT_TRUE(called("mmap 5140"));
}

TEST_F(BlockFaults, AMappingThatFailsIsReported) {
    here.faults.mmap = ENOMEM;
    expect_failure();
    expect_messages({{151, "mmap error\n"}});
}

TEST_F(BlockFaults, AMappingOfAnExistingBlockThatFailsLeavesTheBlockAsItIs) {
    put_block(block_with("/mnt/data", 'z', 77));
    here.faults.mmap = ENOMEM;
    expect_failure();
    expect_messages({{151, "mmap error\n"}});
    EXPECT_EQ(block(), block_with("/mnt/data", 'z', 77));
}

TEST_F(BlockFaults, ASizeThatCannotBeSetIsReportedAndTheMappingTriedAllTheSame) {
    here.faults.ftruncate = ENOSPC;
    expect_failure();
    // The mapping is tried; what was made is still empty, so that it cannot be touched.
    expect_messages({{135, "ftruncate error\n"}, {151, "mmap error\n"}});
    EXPECT_TRUE(called("mmap 5140"));
}

TEST_F(BlockFaults, ABlockThatIsTooShortCountsAsNotMapped) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{4}, std::size_t{100}, kBlockBytes - 1}) {
        const std::string bytes = block_with("/mnt/data", 'z').substr(0, size);
        put_block(bytes);
        expect_failure();
        expect_messages({{151, "mmap error\n"}});
        EXPECT_EQ(block(), bytes);  // neither grown nor written to
    }
}

TEST_F(BlockFaults, ABlockWhoseSizeIsUnknownCountsAsNotMapped) {
    here.faults.fstat = EIO;
    expect_failure();
    expect_messages({{151, "mmap error\n"}});
}

TEST_F(BlockFaults, AServerCanBeMadeOnceTheFaultIsGone) {
    here.faults.mmap = ENOMEM;
    expect_failure();
    here.faults.mmap = 0;
    debug.take();
    const spi_wrap::toSpiServer server(nullptr);
    EXPECT_EQ(recording_core::record().made.size(), 1U);
    EXPECT_TRUE(debug.take().empty());
}

TEST_F(BlockFaults, ALockFileThatCannotBeMadeIsReportedAndTheBlockServedAllTheSame) {
    std::filesystem::remove(here.at("/dev/shm"));
    const spi_wrap::toSpiServer server(nullptr);
    EXPECT_EQ(recording_core::record().made.size(), 1U);
    const std::vector<ZebDebugMessage> messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text,
              "/dev/shm/dabspi-SysDataInfo.lock cannot be opened; locked within this process only\n");
}

}  // namespace
