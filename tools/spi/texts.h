// Texts of one object: tokens expanded by the object's table, as far as it has been read, and their faults.
#pragma once

#include <cstdint>
#include <vector>

#include "src/parse/reader/spi_token_table.h"
#include "tools/spi/byte_view.h"
#include "tools/spi/tree.h"

namespace dabspi::spi_object {

class text_reader {
 public:
    // `budget`: bytes that tokens may make of all texts of the object together.
    explicit text_reader(std::size_t budget) : left_(budget) {}

    // Every code that a table of the object defines, wherever it stands; to tell "undefined" from "not yet".
    void will_define(std::uint8_t code) { defined_somewhere_[code] = true; }
    // The content of a token table; the library's own table reads it.
    void take_table(byte_view content);

    // Offsets of problems are counted from the first byte given. `tokens_allowed`: the standard has tokens
    // here.
    text_value read(byte_view coded, bool tokens_allowed, std::vector<problem>& problems);

 private:
    void note_tokens(byte_view coded, bool tokens_allowed, std::vector<problem>& problems) const;

    spi::SpiTokenTable tokens_;
    bool defined_somewhere_[256] = {};
    std::size_t left_;
};

// A token as it is shown: "<0B>".
std::string token_name(std::uint8_t code);

}  // namespace dabspi::spi_object
