// Elements and attributes of binary SPI objects (ETSI TS 102 371) and their names in XML (ETSI TS 102 818):
// one table, for reading binary objects and for writing them.
//
//   const element_entry* schedule = find_element(0x21);             // binary -> name
//   const element_entry* bearer = find_child(schedule_or_other_tag, "bearer");  // XML -> tag
//   const attribute_entry* start = find_attribute(*schedule, "version");
//
// The table lives for the whole process; pointers into it stay good. Any thread.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "src/parse/reader/spi_tags.h"

namespace dabspi::spi_object {

namespace tag = spi::tag;

// How the content of an attribute (or of an element that has neither attributes nor children) is coded.
enum class value_type {
    string,        // UTF-8
    token_string,  // UTF-8; token bytes stand for texts of the object's token table
    number16,      // 2 bytes
    number24,      // 3 bytes
    seconds,       // 2 bytes; in XML an ISO 8601 duration
    time,          // in XML an ISO 8601 date and time
    content_id,    // in XML a dab: URI
    ensemble_id,   // ECC and EId; in XML "e1.ce15"
    genre,         // in XML a urn:tva: URN
    enumeration,   // 1 byte; in XML a name
    positions,     // pairs of signed 24-bit numbers; in XML decimal degrees
};
// "text", "u16", ...: for people.
const char* type_name(value_type type);

struct enum_name {
    std::uint8_t code;
    const char* name;
};

struct attribute_entry {
    std::uint8_t tag;
    const char* name;  // in XML
    value_type type;
    std::vector<enum_name> names = {};  // of an enumeration
};

enum class content_kind {
    children,     // attributes and elements
    text,         // attributes and one text element (0x01); in XML the element's own text
    positions,    // the same, the text element's content being positions
    token_table,  // pairs of token and text
    value,        // no attributes and no children: a bare value of type `bare`
};

struct element_entry {
    std::uint8_t tag;
    const char* name;                   // in XML; names of their own for what XML does not have
    std::vector<std::uint8_t> parents;  // tags of the elements it stands in; empty: top of an object
    content_kind content;
    std::vector<attribute_entry> attributes = {};
    value_type bare = value_type::string;  // for content_kind::value
};

const std::vector<element_entry>& all_elements();

// Null when the standard knows none.
const element_entry* find_element(std::uint8_t element_tag);
const attribute_entry* find_attribute(const element_entry& of, std::uint8_t attribute_tag);
const attribute_entry* find_attribute(const element_entry& of, std::string_view name);
// By XML name, inside an element: "bearer" is 0x29 in a service and 0x2D in a location. Null also where it
// must not stand. `parent` 0 is the object itself.
const element_entry* find_child(std::uint8_t parent, std::string_view name);

// False for the token table, the defaults and the text element: XML says these otherwise.
bool is_in_xml(const element_entry& element);

// Whether an element may stand there; `parent` 0 is the object itself.
bool may_stand_in(const element_entry& element, std::uint8_t parent);

// Names of an enumeration's values; null when there is none such.
const char* enum_text(const attribute_entry& attribute, std::uint8_t code);
const enum_name* find_enum(const attribute_entry& attribute, std::string_view name);

// Whether the library's parsers act on a tag directly inside an element that they read themselves; `parent` 0
// is the object. They read little: names, times, bearers and logos; everything else is passed over.
bool receiver_reads(std::uint8_t parent, std::uint8_t child);

}  // namespace dabspi::spi_object
