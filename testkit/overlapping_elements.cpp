#include "testkit/overlapping_elements.h"

#include <algorithm>

namespace spi_builder {

void append(bytes& object, const bytes& more) {
    object.insert(object.end(), more.begin(), more.end());
}

bytes length_to(std::size_t total, const bytes& so_far) {
    return u16(static_cast<std::uint32_t>(std::min<std::size_t>(total - so_far.size() - 2, 0xFFFF)));
}

bytes length_ff_to(std::size_t total, const bytes& so_far) {
    return u24(static_cast<std::uint32_t>(total - so_far.size() - 3));
}

bytes nested_schedules(std::size_t count, const bytes& head) {
    bytes object = head;
    const std::size_t total = object.size() + 8 * count;
    for (std::size_t i = 0; i < count; ++i) {
        append(object, {0x02, 0x06, 0x21, 0xFE});
        append(object, length_to(total, object));
        append(object, {0x1C, 0x06});
    }
    return object;
}

bytes nested_logos(std::size_t count) {
    bytes object;
    const std::size_t total = 18 * count;
    for (std::size_t i = 0; i < count; ++i) {
        append(object, {0x03, 0x10, 0x26, 0xFE});
        append(object, length_to(total, object));
        append(object, {0x28, 0x10, 0x13, 0xFE});
        append(object, length_to(total, object));
        append(object, {0x2B, 0x10, 0x82, 0xFE});
        append(object, length_to(total, object));
    }
    return object;
}

bytes nested_names(std::size_t count, const bytes& head, reach lengths) {
    const bool two = lengths == reach::kTwoBytes;
    const bytes escape = u8(two ? 0xFE : 0xFF);
    const std::uint32_t longer = two ? 0 : 2;  // one byte more for each of the two far lengths
    bytes object = head;
    const std::size_t total = object.size() + count * size_of_nested_name(lengths);
    const auto to_the_end = [&] { return two ? length_to(total, object) : length_ff_to(total, object); };
    for (std::size_t i = 0; i < count; ++i) {
        append(object, join({u8(0x02), u8(0x0E + longer), u8(0x21), escape}));
        append(object, to_the_end());
        // Programme and name end where the next programme begins.
        append(object, join({u8(0x1C), u8(0x0E + longer), u8(0x12), u8(0x0C + longer), u8(0x01), escape}));
        append(object, to_the_end());
        append(object, {0x01, 0x01});
    }
    return object;
}

std::size_t size_of_nested_name(reach lengths) {
    return lengths == reach::kTwoBytes ? 16 : 18;
}

}  // namespace spi_builder
