#include "tools/air/data_groups/data_group.h"

#include <gtest/gtest.h>

#include "testkit/carousel/packet_mode.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;

kit::bytes copied(byte_view of) {
    return {of.begin(), of.end()};
}

kit::group_fields all_fields() {
    kit::group_fields fields;
    fields.type = 6;
    fields.continuity = 11;
    fields.repetition = 3;
    fields.last = true;
    fields.number = 0x1234;
    fields.transport_id = 0xABCD;
    fields.extension = 0x5678;
    fields.end_address = {1, 2, 3};
    return fields;
}

TEST(DataGroup, AllFieldsAreRead) {
    const kit::bytes data = {9, 8, 7};
    const kit::bytes group = kit::data_group(all_fields(), data);
    data_group read;
    ASSERT_EQ(read_data_group(group, read), group_fault::none);
    EXPECT_EQ(read.type, 6);
    EXPECT_EQ(read.continuity, 11);
    EXPECT_EQ(read.repetition, 3);
    EXPECT_TRUE(read.has_crc);
    EXPECT_TRUE(read.has_segment);
    EXPECT_TRUE(read.last);
    EXPECT_EQ(read.segment, 0x1234);
    EXPECT_EQ(read.transport_id, 0xABCD);
    EXPECT_EQ(read.extension, 0x5678);
    EXPECT_EQ(copied(read.end_address), (kit::bytes{1, 2, 3}));
    EXPECT_EQ(copied(read.data), data);
}

TEST(DataGroup, FieldsMayBeAbsent) {
    kit::group_fields fields;
    fields.crc = false;
    fields.segment_field = false;
    const kit::bytes group = kit::data_group(fields, {1});
    data_group read;
    ASSERT_EQ(read_data_group(group, read), group_fault::none);
    EXPECT_FALSE(read.has_crc);
    EXPECT_FALSE(read.has_segment);
    EXPECT_FALSE(read.transport_id);
    EXPECT_FALSE(read.extension);
    EXPECT_EQ(copied(read.data), kit::bytes{1});
}

TEST(DataGroup, DataFieldsOf8191BytesAreTheLongest) {
    data_group read;
    EXPECT_EQ(read_data_group(kit::data_group(all_fields(), kit::bytes(8191, 5)), read), group_fault::none);
    EXPECT_EQ(read.data.size(), 8191U);
    EXPECT_EQ(read_data_group(kit::data_group(all_fields(), kit::bytes(8192, 5)), read),
              group_fault::too_long);
}

TEST(DataGroup, AnyDamagedByteGivesAWrongCrc) {
    const kit::bytes whole = kit::data_group(all_fields(), {9, 8, 7});
    for (std::size_t at = 2; at < whole.size(); ++at) {
        kit::bytes damaged = whole;
        damaged[at] ^= 0x10;
        data_group read;
        EXPECT_EQ(read_data_group(damaged, read), group_fault::wrong_crc) << at;
    }
}

TEST(DataGroup, CutAtEachByteItIsRefusedOrShorter) {
    for (const bool with_crc : {true, false}) {
        kit::group_fields fields = all_fields();
        fields.crc = with_crc;
        const kit::bytes whole = kit::data_group(fields, {9, 8, 7});
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const kit::bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            data_group read;
            const group_fault fault = read_data_group(cut, read);
            if (with_crc) {
                EXPECT_NE(fault, group_fault::none) << size;
            } else {
                const std::size_t headers = whole.size() - 3;
                EXPECT_EQ(fault, size < headers ? group_fault::too_short : group_fault::none) << size;
                if (fault == group_fault::none) {
                    EXPECT_EQ(read.data.size(), size - headers);
                }
            }
        }
    }
}

TEST(DataGroup, ATransportIdentifierNeedsTwoBytesOfUserAccess) {
    // No CRC, no segment field, user access with the flag and one byte.
    const kit::bytes group = {0x14, 0x00, 0x11, 0xAA, 0x01};
    data_group read;
    EXPECT_EQ(read_data_group(group, read), group_fault::ill_formed);
}

}  // namespace
