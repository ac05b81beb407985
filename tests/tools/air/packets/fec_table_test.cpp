#include "tools/air/packets/fec_table.h"

#include <gtest/gtest.h>

#include "tests/tools/air/packets/collected_groups.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using states = std::array<cell_state, kFecFrameCells>;

class FecTable : public ::testing::Test {
 protected:
    FecTable() {
        kit::packetizer packets(1);
        std::vector<kit::bytes> all;
        for (unsigned i = 0; i < 94; ++i)
            all.push_back(packets.packets(5, air_test::pattern(19, i)).front());
        whole = kit::with_fec(all);
        known.fill(cell_state::readable);
    }
    void spoil(std::size_t cell, cell_state state) {
        for (std::size_t i = 0; i < kCell; ++i)
            received[cell * kCell + i] ^= static_cast<std::uint8_t>(0x5A + i);
        known[cell] = state;
    }
    fec_table::result correct() {
        fec_table table;
        return table.correct(received.data(), known);
    }

    kit::bytes whole;
    kit::bytes received;
    states known;
};

TEST_F(FecTable, WhatIsWholeStays) {
    received = whole;
    const fec_table::result result = correct();
    EXPECT_TRUE(result.complete);
    EXPECT_EQ(result.corrected_bytes, 0U);
    EXPECT_EQ(received, whole);
}

TEST_F(FecTable, EightMissingCellsAnywhereAreRestored) {
    for (const std::size_t first : {0U, 40U, 86U, 90U, 95U}) {
        received = whole;
        known.fill(cell_state::readable);
        // An FEC packet has 22 bytes of parity: eight of them take up to 15 columns.
        for (std::size_t i = 0; i < 8; ++i)
            spoil(first + i, cell_state::missing);
        EXPECT_TRUE(correct().complete) << first;
        EXPECT_EQ(air_test::part(received, 0, 94 * kCell), air_test::part(whole, 0, 94 * kCell)) << first;
    }
}

TEST_F(FecTable, FourDamagedCellsAreFoundByTheCodeItself) {
    received = whole;
    for (const std::size_t cell : {3U, 30U, 60U, 93U})
        spoil(cell, cell_state::readable);
    const fec_table::result result = correct();
    EXPECT_TRUE(result.complete);
    EXPECT_EQ(result.corrected_bytes, 4U * kCell);
    EXPECT_EQ(received, whole);
}

TEST_F(FecTable, FiveToEightDamagedCellsAreRestoredWhereTheyAreSuspect) {
    received = whole;
    for (const std::size_t cell : {3U, 30U, 60U, 70U, 71U, 72U, 80U, 93U})
        spoil(cell, cell_state::suspect);
    EXPECT_TRUE(correct().complete);
    EXPECT_EQ(received, whole);
}

TEST_F(FecTable, NineMissingCellsAreTooManyAndNothingIsChanged) {
    received = whole;
    for (std::size_t i = 0; i < 9; ++i)
        spoil(10 + i, cell_state::missing);
    const kit::bytes before = received;
    EXPECT_FALSE(correct().complete);
    EXPECT_EQ(received, before);
}

}  // namespace
