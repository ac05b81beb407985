// Elements of an XML document, one after the other, as nodes of a binary object.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tools/encode/document_encoder.h"
#include "tools/encode/value_fault.h"
#include "tools/spi/schema.h"

namespace dabspi {

constexpr const char* kServicesElsewhere = "services without a bearer of the DAB domain";

class element_encoder {
 public:
    element_encoder(const xml_source& source, const encode_options& options, encoded_document& result);

    // The namespace that the top element is in; false, with an error, when it is none of this standard's.
    bool take_namespace(pugi::xml_node root);
    // The name without its prefix; nothing for names of other namespaces.
    std::optional<std::string> local_name(pugi::xml_node element);
    // The document has one service: it may be given a bearer (encode_options::service).
    void has_one_service() { one_service_ = true; }
    // Times of programmes that are coded without an offset, as they stand in UTC.
    std::size_t times_in_utc() const { return times_in_utc_; }

    // Nothing when the element is left out as a whole.
    std::optional<coded_node> element(pugi::xml_node from, const spi_object::element_entry& entry);

    void attributes(pugi::xml_node from, const spi_object::element_entry& entry, coded_node& to);
    void children(pugi::xml_node from, const spi_object::element_entry& entry, coded_node& to);
    // One child element of `parent`, where that stands in the table.
    void child(pugi::xml_node from, const spi_object::element_entry& parent, coded_node& to);

    void error(source_note note);
    // An error, or with --lenient a warning that says what was done instead.
    void fault(source_note note, const std::string& lenient_way);
    void warn(source_note note);
    template <class Make>
    void omit(const std::string& what, Make note) {
        result_.omitted.add(what, note);
    }
    template <class Make>
    void convert(const std::string& what, Make note) {
        result_.converted.add(what, note);
    }

 private:
    // Of an element's xmlns and xml:space; asked for again and again by what stands in it.
    struct declarations {
        std::unordered_map<std::string, std::string> namespaces;  // by prefix
        std::optional<bool> keeps_blanks;
    };

    const declarations& declarations_of(pugi::xml_node element);
    std::string namespace_of(pugi::xml_node element);
    bool is_of_earlier_edition(pugi::xml_node element);
    void count_edition(pugi::xml_node element);
    bool keeps_another_fault() const;

    void attribute(pugi::xml_node from, pugi::xml_attribute each, const spi_object::element_entry& entry,
                   coded_node& to);
    void unknown_attribute(pugi::xml_node from, pugi::xml_attribute each,
                           const spi_object::element_entry& entry);
    void unknown_element(pugi::xml_node from, const std::string& name,
                         const spi_object::element_entry& parent);
    coded_value coded(pugi::xml_node from, pugi::xml_attribute each, const spi_object::element_entry& entry,
                      const spi_object::attribute_entry& known);
    coded_value coded_time(pugi::xml_node from, pugi::xml_attribute each,
                           const spi_object::element_entry& entry, const std::string& text);
    // A description or an image beside the mediaDescription that it belongs in.
    bool wrap(pugi::xml_node from, const std::string& name, const spi_object::element_entry& parent,
              coded_node& to);
    void text(pugi::xml_node from, const spi_object::element_entry& entry, coded_node& to);
    std::string text_of(pugi::xml_node from, const spi_object::element_entry& entry);
    bool keeps_blanks(pugi::xml_node element);
    bool is_of_other_domain(pugi::xml_node from, const spi_object::element_entry& entry);
    bool names_nothing(pugi::xml_node from, const spi_object::element_entry& entry);
    // It has bearers, and none of DAB.
    bool is_service_of_other_domains(pugi::xml_node from, const spi_object::element_entry& entry,
                                     coded_node& made);
    bool has_needed_id(pugi::xml_node from, const spi_object::element_entry& entry, const coded_node& made);

    const xml_source& source_;
    const encode_options& options_;
    encoded_document& result_;
    std::string namespace_;
    bool one_service_ = false;
    std::size_t times_in_utc_ = 0;                                // of programmes
    std::unordered_map<const void*, declarations> declarations_;  // by the element's internal_object()
};

// Whatever its prefix.
bool is_named(pugi::xml_node element, std::string_view name);

// The known name that is most like a mistaken one, as a remedy: "did you mean \"shortName\"?"; empty when
// none is.
std::string similar_name(std::string_view mistaken, const std::vector<std::string>& known);

}  // namespace dabspi
