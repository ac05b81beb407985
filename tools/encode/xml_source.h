// An XML document as it stands in a file: parsed, with the place of every element and attribute.
//
// The parser under it (pugixml) is lenient; what it lets pass and XML forbids is refused here: bytes that are
// not UTF-8, control characters, entities that nobody defined, an attribute given twice, a second top
// element. UTF-8 only. Nothing is thrown for a bad document: what is wrong stands in errors(), and root() is
// then empty.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "tools/encode/source_note.h"

namespace dabspi {

class xml_source {
 public:
    explicit xml_source(std::string text);
    xml_source(const xml_source&) = delete;
    xml_source& operator=(const xml_source&) = delete;

    pugi::xml_node root() const { return root_; }
    const std::vector<source_note>& errors() const { return errors_; }

    // A note about an element, or about one of its attributes.
    source_note at(pugi::xml_node element, std::string text, std::string remedy = {}) const;
    source_note at(pugi::xml_node element, pugi::xml_attribute attribute, std::string text,
                   std::string remedy = {}) const;

 private:
    bool check_characters();
    bool check_entities();
    bool check_attributes();
    bool parse();
    bool refuse(std::size_t offset, std::string text, std::string remedy);
    source_note note_at(std::size_t offset, std::string text, std::string remedy) const;
    std::size_t offset_of(pugi::xml_node element) const;

    struct line_position {
        std::size_t line = 0;
        std::size_t offset = 0;
        std::size_t column = 1;
    };

    std::string text_;
    std::string parsed_;  // the same, taken apart in place: names stand where they stood
    std::vector<std::size_t> line_begins_ = {0};
    mutable line_position
        last_place_;  // notes come in the order of the document: columns are counted on from here
    pugi::xml_document document_;
    pugi::xml_node root_;
    std::vector<source_note> errors_;
};

// "epg/schedule/programme", names as they are written; of long names and many levels only the beginning and
// the end.
std::string path_of(pugi::xml_node element);

}  // namespace dabspi
