#include "tools/spi/texts.h"

#include <cstdio>
#include <memory>

#include "src/parse/spi_parseable.h"
#include "tools/spi/value_problems.h"
#include "tools/text/utf8.h"

namespace dabspi::spi_object {

namespace {

// Not to be in a text: tab and line ends are.
bool is_control(char32_t c) {
    return (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || (c >= 0x7F && c < 0xA0) || c == 0xFFFE ||
           c == 0xFFFF;
}

// The coded byte that a byte of the expanded text comes from, by the expanded position at which each begins.
std::size_t coded_offset(const std::vector<std::size_t>& begins, std::size_t expanded) {
    const auto after = std::upper_bound(begins.begin(), begins.end(), expanded);
    return static_cast<std::size_t>(after - begins.begin()) - 1;
}

void note_characters(std::string_view text, const std::vector<std::size_t>& begins,
                     std::vector<problem>& problems) {
    std::size_t ill_formed = 0;
    std::size_t controls = 0;
    std::size_t first_ill_formed = 0;
    std::size_t first_control = 0;
    char32_t control = 0;
    for (std::size_t at = 0; at < text.size();) {
        const utf8_part part = first_utf8_part(text.substr(at));
        if (!part.well_formed) {
            if (ill_formed++ == 0) first_ill_formed = at;
        } else if (is_control(part.code_point)) {
            if (controls++ == 0) {
                first_control = at;
                control = part.code_point;
            }
        }
        at += part.length;
    }
    const auto more = [](std::size_t count) {
        return count > 1 ? ", and " + std::to_string(count - 1) + " more in this text" : std::string();
    };
    if (ill_formed != 0)
        note(problems, problem_code::text_not_utf8, coded_offset(begins, first_ill_formed),
             "not UTF-8" + more(ill_formed), "passes the bytes on as they are");
    if (controls != 0) {
        char name[16];
        std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(control));
        note(problems, problem_code::text_control_character, coded_offset(begins, first_control),
             std::string("the control character ") + name + more(controls), "passes it on as it is");
    }
}

}  // namespace

void text_reader::take_table(byte_view content) {
    // An element of its own for the library's reader: tag, a length of three bytes, the content.
    std::unique_ptr<unsigned char[]> body(new unsigned char[content.size() + 5]);
    body[0] = tag::token_table;
    body[1] = 0xFF;
    for (unsigned i = 0; i < 3; ++i)
        body[2 + i] = static_cast<unsigned char>(content.size() >> 8 * (2 - i));
    std::copy(content.begin(), content.end(), &body[5]);
    if (content.empty()) return;
    spi::ReadBuffer buffer(spi::MotBody(static_cast<std::uint32_t>(content.size() + 5), std::move(body)));
    spi::spi_parseable table(buffer);
    tokens_.parse(table);
}

text_value text_reader::read(byte_view coded, bool tokens_allowed, std::vector<problem>& problems) {
    text_value result;
    std::vector<std::size_t> begins;
    begins.reserve(coded.size());
    bool cut = false;
    for (std::size_t i = 0; i < coded.size(); ++i) {
        begins.push_back(result.text.size());
        const std::uint8_t byte = coded[i];
        if (!spi::SpiTokenTable::is_code(byte)) {
            result.text += static_cast<char>(byte);
            continue;
        }
        result.tokens = true;
        const std::string* const token = tokens_.find(byte);
        if (token == nullptr) {
            // Where the standard has no tokens, the byte is itself.
            if (!tokens_allowed) result.text += static_cast<char>(byte);
            continue;
        }
        if (token->size() > left_) {
            cut = true;
            continue;
        }
        left_ -= token->size();
        result.text += *token;
    }
    if (result.tokens) note_tokens(coded, tokens_allowed, problems);
    if (cut)
        note(problems, problem_code::text_too_long, 0,
             "the tokens of this object expand to too much; some are left out here",
             "expands up to 255 times the object's size, then takes the object as ended");
    note_characters(result.text, begins, problems);
    return result;
}

void text_reader::note_tokens(byte_view coded, bool tokens_allowed, std::vector<problem>& problems) const {
    bool seen[256] = {};
    for (std::size_t i = 0; i < coded.size(); ++i) {
        const std::uint8_t byte = coded[i];
        if (!spi::SpiTokenTable::is_code(byte) || seen[byte]) continue;
        seen[byte] = true;
        const bool defined = tokens_.find(byte) != nullptr;
        if (!tokens_allowed && defined) {
            note(problems, problem_code::token_in_plain_string, i,
                 "the token " + token_name(byte) + " in a string that has no tokens; shown expanded",
                 "expands it");
        } else if (!defined && defined_somewhere_[byte] && tokens_allowed) {
            note(problems, problem_code::token_before_table, i,
                 "the token " + token_name(byte) + " is defined only later in the object", "drops the byte");
        } else if (!defined && tokens_allowed) {
            note(problems, problem_code::token_undefined, i,
                 "the token " + token_name(byte) + " is not defined in this object", "drops the byte");
        }
    }
}

std::string token_name(std::uint8_t code) {
    char name[8];
    std::snprintf(name, sizeof name, "<%02X>", unsigned{code});
    return name;
}

}  // namespace dabspi::spi_object
