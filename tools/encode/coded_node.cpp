#include "tools/encode/coded_node.h"

#include <stdexcept>

#include "tools/spi/schema.h"

namespace dabspi {

namespace {

using spi_object::bytes;
namespace tag = spi_object::tag;

std::string_view text_of(const coded_node& of) {
    return {reinterpret_cast<const char*>(of.value.data()), of.value.size()};
}

void put(bytes& out, std::uint8_t element, const bytes& content) {
    const std::size_t size = content.size();
    if (size > kMostContent)
        throw std::length_error("an element of " + std::to_string(size) +
                                " bytes; lengths in a binary object go to " + std::to_string(kMostContent));
    out.push_back(element);
    // 0xFE and 0xFF begin the longer forms.
    unsigned length_bytes = 0;
    if (size > 0xFD) {
        length_bytes = size > 0xFFFF ? 3 : 2;
        out.push_back(length_bytes == 3 ? 0xFF : 0xFE);
    } else {
        length_bytes = 1;
    }
    while (length_bytes-- > 0)
        out.push_back(static_cast<std::uint8_t>(size >> 8 * length_bytes));
    out.insert(out.end(), content.begin(), content.end());
}

void put_table(bytes& out, const token_texts& tokens) {
    bytes content;
    for (const auto& [code, text] : tokens) {
        content.push_back(code);
        content.push_back(static_cast<std::uint8_t>(text.size()));
        content.insert(content.end(), text.begin(), text.end());
    }
    put(out, tag::token_table, content);
}

void write(bytes& out, const coded_node& from, const token_texts& tokens, bool is_top) {
    if (from.parts.empty() && !is_top) {
        if (!from.tokens_allowed || tokens.empty()) return put(out, from.tag, from.value);
        const std::string coded = with_tokens(text_of(from), tokens);
        return put(out, from.tag, bytes(coded.begin(), coded.end()));
    }
    bytes content;
    bool table_wanted = is_top && !tokens.empty();
    for (const coded_node& part : from.parts) {
        if (table_wanted && part.tag < tag::first_attribute) {
            put_table(content, tokens);
            table_wanted = false;
        }
        write(content, part, tokens, false);
    }
    put(out, from.tag, content);
}

void gather(const coded_node& from, std::vector<std::string_view>& texts) {
    if (from.tokens_allowed) texts.push_back(text_of(from));
    for (const coded_node& part : from.parts)
        gather(part, texts);
}

}  // namespace

const std::vector<std::uint8_t>& token_codes() {
    static const std::vector<std::uint8_t> codes = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,
                                                    0x0B, 0x0C, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13};
    return codes;
}

spi_object::bytes write_object(const coded_node& top, const token_texts& tokens) {
    bytes out;
    write(out, top, tokens, true);
    return out;
}

std::size_t size_of(const coded_node& of) {
    std::size_t size = 2 + of.value.size();
    for (const coded_node& part : of.parts)
        size += size_of(part);
    return size;
}

std::string with_tokens(std::string_view text, const token_texts& tokens) {
    std::string coded;
    while (!text.empty()) {
        const token_texts::value_type* best = nullptr;
        for (const auto& each : tokens)
            if (text.substr(0, each.second.size()) == each.second &&
                (best == nullptr || each.second.size() > best->second.size()))
                best = &each;
        coded += best == nullptr ? text.front() : static_cast<char>(best->first);
        text.remove_prefix(best == nullptr ? 1 : best->second.size());
    }
    return coded;
}

std::vector<std::string_view> texts_of(const coded_node& top) {
    std::vector<std::string_view> texts;
    gather(top, texts);
    return texts;
}

}  // namespace dabspi
