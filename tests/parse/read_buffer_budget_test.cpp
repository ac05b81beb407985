// The bound on what one body can make its reader do.
#include <gtest/gtest.h>

#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::ReadBuffer;
using spi::spi_parseable;

TEST(ReadBufferBudget, GrowsWithTheBody) {
    for (const std::uint32_t size : {0U, 1U, 1000U, 1000000U}) {
        const ReadBuffer buffer = buffer_of(bytes(size));
        EXPECT_EQ(buffer.scopes_left(), 2ULL * size + 4096);
        EXPECT_EQ(buffer.string_bytes_left(), 4ULL * size + 65536);
        EXPECT_EQ(buffer.text_bytes_left(), 255ULL * size + 65536);
    }
}

TEST(ReadBufferBudget, EachElementThatIsOpenedSpendsOneScope) {
    ReadBuffer buffer = buffer_of(elem(0x02, {elem(0x21, bytes{})}));
    const std::uint64_t before = buffer.scopes_left();
    spi_parseable parent(buffer);
    const spi_parseable child(parent);
    EXPECT_EQ(before - buffer.scopes_left(), 2U);
}

TEST(ReadBufferBudget, StringBytesAreCountedBeforeTokensAreExpanded) {
    const spi::SpiTokenTable table = table_of(token_table({{0x01, std::string(200, 'x')}}));
    ReadBuffer buffer = buffer_of({0x01, 0x07, 'a', 'b'});
    const std::uint64_t before = buffer.string_bytes_left();
    std::string out;
    buffer.read_string(out, 3, table);
    EXPECT_EQ(out.size(), 201U);
    EXPECT_EQ(before - buffer.string_bytes_left(), 3U);
}

TEST(ReadBufferBudget, BytesThatDoNotExistAreNotCounted) {
    ReadBuffer buffer = buffer_of({'a', 'b'});
    const std::uint64_t before = buffer.string_bytes_left();
    std::string out;
    buffer.read_string(out, 5000, spi::SpiTokenTable());
    EXPECT_EQ(before - buffer.string_bytes_left(), 2U);
}

TEST(ReadBufferBudget, BeyondTheScopesTheBodyCountsAsEnded) {
    const bytes body = elem(0x1C, bytes(8, 0xAA));
    ReadBuffer buffer = buffer_of(body);
    const std::uint64_t allowed = 2 * body.size() + 4096;
    for (std::uint64_t i = 0; i < allowed; ++i) {
        buffer.pos = 0;
        const spi_parseable element(buffer);
        ASSERT_EQ(element.tag, 0x1C) << i;
    }
    buffer.pos = 0;
    const spi_parseable beyond(buffer);
    EXPECT_EQ(beyond.tag, 127);
    EXPECT_FALSE(beyond.has_more());
    EXPECT_FALSE(buffer.in_body());
    EXPECT_EQ(buffer.ru8(), 255);
    std::string out;
    buffer.pos = 0;
    buffer.read_string(out, 4, spi::SpiTokenTable());
    EXPECT_EQ(out, "");
}

TEST(ReadBufferBudget, BeyondTheStringBytesTheBodyCountsAsEnded) {
    const std::uint32_t size = 1000;
    ReadBuffer buffer = buffer_of(bytes(size, 'x'));
    std::uint64_t read = 0;
    while (buffer.in_body()) {
        buffer.pos = 0;
        std::string out;
        EXPECT_EQ(buffer.read_string(out, size, spi::SpiTokenTable()), size);
        read += out.size();
        ASSERT_LE(read, 4ULL * size + 65536);
        buffer.pos = 0;
    }
    EXPECT_EQ(read, 4ULL * size + 65536);
    EXPECT_EQ(buffer.string_bytes_left(), 0U);
    EXPECT_EQ(buffer.ru8(), 255);
}

TEST(ReadBufferBudget, AStringOfTokensAloneUsesWhatAWellFormedBodyMayUseAndNoMore) {
    const spi::SpiTokenTable table = table_of(token_table({{0x01, std::string(255, 'x')}}));
    ReadBuffer buffer = buffer_of(bytes(70000, 0x01));
    std::string out;
    EXPECT_EQ(buffer.read_string(out, 70000, table), 70000U);
    EXPECT_EQ(out.size(), 255U * 70000U);
    EXPECT_EQ(buffer.size, 70000U);  // nothing ended
    EXPECT_EQ(buffer.text_bytes_left(), 65536U);
}

TEST(ReadBufferBudget, BeyondTheExpandedBytesTheBodyCountsAsEnded) {
    const spi::SpiTokenTable table = table_of(token_table({{0x01, std::string(255, 'x')}}));
    const std::uint32_t size = 1000;
    const std::uint64_t allowed = 255ULL * size + 65536;
    ReadBuffer buffer = buffer_of(bytes(size, 0x01));
    std::uint64_t read = 0;
    while (buffer.in_body()) {  // the same bytes again and again, as overlapping elements make the parser do
        buffer.pos = 0;
        std::string out;
        EXPECT_EQ(buffer.read_string(out, size, table), size);
        read += out.size();
        ASSERT_LE(read, allowed);
        buffer.pos = 0;
    }
    EXPECT_EQ(read, allowed);  // the last token is cut
    EXPECT_EQ(buffer.text_bytes_left(), 0U);
    EXPECT_EQ(buffer.ru8(), 255);
}

TEST(ReadBufferBudget, HoldsForPlainStringsToo) {
    const std::uint32_t size = 200;
    ReadBuffer buffer = buffer_of(bytes(size, 'x'));
    std::uint64_t read = 0;
    while (buffer.in_body()) {
        buffer.pos = 0;
        std::string out;
        buffer.read_string(out, size);
        read += out.size();
        ASSERT_LE(read, 4ULL * size + 65536);
        buffer.pos = 0;
    }
    EXPECT_EQ(read, 4ULL * size + 65536);
}

}  // namespace
