// The shared-memory template, on an object whose name no other process uses.
#include "platform/zeb_shared_memory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"

extern "C" {
int __real_shm_open(const char* name, int flags, mode_t mode);
int __real_ftruncate(int descriptor, off_t size);
void* __real_mmap(void* address, std::size_t size, int protection, int flags, int descriptor, off_t offset);
}

namespace {

struct opened {
    std::string name;
    int flags;
    mode_t mode;
};
std::vector<opened> opens;
int fail_open_with = 0;         // every shm_open
int fail_second_open_with = 0;  // the one without O_EXCL
bool fail_truncate = false;
bool fail_map = false;
std::size_t mapped_bytes = 0;

}  // namespace

extern "C" {
int __wrap_shm_open(const char* name, int flags, mode_t mode) {
    opens.push_back({name, flags, mode});
    const int error =
        (flags & O_EXCL) == 0 && fail_second_open_with != 0 ? fail_second_open_with : fail_open_with;
    if (error != 0) {
        errno = error;
        return -1;
    }
    return __real_shm_open(name, flags, mode);
}
int __wrap_ftruncate(int descriptor, off_t size) {
    if (!fail_truncate) return __real_ftruncate(descriptor, size);
    errno = ENOSPC;
    return -1;
}
void* __wrap_mmap(void* address, std::size_t size, int protection, int flags, int descriptor, off_t offset) {
    mapped_bytes = size;
    EXPECT_EQ(protection, PROT_READ | PROT_WRITE);
    EXPECT_EQ(flags, MAP_SHARED);
    EXPECT_EQ(offset, 0);
    if (!fail_map) return __real_mmap(address, size, protection, flags, descriptor, offset);
    errno = ENOMEM;
    return MAP_FAILED;
}
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct record {
    char text[60];
};
using Block = ZebSharedMemory<record, 1>;
constexpr std::size_t kBytes = 64;  // the size word and the record

struct SharedMemory : testing::Test {
    const watchdog guard;
    captured_debug debug;
    const std::string name = "dabspi-test-block-" + std::to_string(getpid());
    const std::string path = "/dev/shm/" + name;
    const std::ptrdiff_t descriptors_before = open_descriptors();
    const std::size_t mappings_before = mappings();

    SharedMemory() {
        opens.clear();
        fail_open_with = 0;
        fail_second_open_with = 0;
        fail_truncate = false;
        fail_map = false;
    }
    ~SharedMemory() override {
        EXPECT_EQ(open_descriptors(), descriptors_before);
        EXPECT_EQ(mappings(), mappings_before);
        std::filesystem::remove(path);
    }

    static std::ptrdiff_t open_descriptors() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    }
    std::size_t mappings() const {
        std::ifstream maps("/proc/self/maps");
        std::size_t count = 0;
        for (std::string line; std::getline(maps, line);)
            count += line.find(name) != std::string::npos ? 1 : 0;
        return count;
    }
    std::string content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void make(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
    static std::string size_word() { return {static_cast<char>(sizeof(record)), 0, 0, 0}; }

    std::vector<int> lines() {
        std::vector<int> all;
        for (const ZebDebugMessage& message : debug.take()) {
            EXPECT_EQ(message.channel, ZebDebugMessage::kStdErr);
            EXPECT_EQ(message.source, "ZebSharedMemory");
            EXPECT_EQ(message.function, "ZebSharedMemory");
            const std::string expected = message.line == 122   ? "shm_open error\n"
                                         : message.line == 135 ? "ftruncate error\n"
                                                               : "mmap error\n";
            EXPECT_EQ(message.text, expected);
            all.push_back(message.line);
        }
        return all;
    }
};

TEST_F(SharedMemory, FreshBlockHasItsSizeWordAndZeros) {
    {
        const Block block(name.c_str());
        ASSERT_NE(block.payload(), nullptr);
        EXPECT_EQ(block.payload()->text[0], '\0');
        EXPECT_EQ(mapped_bytes, kBytes);
        EXPECT_EQ(mappings(), mappings_before + 1);
    }
    EXPECT_EQ(content(), size_word() + std::string(sizeof(record), '\0'));  // the object stays
    ASSERT_EQ(opens.size(), 1U);
    EXPECT_EQ(opens[0].name, "/" + name);
    EXPECT_EQ(opens[0].flags, O_RDWR | O_CREAT | O_EXCL);
    EXPECT_EQ(opens[0].mode, 0664U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(SharedMemory, ExistingBlockKeepsItsPayload) {
    make(size_word() + "/mnt/data" + std::string(51, '\0'));
    {
        const Block block(name.c_str());
        ASSERT_NE(block.payload(), nullptr);
        EXPECT_STREQ(block.payload()->text, "/mnt/data");
    }
    EXPECT_EQ(content(), size_word() + "/mnt/data" + std::string(51, '\0'));
    ASSERT_EQ(opens.size(), 2U);
    EXPECT_EQ(opens[1].flags, O_RDWR | O_CREAT);
    EXPECT_EQ(opens[1].mode, 0664U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(SharedMemory, ForeignSizeWordIsOverwritten) {
    make("\xFF\xFF\xFF\xFF/mnt/data" + std::string(51, 'z'));
    {
        const Block block(name.c_str());
        ASSERT_NE(block.payload(), nullptr);
    }
    EXPECT_EQ(content(), size_word() + "/mnt/data" + std::string(51, 'z'));
}

TEST_F(SharedMemory, LongerBlockIsMappedAndKeepsItsLength) {
    make(std::string(kBytes + 100, 'z'));
    {
        const Block block(name.c_str());
        ASSERT_NE(block.payload(), nullptr);
    }
    EXPECT_EQ(content(), size_word() + std::string(kBytes + 96, 'z'));
}

TEST_F(SharedMemory, ShorterBlockIsNotMappedAndNotGrown) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{4}, kBytes - 1}) {
        make(std::string(size, 'z'));
        {
            const Block block(name.c_str());
            EXPECT_EQ(block.payload(), nullptr);
            EXPECT_EQ(mappings(), mappings_before);
        }
        EXPECT_EQ(content(), std::string(size, 'z'));
        EXPECT_THAT(lines(), ElementsAre(151));
    }
}

TEST_F(SharedMemory, ObjectThatCannotBeCreatedIsReported) {
    fail_open_with = EACCES;
    const Block block(name.c_str());
    EXPECT_EQ(block.payload(), nullptr);
    EXPECT_EQ(opens.size(), 1U);
    EXPECT_THAT(lines(), ElementsAre(122));
}

TEST_F(SharedMemory, FailureOfTheSecondOpenShowsAtTheMappingOnly) {
    make(std::string(kBytes, 'z'));
    fail_second_open_with = EACCES;
    const Block block(name.c_str());
    EXPECT_EQ(block.payload(), nullptr);
    EXPECT_THAT(lines(), ElementsAre(151));
}

TEST_F(SharedMemory, FreshBlockThatCannotBeSizedIsReportedTwice) {
    // The mapping is still tried; the object is empty then.
    fail_truncate = true;
    {
        const Block block(name.c_str());
        EXPECT_EQ(block.payload(), nullptr);
    }
    EXPECT_THAT(lines(), ElementsAre(135, 151));
    EXPECT_EQ(content(), "");
}

TEST_F(SharedMemory, BlockThatCannotBeMappedIsReported) {
    fail_map = true;
    const Block block(name.c_str());
    EXPECT_EQ(block.payload(), nullptr);
    EXPECT_EQ(mapped_bytes, kBytes);
    EXPECT_THAT(lines(), ElementsAre(151));
}

TEST_F(SharedMemory, TwoViewsShareOneBlock) {
    const Block first(name.c_str());
    const Block second(name.c_str());
    ASSERT_NE(first.payload(), nullptr);
    ASSERT_NE(second.payload(), nullptr);
    const_cast<record*>(first.payload())->text[5] = 'q';
    EXPECT_EQ(second.payload()->text[5], 'q');
    EXPECT_NE(first.payload(), second.payload());
}

TEST_F(SharedMemory, LeavesNoLockBehind) {
    const Block block(name.c_str());
    EXPECT_FALSE(std::filesystem::exists("/dev/shm/dabspi-" + name + ".lock"));
    const ZebSyncGuard<ZebSharedSyncObject> again(block);
    EXPECT_TRUE(std::filesystem::exists("/dev/shm/dabspi-" + name + ".lock"));
}

}  // namespace
