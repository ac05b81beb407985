// Cursor over the bytes of one SPI body (ETSI TS 102 371). Owns the bytes. Used on the parser's thread only.
//
// Never throws (but for a string's memory) and never logs. A read that does not fit leaves `pos` where it was
// and returns all ones: 255, 65535 or 0xFFFFFFFF, or tag 127; callers take these as ordinary values. There is
// no error flag. Multi-byte values are big-endian. Nothing outside the array is ever touched, and what one
// body can make its parser do is bounded, see "budget".
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/mot_body.h"

namespace spi {

class SpiTokenTable;

class ReadBuffer {
 public:
    // No element could be read. Also what a tag byte 0x7F reads as.
    static constexpr std::uint8_t kNoTag = 127;
    // How many bytes of a length follow its first one (TS 102 371).
    static constexpr std::uint32_t more_length_bytes(std::uint8_t first) {
        return first < kTwoByteLength ? 0 : first == kTwoByteLength ? 2 : 3;
    }
    // A three-byte length that could not be read.
    static constexpr std::uint32_t kNoLength = 0xFFFFFFFF;

    // Takes over the body's array; the body is left empty.
    explicit ReadBuffer(MotBody&& body);
    ReadBuffer(const ReadBuffer&) = delete;
    ReadBuffer& operator=(const ReadBuffer&) = delete;

    decltype(MotBody::data) data;
    std::uint32_t size;  // bytes
    // May lie past `size`: closing an element moves it to the end that the element claimed. Every read then
    // fails.
    std::uint32_t pos = 0;

    std::uint8_t ru8();
    std::uint16_t ru16();
    std::uint32_t ru24();  // needs four remaining bytes, see the definition
    std::uint32_t ru32();
    std::uint8_t read_tag();
    std::uint8_t eval_tag() const;  // the tag at `pos`, not consumed

    // The length of an element: one byte 0..253, or 0xFE and two bytes, or 0xFF and three (TS 102 371).
    // When it cannot be read: 255, 65535 or kNoLength, and an escape byte stays consumed.
    std::uint32_t read_len();
    // Skips a length and its content. Returns the length; 0, with `pos` after the length, unless at least one
    // byte follows the content.
    std::uint32_t skip_len();
    // Skips a whole element: as skip_len, and 0 where there is no tag.
    std::uint32_t skip_elem();

    // Append `len` bytes at `pos` to `out`, as far as the body holds them; `pos` advances by `len` in any
    // case, which is also the result. The plain form is for token texts and takes lengths up to 255; the
    // other replaces token bytes by their texts. Bytes are taken as they are: no character-set conversion.
    std::uint32_t read_string(std::string& out, std::uint32_t len);
    std::uint32_t read_string(std::string& out, std::uint32_t len, const SpiTokenTable& tokens);

    // Copies what remains in `source` to the start of this buffer's bytes, if this buffer is large enough:
    // `source` is then read to its end and its size returned. Otherwise 0, and nothing changes.
    std::uint32_t fill_from(ReadBuffer& source);

    // True while `pos` lies inside the body.
    bool in_body() const { return pos < size; }

    // The budget. Elements may claim more than their parents hold; closing the parent then moves back, and
    // the same bytes are read again: a crafted body of some kilobytes would otherwise open millions of
    // scopes. Well-formed objects open at most one scope and read at most one string byte per byte of the
    // body, and a token stands for 255 bytes at most. A body of N bytes may open 2N + 4,096 scopes, read
    // 4N + 65,536 string bytes before tokens are expanded, and 255N + 65,536 after; then it counts as
    // ended: `size` becomes 0.
    void spend_scope();

    // For work counters in tests and tools: what is left of the budget.
    std::uint64_t scopes_left() const { return scopes_left_; }
    std::uint64_t string_bytes_left() const { return string_bytes_left_; }
    std::uint64_t text_bytes_left() const { return text_bytes_left_; }

 private:
    static constexpr std::uint8_t kTwoByteLength = 0xFE;

    bool holds(std::uint32_t count) const { return pos <= size && count <= size - pos; }
    // How many of `len` bytes at `pos` can be read as a string; spends them.
    std::uint32_t take_string_bytes(std::uint32_t len);
    void advance(std::uint32_t count);

    std::uint64_t scopes_left_;
    std::uint64_t string_bytes_left_;
    std::uint64_t text_bytes_left_;
};

// Reads are small and many: inline, so that a handler that opens an element and looks at its tag is one
// function.

inline std::uint8_t ReadBuffer::ru8() {
    if (!holds(1)) return 255;
    return data[pos++];
}

inline std::uint16_t ReadBuffer::ru16() {
    if (!holds(2)) return 65535;
    const auto value = static_cast<std::uint16_t>(data[pos] << 8 | data[pos + 1]);
    pos += 2;
    return value;
}

// Four bytes must remain although three are read. Deliberate: a 24-bit value in the last three bytes of a
// body reads as missing, so an element whose three-byte length stands there is taken as an element without
// content.
inline std::uint32_t ReadBuffer::ru24() {
    if (!holds(4)) return kNoLength;
    const std::uint32_t value =
        std::uint32_t{data[pos]} << 16 | std::uint32_t{data[pos + 1]} << 8 | data[pos + 2];
    pos += 3;
    return value;
}

inline std::uint32_t ReadBuffer::ru32() {
    if (!holds(4)) return 0xFFFFFFFF;
    const std::uint32_t value = std::uint32_t{data[pos]} << 24 | std::uint32_t{data[pos + 1]} << 16 |
                                std::uint32_t{data[pos + 2]} << 8 | data[pos + 3];
    pos += 4;
    return value;
}

inline std::uint8_t ReadBuffer::read_tag() {
    if (!holds(1)) return kNoTag;
    return data[pos++];
}

inline std::uint8_t ReadBuffer::eval_tag() const {
    return holds(1) ? data[pos] : kNoTag;
}

inline std::uint32_t ReadBuffer::read_len() {
    if (!holds(1)) return 255;  // a missing length byte reads as 255, like every missing byte
    const std::uint8_t first = ru8();
    const std::uint32_t more = more_length_bytes(first);
    return more == 0 ? first : more == 2 ? ru16() : ru24();
}

// The budget's end is the body's.
inline void ReadBuffer::spend_scope() {
    if (scopes_left_ == 0) {
        size = 0;
        return;
    }
    --scopes_left_;
}

}  // namespace spi
