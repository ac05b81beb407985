// Which objects have been seen.
#include "src/parse/body/spi_body_table.h"

#include <gtest/gtest.h>

#include "tests/parse/reading.h"

namespace {

const spi::ServElemId kService = service_of(0xE1, 0xC221);

TEST(SpiBodyTable, NewNameIsUnknownAndThenKnown) {
    spi::SpiBodyTable table;
    EXPECT_FALSE(table.has_body("a", 100, kService));
    EXPECT_TRUE(table.has_body("a", 100, kService));
    EXPECT_TRUE(table.has_body("a", 100, kService));
}

TEST(SpiBodyTable, NameOfAnotherSizeIsUnknownAndItsSizeKept) {
    spi::SpiBodyTable table;
    table.has_body("a", 100, kService);
    EXPECT_FALSE(table.has_body("a", 101, kService));
    EXPECT_TRUE(table.has_body("a", 101, kService));
    EXPECT_FALSE(table.has_body("a", 100, kService));
}

TEST(SpiBodyTable, NamesAreKeptApart) {
    spi::SpiBodyTable table;
    table.has_body("a", 100, kService);
    EXPECT_FALSE(table.has_body("b", 100, kService));
    EXPECT_FALSE(table.has_body("A", 100, kService));
    EXPECT_TRUE(table.has_body("a", 100, kService));
}

TEST(SpiBodyTable, ServicesAreKeptApartByAllTheirFields) {
    spi::SpiBodyTable table;
    table.has_body("a", 100, kService);
    EXPECT_FALSE(table.has_body("a", 100, service_of(0xE2, 0xC221)));  // the same hash
    EXPECT_FALSE(table.has_body("a", 100, service_of(0xE1, 0xC222)));
    EXPECT_FALSE(table.has_body("a", 100, service_of(0xE1, 0xC221, 1)));
    EXPECT_TRUE(table.has_body("a", 100, kService));
    EXPECT_TRUE(table.has_body("a", 100, service_of(0xE2, 0xC221)));
}

TEST(SpiBodyTable, SizesOfOneServiceDoNotChangeThoseOfAnother) {
    spi::SpiBodyTable table;
    table.has_body("a", 100, kService);
    table.has_body("a", 200, service_of(0xE2, 0xC221));
    EXPECT_TRUE(table.has_body("a", 100, kService));
}

TEST(SpiBodyTable, EmptyNamesAndSizesAreNamesAndSizes) {
    spi::SpiBodyTable table;
    EXPECT_FALSE(table.has_body("", 0, kService));
    EXPECT_TRUE(table.has_body("", 0, kService));
    EXPECT_FALSE(table.has_body("", 0xFFFFFFFF, kService));
    EXPECT_TRUE(table.has_body("", 0xFFFFFFFF, kService));
}

TEST(SpiBodyTable, ClearedKnowsNothing) {
    spi::SpiBodyTable table;
    table.has_body("a", 100, kService);
    table.has_body("b", 100, service_of(0xE2, 0xC221));
    table.clear();
    EXPECT_FALSE(table.has_body("a", 100, kService));
    EXPECT_FALSE(table.has_body("b", 100, service_of(0xE2, 0xC221)));
}

TEST(SpiBodyTable, KnowsManyNames) {
    spi::SpiBodyTable table;
    for (unsigned i = 0; i < 1000; ++i)
        EXPECT_FALSE(table.has_body(std::to_string(i), i, kService));
    for (unsigned i = 0; i < 1000; ++i)
        EXPECT_TRUE(table.has_body(std::to_string(i), i, kService));
}

}  // namespace
