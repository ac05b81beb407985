// The system's shared data block: made when missing, read when it is there, never kept open.
#include <sys/stat.h>

#include "spi_wrap/spi_server.h"
#include "spi_wrap/sys_data_information.h"
#include "tests/wrap/recording_core.h"
#include "tests/wrap/wrap_fixture.h"

namespace {

class Block : public Wrapped {
 protected:
    Block() { recording_core::forget(); }
    static std::string storage_path() { return spi_wrap::SysDataInformation().storage_path(); }
};

TEST_F(Block, AFreshOneHasItsSizeWordAndAPayloadOfZeros) {
    EXPECT_EQ(storage_path(), "");
    const std::string bytes = block();
    ASSERT_EQ(bytes.size(), kBlockBytes);
    EXPECT_EQ(size_word_of(bytes), kPayloadBytes);
    EXPECT_EQ(bytes.substr(4), std::string(kPayloadBytes, '\0'));
    EXPECT_TRUE(debug.take().empty());
}

TEST_F(Block, AFreshOneIsMadeForOwnerAndGroup) {
    const mode_t before = umask(0);
    storage_path();
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(here.block().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0664U);
}

TEST_F(Block, IsOpenedExclusivelyAndThenCutToItsSizeAndMapped) {
    storage_path();
    std::vector<std::string> touching;
    for (const std::string& call : here.take_calls())
        if (call.find("dabspi") == std::string::npos && call.find("flock") == std::string::npos)
            touching.push_back(call);
    EXPECT_EQ(touching, (std::vector<std::string>{"shm_open /SysDataInfo exclusive", "ftruncate 5140",
                                                  "mmap 5140", "read the path", "munmap 5140"}));
}

TEST_F(Block, AnExistingOneIsOpenedAgainAndNotCut) {
    put_block(block_with("/mnt/data"));
    storage_path();
    std::vector<std::string> touching;
    for (const std::string& call : here.take_calls())
        if (call.find("dabspi") == std::string::npos && call.find("flock") == std::string::npos)
            touching.push_back(call);
    EXPECT_EQ(touching, (std::vector<std::string>{"shm_open /SysDataInfo exclusive", "shm_open /SysDataInfo",
                                                  "mmap 5140", "read the path", "munmap 5140"}));
}

TEST_F(Block, AnExistingPayloadIsNotTouched) {
    const std::string before = block_with("/mnt/data", 'z');
    put_block(before);
    EXPECT_EQ(storage_path(), "/mnt/data");
    EXPECT_EQ(block(), before);
}

TEST_F(Block, AForeignSizeWordIsOverwritten) {
    for (const std::uint32_t word : {0U, 1U, 5140U, 0xFFFFFFFFU}) {
        put_block(block_with("/mnt/data", 'z', word));
        EXPECT_EQ(storage_path(), "/mnt/data");
        EXPECT_EQ(block(), block_with("/mnt/data", 'z'));
    }
}

TEST_F(Block, TheStoragePathEndsAtItsNul) {
    put_block(block_with(std::string("/mnt/data\0more", 14)));
    EXPECT_EQ(storage_path(), "/mnt/data");
}

TEST_F(Block, AStoragePathWithoutANulEndsWithThePayload) {
    put_block(block_with(std::string(kPayloadBytes, 'p')));
    EXPECT_EQ(storage_path(), std::string(kPayloadBytes, 'p'));
}

TEST_F(Block, AStoragePathMayFillThePayloadButForItsNul) {
    put_block(block_with(std::string(kPayloadBytes - 1, 'p')));
    EXPECT_EQ(storage_path(), std::string(kPayloadBytes - 1, 'p'));
}

TEST_F(Block, ALongerOneIsReadAsFarAsItIsKnown) {
    put_block(block_with("/mnt/data", 'z') + "behind the end");
    EXPECT_EQ(storage_path(), "/mnt/data");
    EXPECT_EQ(block(), block_with("/mnt/data", 'z') + "behind the end");
}

TEST_F(Block, StaysWhenTheServerIsGone) {
    put_block(block_with("/mnt/data", 'z'));
    { const spi_wrap::spi_server server(nullptr); }
    EXPECT_EQ(block(), block_with("/mnt/data", 'z'));
}

TEST_F(Block, IsOpenUntilTheCoreIsMadeAndClosedThen) {
    const int descriptors = open_descriptors();
    const spi_wrap::spi_server server(nullptr);
    ASSERT_EQ(recording_core::record().made.size(), 1U);
    EXPECT_TRUE(recording_core::record().made[0].block_open_meanwhile);
    EXPECT_EQ(mappings_of("SysDataInfo"), 0);
    EXPECT_EQ(open_descriptors(), descriptors);
}

TEST_F(Block, IsClosedWhenTheCoreCannotBeMade) {
    const int descriptors = open_descriptors();
    const int threads = running_threads();
    recording_core::record().fail_construction = true;
    EXPECT_THROW(const spi_wrap::spi_server server(nullptr), std::bad_alloc);
    EXPECT_EQ(mappings_of("SysDataInfo"), 0);
    EXPECT_EQ(open_descriptors(), descriptors);
    EXPECT_TRUE(wait_for_threads(threads));
}

TEST_F(Block, TheSecondServerFindsTheFirstOnes) {
    { const spi_wrap::spi_server server(nullptr); }
    const std::string before = block();
    const spi_wrap::spi_server server(nullptr);
    EXPECT_EQ(block(), before);
    EXPECT_TRUE(debug.take().empty());
}

}  // namespace
