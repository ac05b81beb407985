#include "src/parse/reader/read_buffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>

#include "src/parse/reader/spi_token_table.h"

namespace spi {
namespace {

constexpr std::uint32_t kLongestPlainString = 255;

bool is_code(char byte) {
    return SpiTokenTable::is_code(static_cast<std::uint8_t>(byte));
}

// False for most texts. Looks at a word of bytes at a time: a byte below the bound borrows from its highest
// bit when the bound is taken from it, and had not set it before. (A byte beside one that is found may seem
// to be another: only whether there is one at all can be told.)
bool may_hold_codes(std::string_view coded) {
    using word = std::size_t;
    constexpr word kOneInEach = ~word{0} / 0xFF;
    const auto found_in = [](word bytes) {
        return (bytes - kOneInEach * SpiTokenTable::kBeyondCodes) & ~bytes & kOneInEach * 0x80;
    };
    word found = 0;
    std::size_t i = 0;
    for (; coded.size() - i >= sizeof(word); i += sizeof(word)) {
        word bytes = 0;
        std::memcpy(&bytes, coded.data() + i, sizeof bytes);
        found |= found_in(bytes);
    }
    for (; i < coded.size(); ++i)
        found |= found_in(static_cast<std::uint8_t>(coded[i]) | ~word{0xFF});
    return found != 0;
}

// What the bytes stand for, piece by piece: stretches that stand for themselves, and the texts of tokens;
// nothing where the object does not define one. Until `take` gives false.
template <class Take>
void for_each_text(std::string_view coded, const SpiTokenTable& tokens, Take take) {
    for (std::size_t i = 0; i < coded.size();) {
        std::string_view text;
        if (is_code(coded[i])) {
            const std::string* const defined = tokens.find(static_cast<std::uint8_t>(coded[i++]));
            if (defined == nullptr) continue;
            text = *defined;
        } else {
            const std::size_t begin = i;
            while (i < coded.size() && !is_code(coded[i]))
                ++i;
            text = coded.substr(begin, i - begin);
        }
        if (!take(text)) return;
    }
}

std::uint64_t expanded_size(std::string_view coded, const SpiTokenTable& tokens) {
    std::uint64_t size = 0;
    for_each_text(coded, tokens, [&](std::string_view text) {
        size += text.size();
        return true;
    });
    return size;
}

}  // namespace

ReadBuffer::ReadBuffer(MotBody&& body)
    : data(std::move(body.data)),
      size(data ? body.size : 0),
      scopes_left_(2 * std::uint64_t{size} + 4096),
      string_bytes_left_(4 * std::uint64_t{size} + 65536),
      text_bytes_left_(255 * std::uint64_t{size} + 65536) {
    body.size = 0;
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
    // Most texts have no token in them: a glance at all bytes, and one copy.
    const std::string_view coded(reinterpret_cast<const char*>(readable > 0 ? &data[pos] : data.get()),
                                 readable);
    const bool plain = !may_hold_codes(coded);
    // Measured first, then copied: a string that grew by doubling would hold up to three times its length for
    // a moment, and a crafted name is long.
    const std::uint64_t expanded = plain ? readable : expanded_size(coded, tokens);
    const std::uint64_t taken = std::min(expanded, text_bytes_left_);
    text_bytes_left_ -= taken;
    const std::uint64_t wanted = out.size() + taken;
    // With pointers of 32 bits a string ends at 2 GiB: no memory for it, like for any other that is too long.
    if (wanted > out.max_size()) throw std::bad_alloc();
    if (plain) {
        out.append(coded, 0, static_cast<std::size_t>(taken));
    } else {
        out.reserve(static_cast<std::size_t>(wanted));
        for_each_text(coded, tokens, [&](std::string_view text) {
            out.append(text.substr(0, static_cast<std::size_t>(wanted) - out.size()));
            return out.size() < wanted;
        });
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
