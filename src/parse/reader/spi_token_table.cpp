#include "src/parse/reader/spi_token_table.h"

#include <utility>

namespace spi {
namespace {

// Token texts are counted in eight bits.
constexpr std::uint32_t kLongestTokenText = 255;

}  // namespace

SpiTokenTable::SpiTokenTable() : tokens_(10) {}

void SpiTokenTable::parse(spi_parseable& scope) {
    while (scope.has_more()) {
        spi_parseable token(scope);
        // The code is not tested against the 16: a table may define 0x09, and no string will ever ask for it.
        if (!token.has_more() || token.len > kLongestTokenText) continue;
        std::string text;
        token.buf.read_string(text, token.content_left());
        if (text.empty()) continue;
        const auto defined = tokens_.emplace(token.tag, std::move(text)).first;  // keeps the first definition
        if (is_code(token.tag)) texts_[token.tag] = &defined->second;
    }
}

std::string SpiTokenTable::get_token(unsigned char code) const {
    const auto found = tokens_.find(code);
    return found == tokens_.end() ? std::string() : found->second;
}

}  // namespace spi
