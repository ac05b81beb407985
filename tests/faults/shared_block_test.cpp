// Whole receptions of the wrapper over a shared block that other programs have made, in whatever state they
// left it.
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 5140;
constexpr std::size_t kPayload = 5136;

std::string block_of(std::uint32_t size_word, const std::string& path, std::size_t size = kBlock) {
    std::string block(sizeof size_word, '\0');
    std::memcpy(&block[0], &size_word, sizeof size_word);
    block += path;
    block.resize(std::max(size, block.size()), '\0');
    return block;
}

struct SharedBlock : testing::Test {
    const watchdog guard;
    reception_result result;

    void SetUp() override { whole_reception(surface::kWrapper).run(); }

    // A reception over a block of these bytes; gives what is in the block afterwards.
    std::string play_over(const std::string& bytes) {
        whole_reception reception(surface::kWrapper);
        std::ofstream(reception.here.block(), std::ios::binary | std::ios::trunc) << bytes;
        result = reception.run();
        std::ifstream in(reception.here.block(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void expect_refused() {
        expect_sound(result);
        EXPECT_EQ(result.construction, reception_result::kLogicError);
        EXPECT_EQ(lines_and_texts(result), std::vector<std::string>{"151 mmap error\n"});
        EXPECT_TRUE(result.files.empty());
        expect_a_faultless_reception(surface::kWrapper);
    }
};

TEST_F(SharedBlock, ThatIsTooShortIsRefusedAndLeftAsItIs) {
    for (const std::size_t size : {0U, 1U, 3U, 4U, 5U, 4095U, 4096U, 4097U, 5135U, 5136U, 5139U}) {
        SCOPED_TRACE(size);
        const std::string bytes = block_of(kPayload, "/mnt/data").substr(0, size);
        EXPECT_EQ(play_over(bytes), bytes);
        expect_refused();
    }
}

TEST_F(SharedBlock, ThatIsWholeOrLongerServes) {
    for (const std::size_t size :
         {std::size_t{5140}, std::size_t{5141}, std::size_t{8192}, std::size_t{100000}}) {
        SCOPED_TRACE(size);
        const std::string bytes = block_of(kPayload, "/mnt/data", size);
        EXPECT_EQ(play_over(bytes), bytes);
        expect_faultless(result, surface::kWrapper);
    }
}

TEST_F(SharedBlock, WithAnySizeWordServesAndGetsTheRightOne) {
    for (const std::uint32_t word :
         {0U, 1U, 5135U, 5137U, 5140U, 0x10140000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(word);
        EXPECT_EQ(play_over(block_of(word, "/mnt/data")), block_of(kPayload, "/mnt/data"));
        expect_faultless(result, surface::kWrapper);
    }
}

TEST_F(SharedBlock, WhosePathHasNoEndLeadsToTheOtherRoot) {
    // Too long for any file system.
    for (const std::size_t length : {kPayload, kPayload - 1}) {
        const std::string bytes = block_of(kPayload, "/mnt/" + std::string(length - 5, 'p'), kBlock);
        EXPECT_EQ(play_over(bytes), bytes);
        expect_faultless(result, surface::kWrapper);
        EXPECT_EQ(result.files.count("/temp/dab/E1C2210_4.PNG"), 1U);
    }
}

TEST_F(SharedBlock, ThatIsUnlinkedWhileTheLibraryRunsIsNotMissed) {
    whole_reception reception(surface::kWrapper);
    reception.notes.during_a_call = [&](const char*) { unlink(reception.here.block_file()); };
    expect_faultless(reception.run(), surface::kWrapper);
    EXPECT_FALSE(fs::exists(reception.here.block()));
}

TEST_F(SharedBlock, ThatIsRewrittenWhileTheLibraryRunsIsNotReadAgain) {
    whole_reception reception(surface::kWrapper);
    const std::string other = block_of(1, "/elsewhere");
    reception.notes.during_a_call = [&](const char*) {
        std::ofstream(reception.here.block(), std::ios::binary | std::ios::trunc) << other;
    };
    const reception_result played = reception.run();
    EXPECT_EQ(played.notes, reference_notes(surface::kWrapper));
    EXPECT_EQ(played.files.count("/mnt/data/HdStationLogo/E1C2210_4.PNG"), 1U);
    std::ifstream in(reception.here.block(), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), other);
}

// In place of the block stands what no program should have made there.
template <class Make>
reception_result play_with(Make make) {
    whole_reception reception(surface::kWrapper);
    fs::remove(reception.here.block());
    make(reception.here);
    return reception.run();
}

TEST_F(SharedBlock, InWhosePlaceADirectoryStandsIsRefused) {
    result = play_with([](const sandbox& here) { fs::create_directory(here.block()); });
    expect_refused();
}

TEST_F(SharedBlock, InWhosePlaceAPipeStandsIsRefusedAndNotWaitedFor) {
    result = play_with([](const sandbox& here) { mkfifo(here.block_file(), 0600); });
    EXPECT_EQ(result.files.size(), 0U);
    expect_refused();
}

TEST_F(SharedBlock, InWhosePlaceALinkStandsIsRefusedAndItsTargetIsLeftAsItIs) {
    whole_reception reception(surface::kWrapper);
    fs::rename(reception.here.block(), reception.here.at("/target"));
    fs::create_symlink(reception.here.at("/target"), reception.here.block());
    const std::string before = block_of(kPayload, "/mnt/data");
    result = reception.run();
    EXPECT_EQ(result.construction, reception_result::kLogicError);
    EXPECT_EQ(lines_and_texts(result), std::vector<std::string>{"151 mmap error\n"});
    EXPECT_EQ(result.files["/target"], before);
}

}  // namespace
