// The XML document (ETSI TS 102 818) that an object stands for.
//
// Tokens are expanded; the default language becomes the top element's xml:lang; a default content ID becomes
// the id of bearers and service scopes that have none. What XML has no place for (unknown tags, values too
// short to mean anything, a second attribute of one name) stands as a comment where it stood. The document is
// well-formed XML in UTF-8 whatever the object holds: bytes that are not UTF-8 and characters that XML
// forbids are replaced by U+FFFD. Each such loss is said in `notes`.
#pragma once

#include <string>
#include <vector>

#include "tools/spi/tree.h"

namespace dabspi::spi_object {

struct xml_note {
    std::uint32_t offset;  // in the object
    std::string text;
};

struct xml_document {
    std::string text;  // empty when the object has no epg or serviceInformation at its top
    std::vector<xml_note> notes;
};

xml_document xml_of(const object& of);

// Valid UTF-8 without characters that XML forbids; `replaced` counts what became U+FFFD.
std::string xml_safe(std::string_view text, std::size_t& replaced);

}  // namespace dabspi::spi_object
