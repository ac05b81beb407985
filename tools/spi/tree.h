// An SPI object as a tree: every element, attribute and token with its place in the bytes, its meaning, what
// is wrong with it, and whether the receiver reads it.
//
//   const object read = decode(body);
//   for (const problem_at& each : problems_of(read)) ...
//   visit(read, [](const node& each, const std::vector<const node*>& above) { ... });
//
// decode() (tools/spi/decode.h) makes it. The tree keeps no pointer to the object's bytes; pointers to schema
// entries stay good for ever.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "tools/spi/problem.h"
#include "tools/spi/schema.h"
#include "tools/spi/values.h"

namespace dabspi::spi_object {

// A text as the broadcast means it: tokens expanded, otherwise the bytes as they are (UTF-8 or not).
struct text_value {
    std::string text;
    bool tokens = false;  // some were expanded
};

// monostate: no value (an element with children, an unknown tag, a value too short to mean anything).
using node_value = std::variant<std::monostate, text_value, std::uint32_t, time_value, content_id,
                                ensemble_id, genre_value, std::vector<position>>;

enum class node_kind { element, attribute, token };

enum class reading {
    passed_over,  // the receiver skips it
    read,
    not_needed,  // it would be read, but what stood before it has the place: a medium name after a long one
};

struct node {
    node_kind kind = node_kind::element;
    std::uint8_t tag = 0;     // of a token: its byte
    std::uint8_t header = 0;  // bytes of tag and length
    reading receiver = reading::passed_over;
    std::uint32_t offset = 0;  // of the tag, counted from the object's first byte
    std::uint32_t stated = 0;  // content length as coded (as a receiver takes it, where it is cut)
    std::uint32_t length = 0;  // content bytes that belong to it: no more than parent and object hold
    const element_entry* element = nullptr;      // of an element that the standard knows
    const attribute_entry* attribute = nullptr;  // of an attribute that the standard knows there
    node_value decoded;
    std::vector<node> children;     // attributes and elements as they stand
    std::vector<problem> problems;  // of this node itself; offsets counted from the object's first byte

    std::uint32_t content() const { return offset + header; }  // offset of the first byte of content
    std::uint32_t end() const { return content() + length; }   // offset of the byte behind the last
    const char* name() const;                                  // in XML, or null for a tag unknown there

    // The first child of a kind; null when there is none.
    const node* child(std::uint8_t element_tag) const;
    const node* attribute_at(std::uint8_t attribute_tag) const;
};

enum class object_kind { service_information, programme_information, group_information, unknown };
const char* kind_name(object_kind kind);  // "service information"

struct object {
    object_kind kind = object_kind::unknown;
    std::uint32_t size = 0;
    std::vector<node> tops;         // one, in a well-formed object
    std::vector<problem> problems;  // of the object as a whole
    std::size_t malformed = 0;      // how many places, all nodes included
    std::size_t remarks = 0;
    std::size_t omitted = 0;  // problems of nodes beyond the first 1,000: counted above, not kept

    bool well_formed() const { return malformed == 0; }
};

// Calls for each node, parents first, in the order of the bytes.
using visitor = std::function<void(const node& each, const std::vector<const node*>& above)>;
void visit(const object& of, const visitor& call);

// All problems, of the object and of its nodes, in the order of the tree; `where` is null for the object's
// own.
struct problem_at {
    const problem* what;
    const node* where;
    std::string path;  // "epg/schedule/programme/@id"
};
std::vector<problem_at> problems_of(const object& of);

// "programme", "@shortId", "0x7A" for what the standard does not know.
std::string shown_name(const node& of);

// The value in the words of XML: times with offset, URIs, names of enumerations, texts. Empty for none.
std::string value_text(const node& of);

}  // namespace dabspi::spi_object
