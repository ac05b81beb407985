// The string tokens of one SPI object (TS 102 371, token table): bytes in strings that stand for longer
// texts.
//
// A member of the object's parser, filled by the object's own table element wherever that stands; tokens
// apply only to strings read after it. 0x09, 0x0A and 0x0D are never tokens: they stay tab, line feed and
// carriage return.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "src/parse/reader/spi_parseable.h"

namespace spi {

class SpiTokenTable {
 public:
    SpiTokenTable();
    SpiTokenTable(SpiTokenTable&&) = default;  // texts stay where they are; a copy's would be somebody else's
    SpiTokenTable& operator=(SpiTokenTable&&) = delete;

    // Reads the content of a token table element. The first definition of a code wins, an empty text defines
    // nothing, and a text longer than 255 bytes defines nothing.
    void parse(spi_parseable& scope);

    // True for the 16 byte values that are tokens, defined or not: 01-08, 0B, 0C, 0E-13.
    static constexpr bool is_code(std::uint8_t byte) {
        return byte < kBeyondCodes && (kCodes >> byte & 1) != 0;
    }
    // From here on no byte is a token.
    static constexpr std::uint8_t kBeyondCodes = 0x14;

    // The text of a token; empty when the object did not define it.
    std::string get_token(unsigned char code) const;
    // The same without a copy, for the 16 codes; null for others, and when the object did not define it.
    const std::string* find(std::uint8_t code) const { return code < kBeyondCodes ? texts_[code] : nullptr; }

 private:
    static constexpr std::uint32_t kCodes = 0x000FD9FE;  // a bit for each code

    std::unordered_map<std::uint8_t, std::string> tokens_;
    std::array<const std::string*, kBeyondCodes> texts_{};  // those of tokens_ that strings can ask for
};

}  // namespace spi
