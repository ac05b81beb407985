#include "tools/air/mot/unpack.h"

#include <gtest/gtest.h>

#include "testkit/carousel/mot_carousel.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;

class Unpack : public ::testing::Test {
 protected:
    unpack_fault unpack(const kit::bytes& packed, std::size_t limit = 1000) {
        return dabspi::air::unpack(packed, limit, out);
    }
    const kit::bytes plain = kit::text("what is compressed, what is compressed, what is compressed");
    kit::bytes out;
};

TEST_F(Unpack, GzipAndZlibAreToldApart) {
    for (const kit::bytes& packed : {kit::gzip(plain), kit::zlib_packed(plain)}) {
        out.clear();
        EXPECT_EQ(unpack(packed), unpack_fault::none);
        EXPECT_EQ(out, plain);
    }
}

TEST_F(Unpack, NothingPackedIsNothing) {
    EXPECT_EQ(unpack(kit::gzip({})), unpack_fault::none);
    EXPECT_TRUE(out.empty());
}

TEST_F(Unpack, GzipFilesOneAfterAnotherAreOne) {
    kit::bytes packed = kit::gzip(plain);
    kit::append(packed, kit::gzip(plain));
    EXPECT_EQ(unpack(packed), unpack_fault::none);
    EXPECT_EQ(out.size(), 2 * plain.size());
}

TEST_F(Unpack, CutAnywhereItIsDamaged) {
    const kit::bytes packed = kit::gzip(plain);
    for (std::size_t size = 0; size < packed.size(); ++size)
        EXPECT_EQ(unpack({packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(size)}),
                  unpack_fault::damaged)
            << size;
}

TEST_F(Unpack, AWrongChecksumIsDamage) {
    kit::bytes packed = kit::gzip(plain);
    packed[packed.size() - 5] ^= 1;
    EXPECT_EQ(unpack(packed), unpack_fault::damaged);
}

TEST_F(Unpack, TheLimitIsExact) {
    EXPECT_EQ(unpack(kit::gzip(plain), plain.size()), unpack_fault::none);
    EXPECT_EQ(unpack(kit::gzip(plain), plain.size() - 1), unpack_fault::too_large);
    EXPECT_EQ(unpack(kit::gzip(kit::bytes(50'000'000, 0)), 1 << 20), unpack_fault::too_large);
}

}  // namespace
