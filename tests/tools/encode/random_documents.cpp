#include "tests/tools/encode/random_documents.h"

#include <map>
#include <sstream>
#include <vector>

#include "tools/spi/values.h"

namespace so = dabspi::spi_object;

namespace {

constexpr const char* kNamespaces[] = {"http://www.worlddab.org/schemas/spi/31",
                                       "http://www.worlddab.org/schemas/spi"};
constexpr const char* kTexts[] = {"News",
                                  " at ",
                                  "Ten",
                                  "\xC3\xA9t\xC3\xA9",
                                  "<",
                                  "&",
                                  "\"",
                                  "'",
                                  "]]>",
                                  " ",
                                  "a",
                                  "\xE2\x82\xAC",
                                  "\xF0\x9F\x93\xBB",
                                  "http://example.org/",
                                  "Morning Post",
                                  "\n",
                                  "\t",
                                  "0"};

bool always_there(const so::attribute_entry& of) {
    return of.type == so::value_type::content_id || of.type == so::value_type::ensemble_id;
}

// A line end at either end belongs to the layout of a file.
std::string without_outer_line_ends(std::string text) {
    while (!text.empty() && (text.front() == '\n' || text.front() == '\t' || text.front() == ' '))
        text.erase(0, 1);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\t' || text.back() == ' '))
        text.pop_back();
    return text;
}

std::string length_and(const char* text) {
    const std::string value = text;
    return std::to_string(value.size()) + ":" + value;
}

}  // namespace

std::string random_documents::next() {
    pugi::xml_document document;
    left_ = 1 + below(60);
    const auto& top = *so::find_element(one_in(2) ? so::tag::epg : so::tag::service_information);
    pugi::xml_node root = document.append_child(top.name);
    root.append_attribute("xmlns") = kNamespaces[below(2)];
    if (one_in(2)) root.append_attribute("xml:lang") = text().c_str();
    fill(root, top, 0);
    // Service information without an ensemble would say nothing.
    if (top.tag == so::tag::service_information && !root.child("ensemble"))
        fill(root.append_child("ensemble"), *so::find_element(so::tag::ensemble), 1);
    std::ostringstream out;
    document.save(out, "", pugi::format_raw, pugi::encoding_utf8);
    return out.str();
}

void random_documents::fill(pugi::xml_node to, const so::element_entry& entry, unsigned depth) {
    attributes(to, entry);
    std::string content;
    switch (entry.content) {
        case so::content_kind::children: return children(to, entry, depth);
        case so::content_kind::text: content = without_outer_line_ends(text()); break;
        case so::content_kind::positions: content = positions(); break;
        case so::content_kind::token_table:
        case so::content_kind::value: break;
    }
    if (!content.empty()) to.append_child(pugi::node_pcdata).set_value(content.c_str());
}

void random_documents::attributes(pugi::xml_node to, const so::element_entry& entry) {
    for (const so::attribute_entry& each : entry.attributes)
        if (always_there(each) || one_in(2)) to.append_attribute(each.name) = value(each).c_str();
}

void random_documents::children(pugi::xml_node to, const so::element_entry& entry, unsigned depth) {
    std::vector<const so::element_entry*> possible;
    for (const so::element_entry& each : so::all_elements())
        if (so::is_in_xml(each) && so::may_stand_in(each, entry.tag)) possible.push_back(&each);
    if (possible.empty()) return;
    pugi::xml_node last_bearer;
    for (unsigned count = below(depth < 2 ? 5 : 4) + (depth < 3 ? 1 : 0); count > 0 && left_ > 0; --count) {
        --left_;
        const so::element_entry& chosen = *possible[below(static_cast<unsigned>(possible.size()))];
        pugi::xml_node made;
        if (chosen.tag == so::tag::service_bearer) {
            // In front, where the encoder would put it.
            made =
                last_bearer ? to.insert_child_after(chosen.name, last_bearer) : to.prepend_child(chosen.name);
            last_bearer = made;
        } else {
            made = to.append_child(chosen.name);
        }
        fill(made, chosen, depth + 1);
    }
}

std::string random_documents::value(const so::attribute_entry& of) {
    switch (of.type) {
        case so::value_type::string:
        case so::value_type::token_string: return text();
        case so::value_type::number16: return std::to_string(below(0x10000));
        case so::value_type::number24: return std::to_string(below(0x1000000));
        case so::value_type::seconds: return so::duration_text(below(0x10000));
        case so::value_type::time: return time();
        case so::value_type::content_id: return content_id();
        case so::value_type::ensemble_id:
            return so::ensemble_id_text(
                {static_cast<std::uint8_t>(below(256)), static_cast<std::uint16_t>(below(0x10000))});
        case so::value_type::genre: return genre();
        case so::value_type::enumeration: return of.names[below(static_cast<unsigned>(of.names.size()))].name;
        case so::value_type::positions: return positions();
    }
    return {};
}

// Up to ten texts; now and then hundreds, whose length takes more than one byte.
std::string random_documents::text() {
    std::string result;
    for (unsigned count = one_in(30) ? 400 : below(10); count > 0; --count)
        result += kTexts[below(std::size(kTexts))];
    return result;
}

std::string random_documents::time() {
    so::time_value value;
    value.mjd = 1 + below(0x1FFFE);
    value.hour = below(24);
    value.minute = below(60);
    if (one_in(3)) value.second = below(60);
    if (one_in(5)) value.millisecond = below(1000);
    if (!one_in(3)) value.offset = static_cast<int>(below(63)) - 31;
    return time_text(value);
}

std::string random_documents::content_id() {
    so::content_id value;
    value.ecc = static_cast<std::uint8_t>(below(256));
    value.eid = static_cast<std::uint16_t>(below(0x10000));
    value.long_sid = one_in(3);
    value.sid = value.long_sid ? below(0x10000) << 16 | below(0x10000) : below(0x10000);
    value.scids = static_cast<std::uint8_t>(below(16));
    if (one_in(4)) value.xpad = static_cast<std::uint8_t>(below(32));
    return content_id_text(value);
}

std::string random_documents::positions() {
    std::vector<so::position> value;
    for (unsigned count = 1 + below(4); count > 0; --count)
        value.push_back({static_cast<std::int32_t>(below(2 * 90 * 92000 + 1)) - 90 * 92000,
                         static_cast<std::int32_t>(below(2 * 180 * 46000 + 1)) - 180 * 46000});
    return positions_text(value);
}

std::string random_documents::genre() {
    so::genre_value value;
    value.scheme = static_cast<std::uint8_t>(1 + below(8));
    for (unsigned count = below(4); count > 0; --count)
        value.levels.push_back(static_cast<std::uint8_t>(below(256)));
    return genre_text(value);
}

std::string canonical(pugi::xml_node element) {
    std::map<std::string, std::string> attributes;
    for (const pugi::xml_attribute each : element.attributes())
        if (each.name() != std::string("xmlns")) attributes[each.name()] = each.value();
    std::string result = "<" + std::string(element.name());
    for (const auto& [name, value] : attributes)
        result += "\n " + name + "=" + length_and(value.c_str());
    result += ">";
    for (const pugi::xml_node each : element.children())
        result += each.type() == pugi::node_element ? "\n" + canonical(each) : length_and(each.value());
    return result + "</" + element.name() + ">";
}
