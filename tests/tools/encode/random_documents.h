// Random XML documents (ETSI TS 102 818), made from the table of elements: every element, attribute and type
// of value that has a coding, in every place where it may stand.
//
// Values are written in the one form in which objects show them again, so that documents can be compared as
// they are.
#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <random>
#include <string>

#include "tools/spi/schema.h"

class random_documents {
 public:
    explicit random_documents(std::uint32_t seed) : random_(seed) {}

    // The text of a document.
    std::string next();

 private:
    unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random_); }
    bool one_in(unsigned count) { return below(count) == 0; }

    void fill(pugi::xml_node to, const dabspi::spi_object::element_entry& entry, unsigned depth);
    void attributes(pugi::xml_node to, const dabspi::spi_object::element_entry& entry);
    void children(pugi::xml_node to, const dabspi::spi_object::element_entry& entry, unsigned depth);
    std::string value(const dabspi::spi_object::attribute_entry& of);
    std::string text();
    std::string time();
    std::string content_id();
    std::string positions();
    std::string genre();

    std::mt19937 random_;
    unsigned left_ = 0;  // elements that this document may still have
};

// What two documents must have in common to say the same: elements in their order, attributes in none, texts.
std::string canonical(pugi::xml_node element);
