#include "tools/air/crc16.h"

#include <gtest/gtest.h>

#include <random>

#include "testkit/multiplex/checksum.h"

namespace {

namespace mb = multiplex_builder;

TEST(Crc16, IsThatOfTheStandard) {
    EXPECT_EQ(dabspi::air::crc16(mb::bytes{'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xD64E);
}

TEST(Crc16, AgreesWithTheBuildersAtEveryLength) {
    std::mt19937 random(7);
    mb::bytes all;
    for (int size = 0; size < 600; ++size) {
        EXPECT_EQ(dabspi::air::crc16(all), mb::crc16(all)) << size << " bytes";
        EXPECT_TRUE(dabspi::air::ends_with_crc16(mb::with_crc16(all)));
        all.push_back(static_cast<std::uint8_t>(random()));
    }
}

TEST(Crc16, IsNotTakenFromFewerThanTwoBytes) {
    EXPECT_FALSE(dabspi::air::ends_with_crc16(mb::bytes{}));
    EXPECT_FALSE(dabspi::air::ends_with_crc16(mb::bytes{0xFF}));
}

// The builder's own parity, against the figures of the reference.
TEST(ReedSolomonParity, IsThatOfBothCodes) {
    mb::bytes data;
    for (unsigned i = 0; i < 207; ++i)
        data.push_back(static_cast<std::uint8_t>(i));
    const mb::bytes long_parity = mb::reed_solomon_parity(data, 48, 1);
    EXPECT_EQ(mb::bytes(long_parity.begin(), long_parity.begin() + 8),
              (mb::bytes{0xC2, 0xFE, 0xAD, 0xDB, 0x68, 0x54, 0x47, 0xCD}));
    EXPECT_EQ(mb::bytes(long_parity.end() - 8, long_parity.end()),
              (mb::bytes{0x3E, 0x21, 0xC2, 0xAD, 0xA3, 0xDB, 0xA9, 0x65}));
    data.resize(188);
    EXPECT_EQ(mb::reed_solomon_parity(data, 16, 0),
              (mb::bytes{0x31, 0x1D, 0x78, 0xD6, 0xC8, 0x60, 0xF8, 0x78, 0xB7, 0x18, 0x9F, 0x1A, 0x54, 0x96,
                         0x1D, 0x5F}));
}

}  // namespace
