// The builder against the reference vectors, so that what is tested with it is tested with the standard's.
#include <gtest/gtest.h>

#include "testkit/carousel/packet_mode.h"

namespace {

namespace kit = carousel_kit;

TEST(PacketModeBuilder, ParityOfTheReferenceVector) {
    kit::bytes data;
    for (unsigned i = 0; i < 188; ++i)
        data.push_back(static_cast<std::uint8_t>(i));
    EXPECT_EQ(kit::rs_parity(data), (kit::bytes{0x31, 0x1D, 0x78, 0xD6, 0xC8, 0x60, 0xF8, 0x78, 0xB7, 0x18,
                                                0x9F, 0x1A, 0x54, 0x96, 0x1D, 0x5F}));
}

TEST(PacketModeBuilder, AnFecFrameHas103Cells) {
    const kit::bytes stream = kit::with_fec({kit::padding_packet()});
    ASSERT_EQ(stream.size(), 103U * 24);
    EXPECT_EQ(stream[94 * 24], 0x03);
    EXPECT_EQ(stream[94 * 24 + 1], 0xFE);
    EXPECT_EQ(stream[102 * 24], 0x23);
}

}  // namespace
