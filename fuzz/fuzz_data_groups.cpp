// Data groups: one that is read gives the same bytes when it is built again. A first byte says whether the
// rest gets a right CRC.
#include <cstdint>

#include "fuzz/fuzz_support.h"
#include "testkit/carousel/packet_mode.h"
#include "tools/air/data_groups/data_group.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    carousel_kit::bytes group(data + 1, data + size);
    if ((data[0] & 1) != 0) carousel_kit::append_crc(group);
    dabspi::air::data_group read;
    if (dabspi::air::read_data_group(group, read) != dabspi::air::group_fault::none) return 0;
    expect(read.data.size() <= dabspi::air::kLongestDataField, "no longer than a data field");
    carousel_kit::group_fields fields;
    fields.type = read.type;
    fields.continuity = read.continuity;
    fields.repetition = read.repetition;
    fields.crc = read.has_crc;
    fields.segment_field = read.has_segment;
    fields.last = read.last;
    fields.number = read.segment;
    if (read.transport_id) fields.transport_id = *read.transport_id;
    if (read.extension) fields.extension = *read.extension;
    fields.end_address.assign(read.end_address.begin(), read.end_address.end());
    const bool access = (group[0] >> 4 & 1) != 0;
    if (access && !read.transport_id && read.end_address.empty())
        return 0;  // empty: the builder leaves it out
    carousel_kit::bytes again = data_group(fields, {read.data.begin(), read.data.end()});
    if (access) {  // reserved bits
        const std::size_t at = 2 + (read.extension ? 2U : 0U) + (read.has_segment ? 2U : 0U);
        again[at] = static_cast<std::uint8_t>(again[at] | (group[at] & 0xE0));
        if (read.has_crc) {
            again.resize(again.size() - 2);
            carousel_kit::append_crc(again);
        }
    }
    expect(again == group, "the same bytes");
    return 0;
}
