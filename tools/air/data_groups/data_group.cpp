#include "tools/air/data_groups/data_group.h"

#include "tools/air/crc16.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kGroupCrc = 2;

// Takes fields from the front; `ok` is false for good once one is not there as a whole.
struct fields {
    byte_view left;
    bool ok = true;

    std::uint32_t number(std::size_t size) {
        ok = ok && left.size() >= size;
        const std::uint32_t value = ok ? left.number(0, size) : 0;
        left = left.part(size);
        return value;
    }
    byte_view bytes(std::size_t size) {
        ok = ok && left.size() >= size;
        const byte_view taken = left.part(0, size);
        left = left.part(size);
        return taken;
    }
};

// 5.3.3.2
group_fault read_user_access(fields& from, data_group& read) {
    const std::uint32_t flags = from.number(1);
    byte_view access = from.bytes(flags & 0xF);
    if (!from.ok) return group_fault::too_short;
    if ((flags >> 4 & 1) != 0) {
        if (access.size() < 2) return group_fault::ill_formed;
        read.transport_id = static_cast<std::uint16_t>(access.number(0, 2));
        access = access.part(2);
    }
    read.end_address = access;
    return group_fault::none;
}

}  // namespace

group_fault read_data_group(byte_view bytes, data_group& read) {
    read = data_group();
    fields from{bytes};
    const std::uint32_t header = from.number(2);
    read.has_crc = (header >> 14 & 1) != 0;
    if (read.has_crc) {
        if (from.left.size() < kGroupCrc) return group_fault::too_short;
        if (!ends_with_crc16(bytes)) return group_fault::wrong_crc;
        from.left = from.left.part(0, from.left.size() - kGroupCrc);
    }
    read.type = static_cast<std::uint8_t>(header >> 8 & 0xF);
    read.continuity = static_cast<std::uint8_t>(header >> 4 & 0xF);
    read.repetition = static_cast<std::uint8_t>(header & 0xF);
    if ((header >> 15 & 1) != 0) read.extension = static_cast<std::uint16_t>(from.number(2));
    read.has_segment = (header >> 13 & 1) != 0;
    if (read.has_segment) {
        const std::uint32_t segment = from.number(2);
        read.last = segment >> 15 != 0;
        read.segment = static_cast<std::uint16_t>(segment & 0x7FFF);
    }
    if (!from.ok) return group_fault::too_short;
    if ((header >> 12 & 1) != 0) {
        const group_fault fault = read_user_access(from, read);
        if (fault != group_fault::none) return fault;
    }
    read.data = from.left;
    return read.data.size() > kLongestDataField ? group_fault::too_long : group_fault::none;
}

}  // namespace dabspi::air
