#include "src/parse/read_buffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>

#include "src/parse/spi_token_table.h"

namespace spi {
namespace {

constexpr std::uint8_t kTwoByteLength = 0xFE;
constexpr std::uint32_t kLongestPlainString = 255;

}  // namespace

ReadBuffer::ReadBuffer(MotBody&& body)
    : data(std::move(body.data)),
      size(data ? body.size : 0),
      scopes_left_(2 * std::uint64_t{size} + 4096),
      string_bytes_left_(4 * std::uint64_t{size} + 65536),
      text_bytes_left_(255 * std::uint64_t{size} + 65536) {
    body.size = 0;
}

std::uint8_t ReadBuffer::ru8() {
    if (!holds(1)) return 255;
    return data[pos++];
}

std::uint16_t ReadBuffer::ru16() {
    if (!holds(2)) return 65535;
    const auto value = static_cast<std::uint16_t>(data[pos] << 8 | data[pos + 1]);
    pos += 2;
    return value;
}

// Four bytes must remain although three are read. Deliberate: a 24-bit value in the last three bytes of a
// body reads as missing, so an element whose three-byte length stands there is taken as an element without
// content.
std::uint32_t ReadBuffer::ru24() {
    if (!holds(4)) return kNoLength;
    const std::uint32_t value =
        std::uint32_t{data[pos]} << 16 | std::uint32_t{data[pos + 1]} << 8 | data[pos + 2];
    pos += 3;
    return value;
}

std::uint32_t ReadBuffer::ru32() {
    if (!holds(4)) return 0xFFFFFFFF;
    const std::uint32_t value = std::uint32_t{data[pos]} << 24 | std::uint32_t{data[pos + 1]} << 16 |
                                std::uint32_t{data[pos + 2]} << 8 | data[pos + 3];
    pos += 4;
    return value;
}

std::uint8_t ReadBuffer::read_tag() {
    if (!holds(1)) return kNoTag;
    return data[pos++];
}

std::uint8_t ReadBuffer::eval_tag() const {
    return holds(1) ? data[pos] : kNoTag;
}

std::uint32_t ReadBuffer::read_len() {
    if (!holds(1)) return 255;  // a missing length byte reads as 255, like every missing byte
    if (data[pos] < kTwoByteLength) return ru8();
    return ru8() == kTwoByteLength ? ru16() : ru24();
}

// Deliberate: an element that ends exactly at the end of the body is not skipped.
std::uint32_t ReadBuffer::skip_len() {
    const std::uint32_t len = read_len();
    if (pos >= size || len >= size - pos) return 0;
    pos += len;
    return len;
}

std::uint32_t ReadBuffer::skip_elem() {
    if (read_tag() == kNoTag) return 0;
    return skip_len();
}

std::uint32_t ReadBuffer::read_string(std::string& out, std::uint32_t len) {
    if (len > kLongestPlainString) {  // no caller passes one: longer token texts define nothing
        advance(len);
        return len;
    }
    const std::uint32_t readable = take_string_bytes(len);
    if (readable > 0) out.append(reinterpret_cast<const char*>(&data[pos]), readable);
    advance(len);
    return len;
}

std::uint32_t ReadBuffer::read_string(std::string& out, std::uint32_t len, const SpiTokenTable& tokens) {
    const std::uint32_t readable = take_string_bytes(len);
    // What the byte at `i` stands for: itself, a token's text, or nothing where the object does not define
    // it.
    const auto text_of = [&](std::uint32_t i) {
        const std::uint8_t byte = data[pos + i];
        if (!SpiTokenTable::is_code(byte)) {
            return std::string_view(reinterpret_cast<const char*>(&data[pos + i]), 1);
        }
        const std::string* const text = tokens.find(byte);
        return text != nullptr ? std::string_view(*text) : std::string_view();
    };
    // Measured first, then copied: a string that grew by doubling would hold up to three times its length for
    // a moment, and a crafted name is long.
    std::uint64_t expanded = 0;
    for (std::uint32_t i = 0; i < readable; ++i)
        expanded += text_of(i).size();
    const std::uint64_t taken = std::min(expanded, text_bytes_left_);
    text_bytes_left_ -= taken;
    const std::uint64_t wanted = out.size() + taken;
    // With pointers of 32 bits a string ends at 2 GiB: no memory for it, like for any other that is too long.
    if (wanted > out.max_size()) throw std::bad_alloc();
    out.reserve(static_cast<std::size_t>(wanted));
    for (std::uint32_t i = 0; i < readable && out.size() < wanted; ++i) {
        const std::string_view text = text_of(i);
        out.append(text.substr(0, static_cast<std::size_t>(wanted - out.size())));
    }
    if (taken < expanded) size = 0;  // beyond the budget the body counts as ended
    advance(len);
    return len;
}

std::uint32_t ReadBuffer::fill_from(ReadBuffer& source) {
    const std::uint32_t remaining = source.in_body() ? source.size - source.pos : 0;
    if (remaining > size) return 0;
    if (remaining > 0) std::memmove(data.get(), &source.data[source.pos], remaining);
    source.pos = source.size;
    return source.size;
}

void ReadBuffer::spend_scope() {
    if (scopes_left_ == 0) {
        size = 0;
        return;
    }
    --scopes_left_;
}

std::uint32_t ReadBuffer::take_string_bytes(std::uint32_t len) {
    const std::uint32_t present = in_body() ? std::min(len, size - pos) : 0;
    if (present > string_bytes_left_) {
        const auto last = static_cast<std::uint32_t>(string_bytes_left_);
        string_bytes_left_ = 0;
        // The body ends behind the last byte that the budget allows.
        size = 0;
        return last;
    }
    string_bytes_left_ -= present;
    return present;
}

void ReadBuffer::advance(std::uint32_t count) {
    // A body near 4 GiB could make the sum wrap and the position jump back.
    pos = count > std::numeric_limits<std::uint32_t>::max() - pos ? std::numeric_limits<std::uint32_t>::max()
                                                                  : pos + count;
}

}  // namespace spi
