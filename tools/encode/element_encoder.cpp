#include "tools/encode/element_encoder.h"

#include <algorithm>
#include <utility>

#include "tools/encode/value_fault.h"
#include "tools/encode/without_coding.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using spi_object::attribute_entry;
using spi_object::content_kind;
using spi_object::element_entry;
using spi_object::value_type;
namespace tag = spi_object::tag;

constexpr std::string_view kNamespace = "http://www.worlddab.org/schemas/spi";
constexpr std::size_t kMostErrors = 1000;

bool is_spi_namespace(std::string_view name) {
    if (name.substr(0, kNamespace.size()) != kNamespace) return false;
    const std::string_view edition = name.substr(kNamespace.size());
    return edition.empty() || (edition.size() > 1 && edition[0] == '/' &&
                               edition.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

std::string prefix_of(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? std::string() : std::string(name.substr(0, colon));
}

bool is_blank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// "<genre>"
std::string tagged(std::string_view name) {
    return "<" + std::string(name) + ">";
}

const attribute_entry* content_id_of(const element_entry& entry) {
    const auto found =
        std::find_if(entry.attributes.begin(), entry.attributes.end(),
                     [](const attribute_entry& each) { return each.type == value_type::content_id; });
    return found == entry.attributes.end() ? nullptr : &*found;
}

std::vector<std::string> attribute_names(const element_entry& of) {
    std::vector<std::string> names;
    for (const attribute_entry& each : of.attributes)
        names.emplace_back(each.name);
    return names;
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& each : names)
        text += (text.empty() ? "" : ", ") + each;
    return text.empty() ? "none" : text;
}

std::vector<std::string> child_names(const element_entry& parent) {
    std::vector<std::string> names;
    for (const element_entry& each : spi_object::all_elements())
        if (is_in_xml(each) && may_stand_in(each, parent.tag)) names.emplace_back(each.name);
    if (parent.tag == tag::service_information) names.emplace_back("services");
    return names;
}

// Elements in which this name may stand.
std::vector<std::string> parent_names(std::string_view child) {
    std::vector<std::string> names;
    for (const element_entry& each : spi_object::all_elements()) {
        if (each.name != child || !is_in_xml(each)) continue;
        for (const std::uint8_t parent : each.parents)
            names.emplace_back(spi_object::find_element(parent)->name);
    }
    return names;
}

}  // namespace

element_encoder::element_encoder(const xml_source& source, const encode_options& options,
                                 encoded_document& result)
    : source_(source), options_(options), result_(result) {}

bool element_encoder::take_namespace(pugi::xml_node root) {
    namespace_ = bound_namespace(root, prefix_of(root.name()));
    if (is_spi_namespace(namespace_)) return true;
    fault(source_.at(root,
                     namespace_.empty() ? "the element is in no namespace"
                                        : "the element is in the namespace " + in_quotes(namespace_),
                     "SPI documents are in xmlns=\"" + std::string(kNamespace) + "/31\""),
          "taken as one of SPI");
    return options_.lenient;
}

std::optional<std::string> element_encoder::local_name(pugi::xml_node element) const {
    const std::string_view name = element.name();
    const std::string prefix = prefix_of(name);
    if (bound_namespace(element, prefix) != namespace_) return std::nullopt;
    return std::string(prefix.empty() ? name : name.substr(prefix.size() + 1));
}

std::optional<coded_node> element_encoder::element(pugi::xml_node from, const element_entry& entry) {
    if (is_of_other_domain(from, entry)) return std::nullopt;
    coded_node made;
    made.tag = entry.tag;
    attributes(from, entry, made);
    if (!has_needed_id(from, entry, made)) return std::nullopt;
    if (entry.content == content_kind::children) {
        children(from, entry, made);
    } else {
        text(from, entry, made);
    }
    if (is_service_of_other_domains(from, entry, made)) return std::nullopt;
    return made;
}

void element_encoder::attributes(pugi::xml_node from, const element_entry& entry, coded_node& to) {
    for (const pugi::xml_attribute each : from.attributes())
        attribute(from, each, entry, to);
    std::stable_sort(to.parts.begin(), to.parts.end(),
                     [](const coded_node& a, const coded_node& b) { return a.tag < b.tag; });
}

void element_encoder::attribute(pugi::xml_node from, pugi::xml_attribute each, const element_entry& entry,
                                coded_node& to) {
    const std::string_view name = each.name();
    const std::string prefix = prefix_of(name);
    if (name == "xmlns" || prefix == "xmlns" || name == "xml:space") return;
    // The top element's language has an element of its own.
    if (entry.parents.empty() && name == "xml:lang") return;
    if (!prefix.empty() && prefix != "xml")
        return omit("attributes of other namespaces", source_.at(from, each, "is of another namespace"));
    const attribute_entry* const known = find_attribute(entry, name);
    if (known == nullptr) {
        if (is_attribute_without_coding(entry.name, name))
            return omit("attributes that have no coding", source_.at(from, each, "has no coding"));
        const std::vector<std::string> names = attribute_names(entry);
        const std::string similar = similar_name(name, names);
        return fault(source_.at(from, each, tagged(entry.name) + " has no such attribute",
                                similar.empty() ? "its attributes: " + listed(names) : similar),
                     "left out");
    }
    coded_value coded = code_value(*known, each.value());
    if (coded.fault) {
        fault(source_.at(from, each, coded.fault->text, coded.fault->remedy),
              coded.fault->repaired ? coded.fault->repaired_how : "left out");
        if (!coded.fault->repaired) return;
        coded.coding = std::move(*coded.fault->repaired);
    }
    to.parts.push_back({known->tag, std::move(coded.coding), known->type == value_type::token_string, {}});
}

void element_encoder::children(pugi::xml_node from, const element_entry& entry, coded_node& to) {
    for (const pugi::xml_node each : from.children()) {
        if (each.type() == pugi::node_element) {
            child(each, entry, to);
        } else if (!is_blank(each.value())) {
            omit("texts that have no coding", source_.at(from, "the text inside has no coding"));
        }
    }
    if (entry.tag != tag::service) return;
    const auto is = [](std::uint8_t wanted) {
        return [wanted](const coded_node& each) { return each.tag == wanted; };
    };
    const auto media = std::find_if(to.parts.begin(), to.parts.end(), is(tag::media_description));
    std::stable_partition(media, to.parts.end(), is(tag::service_bearer));
}

void element_encoder::child(pugi::xml_node from, const element_entry& parent, coded_node& to) {
    const std::optional<std::string> name = local_name(from);
    if (!name) return omit("elements of other namespaces", source_.at(from, "is of another namespace"));
    if (const element_entry* const known = spi_object::find_child(parent.tag, *name)) {
        if (std::optional<coded_node> made = element(from, *known)) to.parts.push_back(std::move(*made));
        return;
    }
    if (is_element_without_coding(*name))
        return omit("elements that have no coding", source_.at(from, "has no coding"));
    const std::vector<std::string> parents = parent_names(*name);
    if (!parents.empty())
        return fault(source_.at(from, tagged(*name) + " does not belong in " + tagged(parent.name),
                                "it belongs in: " + listed(parents)),
                     "left out");
    const std::vector<std::string> names = child_names(parent);
    const std::string similar = similar_name(*name, names);
    fault(source_.at(from, "there is no element " + tagged(*name),
                     similar.empty() ? "in " + tagged(parent.name) + " belong: " + listed(names) : similar),
          "left out");
}

void element_encoder::text(pugi::xml_node from, const element_entry& entry, coded_node& to) {
    const std::string content = text_of(from, entry);
    if (content.empty()) return;
    const bool positions = entry.content == content_kind::positions;
    const attribute_entry as{tag::text, "", positions ? value_type::positions : value_type::token_string, {}};
    coded_value coded = code_value(as, content);
    if (coded.fault) {
        fault(source_.at(from, coded.fault->text, coded.fault->remedy),
              coded.fault->repaired ? coded.fault->repaired_how : "left out");
        if (!coded.fault->repaired) return;
        coded.coding = std::move(*coded.fault->repaired);
    }
    to.parts.push_back({tag::text, std::move(coded.coding), !positions, {}});
}

// Blanks at either end belong to the layout of the file when a line ends among them, and to the text when
// not.
std::string element_encoder::text_of(pugi::xml_node from, const element_entry& entry) {
    std::string content;
    for (const pugi::xml_node each : from.children()) {
        if (each.type() == pugi::node_element) {
            fault(source_.at(each, tagged(entry.name) + " holds text, no elements", {}), "left out");
        } else {
            content += each.value();
        }
    }
    if (keeps_blanks(from)) return content;
    const std::size_t first = std::min(content.find_first_not_of(" \t\r\n"), content.size());
    if (content.find('\n') < first) content.erase(0, first);
    const std::size_t behind = content.find_last_not_of(" \t\r\n") + 1;
    if (content.find('\n', behind) != std::string::npos) content.erase(behind);
    return content;
}

bool element_encoder::keeps_blanks(pugi::xml_node element) const {
    for (; element; element = element.parent())
        if (const pugi::xml_attribute space = element.attribute("xml:space"))
            return space.value() == std::string_view("preserve");
    return false;
}

bool element_encoder::is_of_other_domain(pugi::xml_node from, const element_entry& entry) {
    const attribute_entry* const id = content_id_of(entry);
    if (id == nullptr) return false;
    const pugi::xml_attribute given = from.attribute(id->name);
    const std::string_view uri = given.value();
    const std::string_view domain = uri.substr(0, uri.find(':'));
    const bool dab = domain.size() == 3 && (domain[0] | 0x20) == 'd' && (domain[1] | 0x20) == 'a' &&
                     (domain[2] | 0x20) == 'b';
    if (domain.size() == uri.size() || dab) return false;
    omit(entry.tag == tag::service_scope ? "service scopes of other domains" : "bearers of other domains",
         source_.at(from, given, in_quotes(uri) + " is not of the DAB domain"));
    return true;
}

bool element_encoder::is_service_of_other_domains(pugi::xml_node from, const element_entry& entry,
                                                  const coded_node& made) {
    if (entry.tag != tag::service) return false;
    const auto is_bearer = [](const coded_node& each) { return each.tag == tag::service_bearer; };
    if (std::any_of(made.parts.begin(), made.parts.end(), is_bearer)) return false;
    for (const pugi::xml_node each : from.children()) {
        if (each.type() != pugi::node_element || local_name(each) != std::string("bearer")) continue;
        omit(kServicesElsewhere, source_.at(from, "has no bearer of the DAB domain"));
        return true;
    }
    return false;
}

bool element_encoder::has_needed_id(pugi::xml_node from, const element_entry& entry, const coded_node& made) {
    const bool needed = content_id_of(entry) != nullptr || entry.tag == tag::ensemble;
    const auto is_id = [](const coded_node& each) { return each.tag == tag::first_attribute; };
    if (!needed || std::any_of(made.parts.begin(), made.parts.end(), is_id)) return true;
    // What is wrong with one that is there has been said.
    if (from.attribute("id")) return false;
    fault(source_.at(from, tagged(entry.name) + " has no id", "say which it is: id=\"...\""), "left out");
    return false;
}

void element_encoder::error(source_note note) {
    if (result_.errors.size() < kMostErrors) result_.errors.push_back(std::move(note));
}

void element_encoder::fault(source_note note, const std::string& lenient_way) {
    if (!options_.lenient) return error(std::move(note));
    note.remedy = lenient_way;
    result_.warnings.push_back(std::move(note));
}

void element_encoder::omit(const char* what, source_note note) {
    result_.omitted.push_back({what, std::move(note)});
}

}  // namespace dabspi
