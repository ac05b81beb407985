#include "tests/soak/hostile_objects.h"

#include <algorithm>

namespace soak {
namespace {

using spi_builder::bytes;

void append(bytes& object, const bytes& more) {
    object.insert(object.end(), more.begin(), more.end());
}

// The two bytes of a length that reaches from behind them to the end, or as far as two bytes do.
bytes length_to(std::size_t total, const bytes& so_far) {
    return spi_builder::u16(
        static_cast<std::uint32_t>(std::min<std::size_t>(total - so_far.size() - 2, 0xFFFF)));
}

}  // namespace

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

bytes nested_logos(std::size_t count, const bytes& head) {
    bytes object = head;
    const std::size_t total = object.size() + 18 * count;
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

}  // namespace soak
