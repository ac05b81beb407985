#include "tools/encode/xml_source.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <set>
#include <utility>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::uint32_t kBehindLastCharacter = 0x110000;
constexpr std::size_t kMostLevels = 12;  // of a path; documents of this standard have eight
constexpr std::size_t kMostOfName = 60;

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// What stands between "encoding=" and its closing quote in the XML declaration.
std::string_view declared_encoding(std::string_view text) {
    if (text.substr(0, 5) != "<?xml") return {};
    text = text.substr(0, text.find("?>"));
    const std::size_t key = text.find("encoding");
    if (key == std::string_view::npos) return {};
    const std::size_t open = text.find_first_of("\"'", key);
    if (open == std::string_view::npos) return {};
    text.remove_prefix(open);
    return text.substr(1, text.find(text.front(), 1) - 1);
}

bool is_utf8_name(std::string_view name) {
    const auto same = [name](std::string_view wanted) {
        return std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(), [](char a, char b) {
            return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
        });
    };
    return name.empty() || same("utf-8") || same("utf8") || same("us-ascii");
}

// Of "#233" or "#xE9"; larger numbers than any character's stay at 0x110000.
std::optional<std::uint32_t> referred_number(std::string_view reference) {
    if (reference.empty() || reference[0] != '#') return std::nullopt;
    const bool hexadecimal = reference.size() > 1 && reference[1] == 'x';
    reference.remove_prefix(hexadecimal ? 2 : 1);
    if (reference.empty()) return std::nullopt;
    std::uint32_t number = 0;
    for (const char c : reference) {
        std::uint32_t digit = 16;
        if (c >= '0' && c <= '9') digit = static_cast<std::uint32_t>(c - '0');
        if (hexadecimal && c >= 'a' && c <= 'f') digit = static_cast<std::uint32_t>(c - 'a') + 10;
        if (hexadecimal && c >= 'A' && c <= 'F') digit = static_cast<std::uint32_t>(c - 'A') + 10;
        if (digit == 16) return std::nullopt;
        number = std::min<std::uint32_t>(number * (hexadecimal ? 16 : 10) + digit, kBehindLastCharacter);
    }
    return number;
}

// The parser under this makes an end of text, broken UTF-8 or another character of other numbers.
bool is_character(std::uint32_t number) {
    return number != 0 && (number < 0xD800 || number > 0xDFFF) && number < kBehindLastCharacter;
}

// Behind a part that holds no references, if one begins here: a comment, a CDATA section, an instruction.
std::size_t behind_section(std::string_view text, std::size_t at) {
    constexpr std::pair<std::string_view, std::string_view> kSections[] = {
        {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    for (const auto& [begin, end] : kSections) {
        if (text.substr(at, begin.size()) != begin) continue;
        const std::size_t closed = text.find(end, at + begin.size());
        return closed == std::string_view::npos ? text.size() : closed + end.size();
    }
    return at;
}

}  // namespace

std::string path_of(pugi::xml_node element) {
    std::string path;
    for (std::size_t level = 0; element && element.type() == pugi::node_element; element = element.parent()) {
        if (++level > kMostLevels) return ".../" + path;
        const std::string_view name = element.name();
        path = std::string(name.substr(0, kMostOfName)) + (name.size() > kMostOfName ? "..." : "") +
               (path.empty() ? "" : "/" + path);
    }
    return path;
}

xml_source::xml_source(std::string text) : text_(std::move(text)) {
    if (text_.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) text_.erase(0, kByteOrderMark.size());
    for (std::size_t at = text_.find('\n'); at != std::string::npos; at = text_.find('\n', at + 1))
        line_begins_.push_back(at + 1);
    if (!check_characters() || !parse() || !check_entities() || !check_attributes()) root_ = {};
}

source_note xml_source::at(pugi::xml_node element, std::string text, std::string remedy) const {
    source_note note = note_at(offset_of(element), std::move(text), std::move(remedy));
    note.where = path_of(element);
    return note;
}

source_note xml_source::at(pugi::xml_node element, pugi::xml_attribute attribute, std::string text,
                           std::string remedy) const {
    const std::string_view name = attribute.name();
    source_note note =
        note_at(static_cast<std::size_t>(name.data() - parsed_.data()), std::move(text), std::move(remedy));
    note.where = path_of(element) + "/@" + std::string(name.substr(0, kMostOfName)) +
                 (name.size() > kMostOfName ? "..." : "");
    return note;
}

bool xml_source::check_characters() {
    const auto first = [this](std::size_t i) {
        return i < text_.size() ? static_cast<unsigned char>(text_[i]) : 0u;
    };
    const bool utf16 = (first(0) == 0xFF && first(1) == 0xFE) || (first(0) == 0xFE && first(1) == 0xFF) ||
                       (text_.size() > 1 && (text_[0] == '\0' || text_[1] == '\0'));
    const std::string encoding(utf16 ? "UTF-16" : declared_encoding(text_));
    if (!is_utf8_name(encoding))
        return refuse(0, "the document is in " + encoding + ", and UTF-8 is needed",
                      "convert it: iconv -f " + encoding + " -t UTF-8, and repair its XML declaration");
    for (std::size_t at = 0; at < text_.size();) {
        const utf8_part part = first_utf8_part(std::string_view(text_).substr(at));
        if (!part.well_formed)
            return refuse(at, "a byte that is not UTF-8", "find out what encoding it is, and convert it");
        if (part.code_point < 0x20 && !is_blank(text_[at])) {
            char name[16];
            std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(part.code_point));
            return refuse(at, std::string("the control character ") + name + " is not allowed in XML",
                          "remove it");
        }
        at += part.length;
    }
    return true;
}

bool xml_source::parse() {
    parsed_ = text_;
    const pugi::xml_parse_result result = document_.load_buffer_inplace(
        parsed_.data(), parsed_.size(), pugi::parse_default | pugi::parse_ws_pcdata_single,
        pugi::encoding_utf8);
    if (!result) {
        std::string what = result.description();
        if (what.rfind("Error ", 0) == 0) what.erase(0, 6);
        return refuse(static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0)),
                      "not well-formed XML: " + what, {});
    }
    root_ = document_.document_element();
    for (pugi::xml_node other = root_.next_sibling(); other; other = other.next_sibling())
        if (other.type() == pugi::node_element) {
            errors_.push_back(at(other, "a second top element", "one document has one; split the file"));
            return false;
        }
    return true;
}

// The parser leaves references that it does not know as they are, so "&nbsp;" would be broadcast.
bool xml_source::check_entities() {
    const std::string_view text = text_;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t behind = behind_section(text, i);
        if (behind != i) {
            i = behind;
            continue;
        }
        if (text[i] == '&') {
            const std::size_t end = text.find(';', i);
            const std::string_view name =
                end == std::string_view::npos ? std::string_view() : text.substr(i + 1, end - i - 1);
            if (name.empty() || name.size() > 40 ||
                name.find_first_of(" \t\r\n<&\"") != std::string_view::npos)
                return refuse(i, "an \"&\" that begins no reference", "write &amp;");
            constexpr std::string_view kKnown[] = {"amp", "lt", "gt", "quot", "apos"};
            const std::optional<std::uint32_t> number = referred_number(name);
            if (!number && std::find(std::begin(kKnown), std::end(kKnown), name) == std::end(kKnown))
                return refuse(i, "the reference &" + std::string(name) + "; is not defined",
                              "write the character itself, or its number (&#160; for a no-break space)");
            if (number && !is_character(*number))
                return refuse(i, "there is no character of the number &" + std::string(name) + ";",
                              "remove it");
        }
        ++i;
    }
    return true;
}

bool xml_source::check_attributes() {
    struct all_elements : pugi::xml_tree_walker {
        const xml_source& source;
        std::vector<source_note>& errors;
        all_elements(const xml_source& from, std::vector<source_note>& to) : source(from), errors(to) {}

        bool for_each(pugi::xml_node& node) override {
            std::set<std::string_view> seen;
            for (const pugi::xml_attribute each : node.attributes()) {
                if (seen.insert(each.name()).second) continue;
                errors.push_back(source.at(node, each, "the attribute is given twice", "remove one"));
                return false;
            }
            return true;
        }
    } walker(*this, errors_);
    document_.traverse(walker);
    return errors_.empty();
}

bool xml_source::refuse(std::size_t offset, std::string text, std::string remedy) {
    errors_.push_back(note_at(offset, std::move(text), std::move(remedy)));
    return false;
}

source_note xml_source::note_at(std::size_t offset, std::string text, std::string remedy) const {
    offset = std::min(offset, text_.size());
    const auto line = std::upper_bound(line_begins_.begin(), line_begins_.end(), offset) - 1;
    source_note note;
    note.line = static_cast<std::size_t>(line - line_begins_.begin()) + 1;
    if (last_place_.line != note.line || last_place_.offset > offset) last_place_ = {note.line, *line, 1};
    for (; last_place_.offset < offset; ++last_place_.offset)
        if ((static_cast<unsigned char>(text_[last_place_.offset]) & 0xC0) != 0x80) ++last_place_.column;
    note.column = last_place_.column;
    note.text = std::move(text);
    note.remedy = std::move(remedy);
    return note;
}

std::size_t xml_source::offset_of(pugi::xml_node element) const {
    const auto begin = static_cast<std::size_t>(std::max<std::ptrdiff_t>(element.offset_debug(), 0));
    return begin == 0 ? 0 : begin - 1;  // the "<"
}

}  // namespace dabspi
