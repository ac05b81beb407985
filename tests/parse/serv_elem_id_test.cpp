// Identifiers of service components: their coding, their equality, their hash.
#include "src/parse/serv_elem_id.h"

#include <gtest/gtest.h>

#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::SeidHash;
using spi::ServElemId;

// The identifier in an attribute of exactly these bytes, with others behind it that must not be read.
ServElemId read_any(const bytes& coded) {
    element_of attribute(join({attr(0x80, coded), bytes{0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88}}));
    ServElemId id = service_of(1, 2, 3);
    EXPECT_EQ(id.parse(attribute), 0);
    EXPECT_EQ(attribute.buffer.pos <= attribute.scope.end, true);
    return id;
}

TEST(ServElemId, NewOneIsZero) {
    EXPECT_EQ(ServElemId(), service_of(0, 0, 0));
}

TEST(ServElemId, TakesEightBytes) {
    EXPECT_EQ(sizeof(ServElemId), 8U);
}

TEST(ServElemId, ValuePacksAllThreeFields) {
    EXPECT_EQ(service_of(0xE1, 0x23456789, 0x0F).val(), 0xE1234567890FULL);
    EXPECT_EQ(service_of(0xFF, 0xFFFFFFFF, 0xFF).val(), 0xFFFFFFFFFFFFULL);
}

TEST(ServElemId, EqualWhenAllThreeFieldsAre) {
    const ServElemId id = service_of(0xE1, 0xC221, 2);
    EXPECT_TRUE(id == service_of(0xE1, 0xC221, 2));
    EXPECT_FALSE(id != service_of(0xE1, 0xC221, 2));
    EXPECT_TRUE(id != service_of(0xE2, 0xC221, 2));
    EXPECT_TRUE(id != service_of(0xE1, 0xC222, 2));
    EXPECT_TRUE(id != service_of(0xE1, 0xC221, 3));
    EXPECT_FALSE(id == service_of(0xE1, 0xC221, 3));
}

TEST(SeidHash, LeavesTheEccOut) {
    const ServElemId one = service_of(0xE1, 0xC221, 2);
    const ServElemId other = service_of(0xE2, 0xC221, 2);
    EXPECT_EQ(SeidHash()(one), SeidHash()(other));
    EXPECT_NE(one, other);
}

TEST(SeidHash, LeavesTheTopByteOfALongServiceIdOut) {
    EXPECT_EQ(SeidHash()(service_of(0xE1, 0xE1234567, 2)), 0x23456702U);
    EXPECT_EQ(SeidHash()(service_of(0xE1, 0x00234567, 2)), 0x23456702U);
    EXPECT_EQ(SeidHash()(service_of(0xE1, 0xC221, 2)), 0x00C22102U);
}

TEST(ServElemId, ReadsALongServiceId) {
    EXPECT_EQ(read_any({0x10, 0xE1, 0xC1, 0x85, 0xE1, 0x23, 0x45, 0x67}), service_of(0xE1, 0xE1234567, 0));
}

TEST(ServElemId, ReadsAShortServiceIdAndItsComponent) {
    EXPECT_EQ(read_any({0x02, 0xE1, 0xC1, 0x85, 0xC2, 0x21}), service_of(0xE1, 0xC221, 2));
    EXPECT_EQ(read_any(content_id(0xE1, 0xC185, 0xC221, 15)), service_of(0xE1, 0xC221, 15));
}

TEST(ServElemId, EnsembleFlagIsNotTested) {
    EXPECT_EQ(read_any({0x42, 0xE1, 0xC1, 0x85, 0xC2, 0x21}), read_any({0x02, 0xE1, 0xC1, 0x85, 0xC2, 0x21}));
    EXPECT_EQ(read_any({0xE2, 0xE1, 0xC1, 0x85, 0xC2, 0x21}), service_of(0xE1, 0xC221, 2));
    // Coded without ECC and ensemble: misread, for they are always expected.
    EXPECT_EQ(read_any({0x02, 0xC2, 0x21}), service_of(0xC2, 0xFFFF, 2));
}

TEST(ServElemId, BytesBehindTheServiceIdStayUnread) {
    EXPECT_EQ(read_any({0x02, 0xE1, 0xC1, 0x85, 0xC2, 0x21, 0x99, 0x99}), service_of(0xE1, 0xC221, 2));
}

TEST(ServElemId, MissingBytesCountAsAllOnes) {
    const bytes wide = {0x12, 0xE1, 0xC1, 0x85, 0xE1, 0x23, 0x45, 0x67};
    EXPECT_EQ(read_any(cut(wide, 7)), service_of(0xE1, 0xFFFFFFFF, 2));
    EXPECT_EQ(read_any(cut(wide, 4)), service_of(0xE1, 0xFFFFFFFF, 2));
    EXPECT_EQ(read_any(cut(wide, 3)), service_of(0xE1, 0xFFFFFFFF, 2));
    EXPECT_EQ(read_any(cut(wide, 2)), service_of(0xE1, 0xFFFFFFFF, 2));
    EXPECT_EQ(read_any(cut(wide, 1)), service_of(0xFF, 0xFFFFFFFF, 2));
    const bytes narrow = {0x02, 0xE1, 0xC1, 0x85, 0xC2, 0x21};
    EXPECT_EQ(read_any(cut(narrow, 5)), service_of(0xE1, 0xFFFF, 2));
    EXPECT_EQ(read_any(cut(narrow, 3)), service_of(0xE1, 0xFFFF, 2));
    EXPECT_EQ(read_any(cut(narrow, 1)), service_of(0xFF, 0xFFFF, 2));
}

TEST(ServElemId, EmptyAttributeReadsAsALongIdentifierOfAllOnes) {
    EXPECT_EQ(read_any({}), service_of(255, 0xFFFFFFFF, 15));
}

TEST(ServElemId, BytesThatTheBodyDoesNotHoldCountAsAllOnes) {
    element_of attribute({0x80, 0x08, 0x10, 0xE1, 0xC1, 0x85, 0xE1, 0x23, 0x45});
    ServElemId id;
    EXPECT_EQ(id.parse(attribute), 0);
    EXPECT_EQ(id, service_of(0xE1, 0xFFFFFFFF, 0));
}

TEST(ServElemIdOfAnEnsemble, IsStoredWhenTheEnsembleIsTheExpectedOne) {
    element_of attribute(attr(0x80, {0x10, 0xE1, 0xC1, 0x85, 0xE1, 0x23, 0x45, 0x67}));
    ServElemId id;
    EXPECT_EQ(id.parse(attribute, 0xC185), 0);
    EXPECT_EQ(id, service_of(0xE1, 0xE1234567, 0));
}

TEST(ServElemIdOfAnEnsemble, IsLeftUnchangedWhenTheEnsembleIsAnother) {
    for (const unsigned short eid :
         std::initializer_list<unsigned short>{0xC184, 0x0085, 0xC100, 0x85C1, 0}) {
        element_of attribute(attr(0x80, {0x02, 0xE1, 0xC1, 0x85, 0xC2, 0x21}));
        ServElemId id = service_of(1, 2, 3);
        EXPECT_EQ(id.parse(attribute, eid), 1);
        EXPECT_EQ(id, service_of(1, 2, 3));
    }
}

TEST(ServElemIdOfAnEnsemble, MissingEnsembleCountsAs65535) {
    for (const std::size_t size : {0U, 1U, 2U, 3U}) {
        element_of attribute(attr(0x80, cut({0x02, 0xE1, 0xC1, 0x85}, size)));
        ServElemId id = service_of(1, 2, 3);
        EXPECT_EQ(id.parse(attribute, 0xC185), 1);
        EXPECT_EQ(id, service_of(1, 2, 3));
    }
    element_of attribute(attr(0x80, {0x02, 0xE1, 0xC1}));
    ServElemId id;
    EXPECT_EQ(id.parse(attribute, 0xFFFF), 0);
    EXPECT_EQ(id, service_of(0xE1, 0xFFFF, 2));
}

TEST(ServElemIdOfAnEnsemble, MissingServiceIdIsStoredAllTheSame) {
    element_of attribute(attr(0x80, {0x02, 0xE1, 0xC1, 0x85, 0xC2}));
    ServElemId id;
    EXPECT_EQ(id.parse(attribute, 0xC185), 0);
    EXPECT_EQ(id, service_of(0xE1, 0xFFFF, 2));
}

}  // namespace
