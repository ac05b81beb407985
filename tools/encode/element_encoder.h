// Elements of an XML document, one after the other, as nodes of a binary object.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/encode/document_encoder.h"
#include "tools/spi/schema.h"

namespace dabspi {

constexpr const char* kServicesElsewhere = "services without a bearer of the DAB domain";

class element_encoder {
 public:
    element_encoder(const xml_source& source, const encode_options& options, encoded_document& result);

    // The namespace that the top element is in; false, with an error, when it is none of this standard's.
    bool take_namespace(pugi::xml_node root);
    // The name without its prefix; nothing for names of other namespaces.
    std::optional<std::string> local_name(pugi::xml_node element) const;

    // Nothing when the element is left out as a whole.
    std::optional<coded_node> element(pugi::xml_node from, const spi_object::element_entry& entry);

    void attributes(pugi::xml_node from, const spi_object::element_entry& entry, coded_node& to);
    void children(pugi::xml_node from, const spi_object::element_entry& entry, coded_node& to);
    // One child element of `parent`, where that stands in the table.
    void child(pugi::xml_node from, const spi_object::element_entry& parent, coded_node& to);

    void error(source_note note);
    // An error, or with --lenient a warning that says what was done instead.
    void fault(source_note note, const std::string& lenient_way);
    void omit(const char* what, source_note note);

 private:
    void attribute(pugi::xml_node from, pugi::xml_attribute each, const spi_object::element_entry& entry,
                   coded_node& to);
    void text(pugi::xml_node from, const spi_object::element_entry& entry, coded_node& to);
    std::string text_of(pugi::xml_node from, const spi_object::element_entry& entry);
    bool keeps_blanks(pugi::xml_node element) const;
    bool is_of_other_domain(pugi::xml_node from, const spi_object::element_entry& entry);
    // It has bearers, and none of DAB.
    bool is_service_of_other_domains(pugi::xml_node from, const spi_object::element_entry& entry,
                                     const coded_node& made);
    bool has_needed_id(pugi::xml_node from, const spi_object::element_entry& entry, const coded_node& made);

    const xml_source& source_;
    const encode_options& options_;
    encoded_document& result_;
    std::string namespace_;
};

// The namespace that a prefix ("" for none) is bound to at an element; empty when it is not.
std::string bound_namespace(pugi::xml_node at, std::string_view prefix);

// The known name that is most like a mistaken one, as a remedy: "did you mean \"shortName\"?"; empty when
// none is.
std::string similar_name(std::string_view mistaken, const std::vector<std::string>& known);

}  // namespace dabspi
