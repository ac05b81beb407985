// Why a text of XML is no value of an attribute, in words for its author; and what --lenient makes of it.
#pragma once

#include <optional>
#include <string>

#include "tools/spi/byte_view.h"
#include "tools/spi/schema.h"

namespace dabspi {

struct value_fault {
    std::string text;
    std::string remedy;
    // What is coded all the same where that is asked for; nothing: the attribute is left out.
    std::optional<spi_object::bytes> repaired;
    std::string repaired_how;  // "taken as UTC"
};

// The coding of `text`, or what is wrong. Texts: strings must be free of control characters, which would be
// tokens; other types may have blanks around them.
struct coded_value {
    spi_object::bytes coding;
    std::optional<value_fault> fault;
};
coded_value code_value(const spi_object::attribute_entry& attribute, const std::string& text);

}  // namespace dabspi
