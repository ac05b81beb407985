// The storage path that a replay lends to the system's shared data block. These tests use blocks of their own
// names.

#include "tools/playing/shared_block.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

using dabspi::temporary_storage_path;

class TemporaryStoragePath : public testing::Test {
 protected:
    ~TemporaryStoragePath() override { ::shm_unlink(path_.c_str()); }

    // The block's bytes; nothing when there is no block.
    std::optional<std::string> content() const {
        const int descriptor = ::shm_open(path_.c_str(), O_RDONLY, 0);
        if (descriptor == -1) return std::nullopt;
        struct stat status {};
        ::fstat(descriptor, &status);
        std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
        EXPECT_EQ(::pread(descriptor, bytes.data(), bytes.size(), 0), status.st_size);
        ::close(descriptor);
        return bytes;
    }

    void put(const std::string& bytes) const {
        const int descriptor = ::shm_open(path_.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
        ASSERT_NE(descriptor, -1);
        ASSERT_EQ(::pwrite(descriptor, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
        ::close(descriptor);
    }

    std::string error_of(const std::string& storage) const {
        try {
            const temporary_storage_path temporary(storage, name_);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no error";
    }

    // Two checkouts may be tested at once.
    const std::string name_ = "dabspi-test-" + std::to_string(::getpid());
    const std::string path_ = "/" + name_;
};

const std::string kSizeWord("\x10\x14\0\0", 4);  // 5136, as every machine that this is built for stores it

// As another program left it: its own path, and members behind it.
std::string block_of_another_program() {
    std::string bytes(5140, '\xAA');
    bytes.replace(0, 10, "\xBB\xBB\xBB\xBB/mnt/a", 10);
    bytes[10] = '\0';
    return bytes;
}

TEST_F(TemporaryStoragePath, MakesTheBlockAndRemovesItAgain) {
    ASSERT_FALSE(content());
    {
        const temporary_storage_path temporary("/some/where", name_);
        ASSERT_TRUE(content());
        EXPECT_EQ(*content(), kSizeWord + "/some/where" + std::string(5136 - 11, '\0'));
    }
    EXPECT_FALSE(content());
}

TEST_F(TemporaryStoragePath, RestoresABlockThatWasThereByteForByte) {
    const std::string before = block_of_another_program();
    put(before);
    {
        const temporary_storage_path temporary("/some/where/else", name_);
        const std::string during = *content();
        EXPECT_EQ(during.substr(0, 4), kSizeWord);
        EXPECT_STREQ(during.c_str() + 4, "/some/where/else");
        EXPECT_EQ(during.substr(21), before.substr(21)) << "the other members belong to other programs";
    }
    EXPECT_EQ(*content(), before);
}

TEST_F(TemporaryStoragePath, ALongerBlockKeepsItsLength) {
    const std::string before = block_of_another_program() + "more";
    put(before);
    { const temporary_storage_path temporary("/some/where", name_); }
    EXPECT_EQ(*content(), before);
}

TEST_F(TemporaryStoragePath, TheLongestPathFits) {
    const std::string longest(5135, 'x');
    const temporary_storage_path temporary(longest, name_);
    EXPECT_EQ(*content(), kSizeWord + longest + '\0');
}

TEST_F(TemporaryStoragePath, ALongerPathIsRefusedAndLeavesNothing) {
    EXPECT_EQ(error_of(std::string(5136, 'x')),
              "the storage path is 5136 bytes long; the shared data block holds at most 5135");
    EXPECT_FALSE(content());
}

TEST_F(TemporaryStoragePath, AShorterBlockIsRefusedAndLeftAlone) {
    put("short");
    EXPECT_EQ(error_of("/some/where"), "the shared data block " + path_ +
                                           " is 5 bytes long, not 5140: remove /dev/shm" + path_ +
                                           " if no program uses it, or use --api core");
    EXPECT_EQ(*content(), "short");
}

TEST_F(TemporaryStoragePath, MayBeSetAgainWithinOneThread) {
    {
        const temporary_storage_path outer("/outer", name_);
        {
            const temporary_storage_path inner("/in", name_);
            EXPECT_STREQ(content()->c_str() + 4, "/in");
        }
        EXPECT_STREQ(content()->c_str() + 4, "/outer");
    }
    EXPECT_FALSE(content());
}

}  // namespace
