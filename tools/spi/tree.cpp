#include "tools/spi/tree.h"

#include <algorithm>
#include <cstdio>

namespace dabspi::spi_object {

namespace {

void visit_nodes(const std::vector<node>& nodes, std::vector<const node*>& above, const visitor& call) {
    for (const node& each : nodes) {
        call(each, above);
        above.push_back(&each);
        visit_nodes(each.children, above, call);
        above.pop_back();
    }
}

}  // namespace

const char* node::name() const {
    if (attribute != nullptr) return attribute->name;
    return element == nullptr ? nullptr : element->name;
}

const node* node::child(std::uint8_t element_tag) const {
    const auto found = std::find_if(children.begin(), children.end(), [&](const node& each) {
        return each.kind == node_kind::element && each.tag == element_tag;
    });
    return found == children.end() ? nullptr : &*found;
}

const node* node::attribute_at(std::uint8_t attribute_tag) const {
    const auto found = std::find_if(children.begin(), children.end(), [&](const node& each) {
        return each.kind == node_kind::attribute && each.tag == attribute_tag;
    });
    return found == children.end() ? nullptr : &*found;
}

const char* kind_name(object_kind kind) {
    switch (kind) {
        case object_kind::service_information: return "service information";
        case object_kind::programme_information: return "programme information";
        case object_kind::group_information: return "group information";
        case object_kind::unknown: break;
    }
    return "no SPI object";
}

void visit(const object& of, const visitor& call) {
    std::vector<const node*> above;
    visit_nodes(of.tops, above, call);
}

std::vector<problem_at> problems_of(const object& of) {
    std::vector<problem_at> all;
    for (const problem& each : of.problems)
        all.push_back({&each, nullptr, ""});
    visit(of, [&](const node& each, const std::vector<const node*>& above) {
        if (each.problems.empty()) return;
        std::string path;
        for (const node* outer : above)
            path += shown_name(*outer) + "/";
        path += shown_name(each);
        for (const problem& what : each.problems)
            all.push_back({&what, &each, path});
    });
    return all;
}

std::string shown_name(const node& of) {
    const char* const name = of.name();
    if (name != nullptr) return of.kind == node_kind::attribute ? std::string("@") + name : name;
    char tag_text[8];
    std::snprintf(tag_text, sizeof tag_text, of.kind == node_kind::token ? "<%02X>" : "0x%02X",
                  unsigned{of.tag});
    return tag_text;
}

std::string value_text(const node& of) {
    struct {
        const attribute_entry* attribute;
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(const text_value& value) const { return value.text; }
        std::string operator()(std::uint32_t number) const {
            if (attribute != nullptr && attribute->type == value_type::seconds) return duration_text(number);
            if (attribute != nullptr && attribute->type == value_type::enumeration) {
                const char* const name = enum_text(*attribute, static_cast<std::uint8_t>(number));
                if (name != nullptr) return name;
            }
            return std::to_string(number);
        }
        std::string operator()(const time_value& value) const { return time_text(value); }
        std::string operator()(const content_id& value) const { return content_id_text(value); }
        std::string operator()(const ensemble_id& value) const { return ensemble_id_text(value); }
        std::string operator()(const genre_value& value) const { return genre_text(value); }
        std::string operator()(const std::vector<position>& value) const { return positions_text(value); }
    } const writer{of.attribute};
    return std::visit(writer, of.decoded);
}

}  // namespace dabspi::spi_object
