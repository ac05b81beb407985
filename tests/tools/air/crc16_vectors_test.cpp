#include <gtest/gtest.h>

#include "testkit/carousel/packet_mode.h"
#include "tools/air/crc16.h"

namespace {

namespace kit = carousel_kit;
using dabspi::air::crc16;

TEST(Crc16Vectors, TheCheckValueOfTheStandardsPolynomial) {
    const kit::bytes digits = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    EXPECT_EQ(crc16(digits), 0xD64E);
    EXPECT_EQ(kit::crc(digits), 0xD64E);
}

TEST(Crc16Vectors, EveryLengthAgreesWithTheBitByBitOne) {
    kit::bytes all;
    for (unsigned i = 0; i < 300; ++i) {
        EXPECT_EQ(crc16(all), kit::crc(all)) << i;
        all.push_back(static_cast<std::uint8_t>(i * 151 + i / 7));
    }
}

}  // namespace
