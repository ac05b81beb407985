// The string tokens of one SPI object (TS 102 371, token table): bytes in strings that stand for longer
// texts.
//
// A member of the object's parser, filled by the object's own table element wherever that stands; tokens
// apply only to strings read after it. 0x09, 0x0A and 0x0D are never tokens: they stay tab, line feed and
// carriage return.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>

#include "src/parse/spi_parseable.h"

namespace spi {

class SpiTokenTable {
 public:
    SpiTokenTable();

    // Reads the content of a token table element. The first definition of a code wins, an empty text defines
    // nothing, and a text longer than 255 bytes defines nothing.
    void parse(spi_parseable& scope);

    // True for the 16 byte values that are tokens, defined or not.
    bool is_code(std::uint8_t byte) const { return codes_.count(byte) != 0; }

    // The text of a token; empty when the object did not define it.
    std::string get_token(unsigned char code) const;

 private:
    std::set<std::uint8_t> codes_;
    std::unordered_map<std::uint8_t, std::string> tokens_;
};

}  // namespace spi
