#include "src/parse/spi_parseable.h"

#include <algorithm>
#include <limits>

namespace spi {
namespace {

std::uint32_t add_without_wrapping(std::uint32_t a, std::uint32_t b) {
    return b > std::numeric_limits<std::uint32_t>::max() - a ? std::numeric_limits<std::uint32_t>::max()
                                                             : a + b;
}

}  // namespace

spi_parseable::spi_parseable(ReadBuffer& buffer) : buf(buffer), end(buffer.pos) {
    open();
}
spi_parseable::spi_parseable(spi_parseable& parent) : buf(parent.buf), end(parent.buf.pos) {
    open();
}

void spi_parseable::open() {
    const std::uint32_t start = buf.pos;
    buf.spend_scope();
    tag = buf.read_tag();
    if (tag != ReadBuffer::kNoTag) {
        len = buf.read_len();
        if (len < ReadBuffer::kNoLength) {
            end = add_without_wrapping(buf.pos, len);
            return;
        }
    }
    // No tag, a tag byte 0x7F, or a three-byte length that does not fit: closing moves on by exactly one
    // byte.
    end = add_without_wrapping(start, 1);
}

std::uint32_t spi_parseable::content_left() const {
    const std::uint32_t reachable = std::min(end, buf.size);
    return reachable > buf.pos ? reachable - buf.pos : 0;
}

}  // namespace spi
