// The scope of one element or attribute over a ReadBuffer. Lives on the stack of the function that handles
// the element.
//
// The constructor reads tag and length, the destructor moves the buffer to the element's end, whatever was
// read in between: this is how unknown elements and attributes are passed over. A handler therefore reads
// what it knows and leaves the rest:
//
//     while (element.has_more()) {
//         spi_parseable child(element);
//         switch (child.tag) { ... }
//     }
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "src/parse/reader/read_buffer.h"

namespace spi {

class spi_parseable {
 public:
    // Opens the element at the buffer's position.
    explicit spi_parseable(ReadBuffer& buffer) : buf(buffer), end(buffer.pos) { open(); }
    // Opens a child element at the position of the parent's buffer. To the language this is a copy
    // constructor: a scope passed by value would open a child, so scopes are passed by reference.
    spi_parseable(spi_parseable& parent) : buf(parent.buf), end(parent.buf.pos) { open(); }
    ~spi_parseable() { buf.pos = end; }
    spi_parseable(const spi_parseable&) = delete;
    spi_parseable& operator=(const spi_parseable&) = delete;

    ReadBuffer& buf;
    std::uint8_t tag = 0;   // ReadBuffer::kNoTag when there was none
    std::uint32_t len = 0;  // as coded; the content may be shorter, see content_left
    std::uint32_t end;      // the position behind the content, as claimed: it may lie past the body

    // True while this element claims content and the body has bytes: the condition of every loop over
    // children. Past the end of the body there is nothing to find, however far the element claims to reach.
    bool has_more() const { return end > buf.pos && buf.in_body(); }

    // True when `count` bytes remain up to the claimed end. What the body does not hold then reads as all
    // ones.
    bool holds(std::uint32_t count) const { return end > buf.pos && end - buf.pos >= count; }

    // Bytes of content that are left and that the body holds: the length for every read of a string.
    std::uint32_t content_left() const {
        const std::uint32_t reachable = std::min(end, buf.size);
        return reachable > buf.pos ? reachable - buf.pos : 0;
    }

    // Reads bounded by the scope: what lies at or beyond its end counts as all ones, and the position stays.
    std::uint8_t ru8() { return holds(1) ? buf.ru8() : std::uint8_t{255}; }
    std::uint16_t ru16() { return holds(2) ? buf.ru16() : std::uint16_t{65535}; }
    std::uint32_t ru32() { return holds(4) ? buf.ru32() : 0xFFFFFFFFU; }

 private:
    void open();

    static std::uint32_t add_without_wrapping(std::uint32_t a, std::uint32_t b) {
        return b > std::numeric_limits<std::uint32_t>::max() - a ? std::numeric_limits<std::uint32_t>::max()
                                                                 : a + b;
    }
};

inline void spi_parseable::open() {
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

}  // namespace spi
