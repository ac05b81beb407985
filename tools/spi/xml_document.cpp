#include "tools/spi/xml_document.h"

#include <algorithm>
#include <pugixml.hpp>
#include <sstream>

#include "tools/spi/value_problems.h"
#include "tools/text/utf8.h"

namespace dabspi::spi_object {

namespace {

constexpr const char* kNamespace = "http://www.worlddab.org/schemas/spi/31";
// Readers of XML take a carriage return for a line feed, unless it is written as a reference. The writer
// writes references for control characters, but not for this one; so it goes through the writer as a control
// character that no text has any more.
constexpr char kCarriageReturn = '\x01';
constexpr std::string_view kWritten = "&#01;";
constexpr std::string_view kWanted = "&#13;";

class writer {
 public:
    explicit writer(std::vector<xml_note>& notes) : notes_(notes) {}

    void top(pugi::xml_node to, const node& of) {
        to.append_attribute("xmlns") = kNamespace;
        if (const node* language = of.child(tag::default_language))
            to.append_attribute("xml:lang") = text_of(*language).c_str();
        if (const node* id = of.child(tag::default_content_id))
            default_id_ = std::get_if<content_id>(&id->decoded);
        inside(to, of);
        if (default_id_ != nullptr && !default_used_)
            comment(to, "default content ID: " + content_id_text(*default_id_));
    }

 private:
    void inside(pugi::xml_node to, const node& of) {
        for (const node& each : of.children) {
            if (each.kind == node_kind::attribute) {
                attribute(to, each);
            } else {
                element(to, each, of);
            }
        }
        const bool wants_id =
            of.element != nullptr && (of.tag == tag::bearer || of.tag == tag::service_scope);
        if (wants_id && default_id_ != nullptr && of.attribute_at(0x80) == nullptr) {
            to.append_attribute("id") = content_id_text(*default_id_).c_str();
            default_used_ = true;
        }
    }

    void attribute(pugi::xml_node to, const node& of) {
        if (of.attribute == nullptr) return loss(to, of, "an unknown attribute");
        if (std::holds_alternative<std::monostate>(of.decoded))
            return loss(to, of, "a value that means nothing");
        // The top element's language comes from an element of its own, too.
        if (to.attribute(of.name())) return loss(to, of, "a second attribute");
        to.append_attribute(of.name()) = text_of(of).c_str();
    }

    void element(pugi::xml_node to, const node& of, const node& parent) {
        if (of.element == nullptr) return loss(to, of, "an unknown element");
        if (of.tag == tag::text && may_stand_in(*of.element, parent.tag)) {
            if (std::holds_alternative<std::monostate>(of.decoded))
                return loss(to, of, "a value that means nothing");
            to.append_child(pugi::node_pcdata).set_value(in_text(text_of(of)).c_str());
            return;
        }
        if (!is_in_xml(*of.element)) {
            if (!may_stand_in(*of.element, parent.tag))
                return loss(to, of, "an element that does not belong here");
            if (parent.child(of.tag) != &of && of.tag != tag::token_table)
                return loss(to, of, "a second default");
            if (of.tag == tag::default_content_id && std::holds_alternative<std::monostate>(of.decoded))
                return loss(to, of, "a value that means nothing");
            return;  // said otherwise
        }
        pugi::xml_node made = to.append_child(of.name());
        if (!std::holds_alternative<std::monostate>(of.decoded))
            made.append_child(pugi::node_pcdata).set_value(in_text(text_of(of)).c_str());
        inside(made, of);
    }

    void loss(pugi::xml_node to, const node& of, const char* what) {
        comment(to, std::string(what) + ", " + shown_name(of) + ": " + count_of(of.length, "byte") +
                        " at byte " + std::to_string(of.offset));
        notes_.push_back(
            {of.offset, std::string(what) + " (" + shown_name(of) + ") is a comment in the XML"});
    }

    static void comment(pugi::xml_node to, const std::string& text) {
        to.append_child(pugi::node_comment).set_value((" " + text + " ").c_str());
    }

    std::string text_of(const node& of) {
        std::size_t replaced = 0;
        std::string text = xml_safe(value_text(of), replaced);
        if (replaced != 0)
            notes_.push_back({of.content(),
                              shown_name(of) + ": " + count_of(replaced, "character") +
                                  " that XML cannot carry, or bytes that are not UTF-8, replaced by U+FFFD"});
        return text;
    }

    static std::string in_text(std::string text) {
        std::replace(text.begin(), text.end(), '\r', kCarriageReturn);
        return text;
    }

    std::vector<xml_note>& notes_;
    const content_id* default_id_ = nullptr;
    bool default_used_ = false;
};

}  // namespace

std::string xml_safe(std::string_view text, std::size_t& replaced) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const utf8_part part = first_utf8_part(text);
        const char32_t c = part.code_point;
        const bool forbidden =
            (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0xFFFE || c == 0xFFFF;
        if (!part.well_formed || forbidden) {
            result += "\xEF\xBF\xBD";
            ++replaced;
        } else {
            result += text.substr(0, part.length);
        }
        text.remove_prefix(part.length);
    }
    return result;
}

xml_document xml_of(const object& of) {
    xml_document result;
    const auto top = std::find_if(of.tops.begin(), of.tops.end(), [](const node& each) {
        return each.element != nullptr && each.element->parents.empty() && is_in_xml(*each.element);
    });
    if (top == of.tops.end()) return result;
    for (const node& each : of.tops)
        if (&each != &*top)
            result.notes.push_back(
                {each.offset, shown_name(each) + " beside the top element is not in the XML"});

    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    writer(result.notes).top(document.append_child(top->name()), *top);
    std::ostringstream out;
    document.save(out, " ", pugi::format_indent, pugi::encoding_utf8);
    result.text = out.str();
    for (std::size_t at = 0; (at = result.text.find(kWritten, at)) != std::string::npos; at += kWanted.size())
        result.text.replace(at, kWritten.size(), kWanted);
    return result;
}

}  // namespace dabspi::spi_object
