#include "tests/tools/encode/statements.h"

#include <vector>

#include "tools/spi/values.h"

namespace so = dabspi::spi_object;

namespace {

std::string value_of(const so::node& of) {
    if (const auto* const time = std::get_if<so::time_value>(&of.decoded)) return utc_text(*time);
    std::string text = so::value_text(of);
    // Some encoders write the URN of a genre as a text.
    if (of.attribute != nullptr && of.attribute->type == so::value_type::genre)
        if (const auto genre = so::parse_genre(text)) return genre_text(*genre);
    return text;
}

const so::node* below(const so::node& from, std::initializer_list<std::uint8_t> path) {
    const so::node* at = &from;
    for (const std::uint8_t tag : path)
        at = at == nullptr                    ? nullptr
             : tag < so::tag::first_attribute ? at->child(tag)
                                              : at->attribute_at(tag);
    return at;
}

// What tells one service or programme from another; empty for elements that belong to what is around them.
std::string name_of(const so::node& of) {
    if (of.kind != so::node_kind::element) return {};
    const so::node* key = nullptr;
    if (of.tag == so::tag::service) key = below(of, {so::tag::service_bearer, 0x80});
    if (of.tag == so::tag::programme) key = below(of, {so::tag::location, so::tag::time, 0x80});
    if (of.tag == so::tag::programme_event) key = below(of, {0x80});
    return key == nullptr ? std::string() : so::shown_name(of) + " " + value_of(*key);
}

bool is_compared(const so::node& of) {
    return of.kind != so::node_kind::token && of.tag != so::tag::default_language &&
           so::shown_name(of) != "@xml:lang" && !std::holds_alternative<std::monostate>(of.decoded);
}

}  // namespace

std::set<std::string> statements_of(const so::object& of) {
    std::set<std::string> result;
    so::visit(of, [&](const so::node& each, const std::vector<const so::node*>& above) {
        if (!is_compared(each)) return;
        std::string owner;
        std::string path;
        std::string media;  // the URL tells which of several
        for (const so::node* outer : above) {
            const std::string name = name_of(*outer);
            if (!name.empty()) {
                owner = name;
                path.clear();
            } else {
                path += so::shown_name(*outer) + "/";
            }
            if (outer->tag == so::tag::multimedia && outer->kind == so::node_kind::element)
                if (const so::node* const url = outer->attribute_at(0x82)) media = value_of(*url) + " ";
        }
        const std::string text = each.tag == so::tag::text ? "text" : so::shown_name(each);
        result.insert(owner + ": " + media + path + text + " = " + value_of(each));
    });
    return result;
}
