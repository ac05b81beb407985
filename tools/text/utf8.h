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

// For a terminal or a message: ill-formed parts become U+FFFD; control characters (C0 and C1), characters
// that change the writing direction or have no width, tags and noncharacters become \u001b, \U000e0041 and
// the like, so that no broadcast and no file can drive the reader's terminal or look like something else
// there.
std::string printable(std::string_view text);

// The same for a JSON document as it was written: the characters are escaped as JSON does it, so that it says
// the same.
std::string printable_json(std::string_view json);

// Marks that are drawn over or around the character before them.
bool is_combining(char32_t c);

// The text in double quotes, printable, cut after `limit` characters (then "..." follows the closing quote).
std::string in_quotes(std::string_view text, std::size_t limit = 60);

}  // namespace dabspi
