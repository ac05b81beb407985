// An encoded object as it is broadcast: its bytes, with or without tokens, and its MOT header.
#pragma once

#include <stdexcept>

#include "tools/encode/document_encoder.h"
#include "tools/encode/mot_header.h"

namespace dabspi {

struct token_choice {
    bool build = false;      // the ones that make the object smallest
    token_texts given = {};  // these; not both
};

struct broadcast_object {
    spi_object::bytes body;
    std::size_t size_without_tokens = 0;
    token_texts tokens;  // empty: none make it smaller
    mot_header header;
};

// Throws std::length_error when the object, or an element of it, is longer than a binary object can tell, and
// std::logic_error when what was made is not well formed: the encoder's own fault.
broadcast_object make_object(const encoded_object& from, const token_choice& tokens);

}  // namespace dabspi
