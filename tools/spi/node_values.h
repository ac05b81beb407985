// Values of a node by their type: for the decoder, and for what shows nodes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/spi/byte_view.h"
#include "tools/spi/tree.h"

namespace dabspi::spi_object {

// Where a value stands: the receiver reads past short ones, as far as its own bounds let it.
struct value_context {
    const attribute_entry* attribute = nullptr;  // null for the content of an element
    std::uint8_t parent = 0;                     // tag of the element around it
    std::uint32_t behind_in_parent = 0;          // bytes from the value's first on that the parent holds
    std::uint32_t behind_in_object = 0;          // and that the object holds
    byte_view body;                              // the object from the value's first byte on
    bool read = false;                           // the receiver reads it
};

// Any type but the texts. monostate for a value too short to mean anything; a text where a text was coded.
node_value decode_value(byte_view content, value_type type, const value_context& context,
                        std::vector<problem>& problems);

// The bytes of a value given in the words of XML; nothing when the text is no value of the attribute's type,
// or has no room. Texts are coded as they are, without tokens.
std::optional<bytes> encode_value(const attribute_entry& attribute, std::string_view text);

}  // namespace dabspi::spi_object
