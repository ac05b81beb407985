// UTF-8 for the tools: is a text of the broadcast well formed, and how is it shown to a person. Pure
// functions, any thread; bad input is never an error here, it is what these functions are for.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dabspi {

// What stands at the beginning of a text: one character, or one maximal ill-formed part (the longest
// beginning of a character that is cut off, else a single byte), which prints as one U+FFFD.
struct utf8_part {
    std::size_t length = 0;  // bytes, at least 1
    bool well_formed = false;
    char32_t code_point = 0;  // 0xFFFD for an ill-formed part
};

// `text` must not be empty.
utf8_part first_utf8_part(std::string_view text);

bool is_well_formed_utf8(std::string_view text);

// For a terminal or a message: ill-formed parts become U+FFFD; control characters and characters that change
// the writing direction become \u001b and the like, so that no broadcast and no file can drive the reader's
// terminal.
std::string printable(std::string_view text);

// The text in double quotes, printable, cut after `limit` characters (then "..." follows the closing quote).
std::string in_quotes(std::string_view text, std::size_t limit = 60);

}  // namespace dabspi
