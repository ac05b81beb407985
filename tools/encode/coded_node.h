// A binary SPI object on its way into bytes (ETSI TS 102 371): attributes and elements as they will stand,
// texts still without tokens.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/spi/byte_view.h"

namespace dabspi {

// An attribute or element. Either `value` or `parts` holds its content.
struct coded_node {
    std::uint8_t tag = 0;
    spi_object::bytes value = {};
    bool tokens_allowed = false;  // the value is a text, and tokens may stand in it
    std::vector<coded_node> parts = {};
};

// Token byte -> the text it stands for; at most 255 bytes each, none empty.
using token_texts = std::map<std::uint8_t, std::string>;

// The bytes 0x01-0x08, 0x0B, 0x0C, 0x0E-0x13, in this order.
const std::vector<std::uint8_t>& token_codes();

// The longest content that a length of 24 bits can tell.
constexpr std::size_t kMostContent = 0xFFFFFF;

// The object, lengths in their shortest form. A token table is written in front of the top element's child
// elements, and the longest fitting token is put wherever one fits. Throws std::length_error for content
// beyond kMostContent.
spi_object::bytes write_object(const coded_node& top, const token_texts& tokens = {});

// What it takes in bytes, without tokens, within a few bytes for each part.
std::size_t size_of(const coded_node& of);

// A text with tokens put in, from its front, the longest that fits first.
std::string with_tokens(std::string_view text, const token_texts& tokens);

// All texts in which tokens may stand, in the order of the object.
std::vector<std::string_view> texts_of(const coded_node& top);

}  // namespace dabspi
