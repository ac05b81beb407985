#include "tools/text/utf8.h"

#include <cstdint>
#include <cstdio>

namespace dabspi {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr const char* kReplacementUtf8 = "\xEF\xBF\xBD";

struct lead {
    std::size_t length;  // bytes of the whole character; 0: no character begins so
    std::uint8_t
        low;  // bounds of the second byte; they shut out overlong forms, surrogates and beyond U+10FFFF
    std::uint8_t high;
};

// The table of well-formed byte sequences of the Unicode standard (table 3-7).
lead classify(std::uint8_t byte) {
    if (byte < 0x80) return {1, 0, 0};
    if (byte < 0xC2) return {0, 0, 0};
    if (byte < 0xE0) return {2, 0x80, 0xBF};
    if (byte == 0xE0) return {3, 0xA0, 0xBF};
    if (byte == 0xED) return {3, 0x80, 0x9F};
    if (byte < 0xF0) return {3, 0x80, 0xBF};
    if (byte == 0xF0) return {4, 0x90, 0xBF};
    if (byte < 0xF4) return {4, 0x80, 0xBF};
    if (byte == 0xF4) return {4, 0x80, 0x8F};
    return {0, 0, 0};
}

bool is_between(char32_t c, char32_t first, char32_t last) {
    return c >= first && c <= last;
}

// C0 and C1 controls, what changes the writing direction or has no width, tags, and what is no character at
// all.
bool needs_escape(char32_t c) {
    return c < 0x20 || is_between(c, 0x7F, 0x9F) || c == 0x061C || c == 0x180E ||
           is_between(c, 0x200B, 0x200F) || is_between(c, 0x2028, 0x202E) || is_between(c, 0x2060, 0x206F) ||
           c == 0xFEFF || is_between(c, 0xFFF9, 0xFFFB) || is_between(c, 0xFDD0, 0xFDEF) ||
           (c & 0xFFFE) == 0xFFFE || is_between(c, 0xE0000, 0xE007F);
}

// As in JSON: beyond 16 bits two halves.
void append_json_escape(std::string& to, char32_t c) {
    char escape[16];
    if (c > 0xFFFF) {
        const auto rest = static_cast<unsigned>(c - 0x10000);
        std::snprintf(escape, sizeof escape, "\\u%04x\\u%04x", 0xD800 + (rest >> 10),
                      0xDC00 + (rest & 0x3FF));
    } else {
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
    }
    to += escape;
}

void append_printable(std::string& to, std::string_view text, const utf8_part& part) {
    if (!part.well_formed) {
        to += kReplacementUtf8;
    } else if (needs_escape(part.code_point)) {
        char escape[16];
        std::snprintf(escape, sizeof escape, part.code_point > 0xFFFF ? "\\U%08x" : "\\u%04x",
                      static_cast<unsigned>(part.code_point));
        to += escape;
    } else {
        to += text.substr(0, part.length);
    }
}

void append_well_formed(std::string& to, std::string_view text, const utf8_part& part) {
    if (part.well_formed) {
        to += text.substr(0, part.length);
    } else {
        to += kReplacementUtf8;
    }
}

}  // namespace

utf8_part first_utf8_part(std::string_view text) {
    const auto first = static_cast<std::uint8_t>(text.front());
    const lead l = classify(first);
    if (l.length == 1) return {1, true, first};
    if (l.length == 0) return {1, false, kReplacement};
    auto code_point = static_cast<char32_t>(first & (0x7Fu >> l.length));
    for (std::size_t i = 1; i < l.length; ++i) {
        if (i >= text.size()) return {i, false, kReplacement};
        const auto byte = static_cast<std::uint8_t>(text[i]);
        const std::uint8_t low = i == 1 ? l.low : std::uint8_t{0x80};
        const std::uint8_t high = i == 1 ? l.high : std::uint8_t{0xBF};
        if (byte < low || byte > high) return {i, false, kReplacement};
        code_point = (code_point << 6) | (byte & 0x3Fu);
    }
    return {l.length, true, code_point};
}

bool is_well_formed_utf8(std::string_view text) {
    while (!text.empty()) {
        const utf8_part part = first_utf8_part(text);
        if (!part.well_formed) return false;
        text.remove_prefix(part.length);
    }
    return true;
}

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const utf8_part part = first_utf8_part(text);
        append_printable(result, text, part);
        text.remove_prefix(part.length);
    }
    return result;
}

std::string printable_json(std::string_view json) {
    std::string result;
    result.reserve(json.size());
    while (!json.empty()) {
        const utf8_part part = first_utf8_part(json);
        // Blanks between the parts of a document are controls, too; within texts these are escaped already.
        if (part.well_formed && part.code_point >= 0x7F && needs_escape(part.code_point)) {
            append_json_escape(result, part.code_point);
        } else {
            append_well_formed(result, json, part);
        }
        json.remove_prefix(part.length);
    }
    return result;
}

bool is_combining(char32_t c) {
    return is_between(c, 0x0300, 0x036F) || is_between(c, 0x0483, 0x0489) || is_between(c, 0x1AB0, 0x1AFF) ||
           is_between(c, 0x1DC0, 0x1DFF) || is_between(c, 0x20D0, 0x20FF) || is_between(c, 0xFE00, 0xFE0F) ||
           is_between(c, 0xFE20, 0xFE2F);
}

std::string in_quotes(std::string_view text, std::size_t limit) {
    std::string result = "\"";
    for (std::size_t characters = 0; !text.empty() && characters < limit; ++characters) {
        const utf8_part part = first_utf8_part(text);
        append_printable(result, text, part);
        text.remove_prefix(part.length);
    }
    result += text.empty() ? "\"" : "\"...";
    return result;
}

}  // namespace dabspi
