#include "tools/inspect/text_report.h"

#include <algorithm>
#include <cstdio>

#include "src/parse/spi_token_table.h"
#include "tools/inspect/image_header.h"
#include "tools/inspect/receiver_text.h"
#include "tools/spi/texts.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace spi_object;

constexpr std::size_t kHexBytes = 8;   // of a line
constexpr std::size_t kRawBytes = 32;  // of a value that is not understood
constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

std::string hex_of(byte_view from, std::size_t most) {
    std::string text;
    for (std::size_t i = 0; i < std::min(from.size(), most); ++i) {
        char byte[8];
        std::snprintf(byte, sizeof byte, i == 0 ? "%02X" : " %02X", unsigned{from[i]});
        text += byte;
    }
    return text + (from.size() > most ? " ..." : "");
}

// A text as it is coded, its tokens by their names.
std::string coded_text(byte_view from) {
    std::string text = "\"";
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= from.size(); ++i) {
        const bool token = i < from.size() && spi::SpiTokenTable::is_code(from[i]);
        if (!token && i < from.size()) continue;
        text += printable(from.part(begin, i - begin).text());
        if (token) text += token_name(from[i]);
        begin = i + 1;
    }
    return text + "\"";
}

char mark_of(const node& of) {
    switch (of.receiver) {
        case reading::read: return 'r';
        case reading::not_needed: return 'o';
        case reading::passed_over: break;
    }
    return '-';
}

class tree_text {
 public:
    tree_text(byte_view body, const text_style& style) : body_(body), style_(style) {}

    std::string text;

    void head() {
        line_start("offset", "length", style_.hex ? "bytes" : "");
        text += style_.colours(text_colour::faint,
                               "r: the receiver reads it   -: passes over it   o: an earlier one counts") +
                "\n";
    }

    void problem_line(const problem& what) {
        const bool bad = severity_of(what.code) == severity::malformed;
        line_start(std::to_string(what.offset), "", "");
        text += style_.colours(bad ? text_colour::fault : text_colour::remark,
                               std::string(bad ? "malformed: " : "remark: ") + printable(what.text) + " [" +
                                   code_name(what.code) + "]") +
                "\n";
        if (what.receiver.empty()) return;
        line_start("", "", "");
        text += style_.colours(text_colour::receiver, "  the receiver " + printable(what.receiver)) + "\n";
    }

    void node_lines(const node& of, std::size_t depth) {
        const bool leaf = of.children.empty();
        const byte_view all = body_.part(of.offset, of.header + (leaf ? of.length : 0));
        line_start(std::to_string(of.offset), std::to_string(of.length),
                   hex_of(all.part(0, kHexBytes), kHexBytes));
        const std::string value = shown_value(of, body_);
        const std::string shown = std::string(1, mark_of(of)) + " " + std::string(2 * depth, ' ') +
                                  shown_name(of) + (value.empty() ? "" : " " + value);
        text +=
            style_.colours(of.receiver == reading::read ? text_colour::plain : text_colour::faint, shown) +
            "\n";
        if (style_.hex) {
            for (std::size_t at = kHexBytes; at < all.size(); at += kHexBytes) {
                line_start(std::to_string(of.offset + at), "", hex_of(all.part(at, kHexBytes), kHexBytes));
                strip();
                text += "\n";
            }
        }
        for (const problem& each : of.problems)
            if (each.code != problem_code::unknown_tag)
                problem_line(each);  // the node's line says it already
        for (const node& each : of.children)
            node_lines(each, depth + 1);
    }

 private:
    void line_start(const std::string& offset, const std::string& length, const std::string& bytes) {
        const auto right = [this](const std::string& column, std::size_t width) {
            text.append(width - std::min(width, column.size()), ' ');
            text += column;
        };
        right(offset, 8);
        right(length, 8);
        text += "  ";
        if (!style_.hex) return;
        text += bytes;
        text.append(3 * kHexBytes + 1 - std::min(3 * kHexBytes, bytes.size()), ' ');
    }

    void strip() { text.erase(text.find_last_not_of(' ') + 1); }

    byte_view body_;
    const text_style& style_;
};

std::string subtype_text(const inspected_body& of) {
    if (!of.content_type) return "";
    return " (ContentType " + std::to_string(*of.content_type) + ", sub-type " +
           std::to_string(*of.content_subtype) + ")";
}

}  // namespace

std::string shown_value(const node& of, byte_view body) {
    const byte_view content = body.part(of.content(), of.length);
    const bool unknown = of.name() == nullptr && of.kind != node_kind::token;
    if (std::holds_alternative<std::monostate>(of.decoded)) {
        if (unknown)
            return std::string("unknown ") + (of.kind == node_kind::attribute ? "attribute" : "element") +
                   (content.empty() ? "" : ": " + hex_of(content, kRawBytes));
        return of.children.empty() && !content.empty() ? hex_of(content, kRawBytes) : "";
    }
    if (const auto* value = std::get_if<text_value>(&of.decoded)) {
        std::string text = in_quotes(value->text, kNoLimit);
        if (value->tokens) text += " coded " + coded_text(content);
        return text;
    }
    std::string text = printable(value_text(of));
    if (const auto* time = std::get_if<time_value>(&of.decoded)) {
        if (time->offset) text += " = " + utc_text(*time);
    } else if (const auto* number = std::get_if<std::uint32_t>(&of.decoded);
               number != nullptr && of.attribute != nullptr) {
        if (of.attribute->type == value_type::seconds) text += " = " + std::to_string(*number) + " s";
        if (of.attribute->type == value_type::enumeration &&
            enum_text(*of.attribute, static_cast<std::uint8_t>(*number)) != nullptr)
            text += " = " + std::to_string(*number);
    }
    return text;
}

std::string text_report(const object_report& of, const text_style& style) {
    tree_text tree(*of.body->body, style);
    tree.text =
        style.colours(text_colour::heading, heading(*of.body) + subtype_text(*of.body) + ": ") +
        style.colours(of.tree.well_formed() ? text_colour::heading : text_colour::fault, summary(of)) + "\n";
    tree.head();
    for (const problem& each : of.tree.problems)
        tree.problem_line(each);
    for (const node& each : of.tree.tops)
        tree.node_lines(each, 0);
    if (of.tree.omitted != 0)
        tree.text += "  and " + std::to_string(of.tree.omitted) + " more malformed places and remarks\n";
    return tree.text + receiver_text(of, style.colours);
}

std::string text_of_other(const inspected_body& of, const text_style& style) {
    std::string what;
    const std::optional<image_header> image = read_image_header(*of.body);
    if (image) {
        what = std::string(image->kind) + " image";
        if (image->width != 0 || image->height != 0)
            what += ", " + std::to_string(image->width) + "x" + std::to_string(image->height);
    } else {
        what = of.kind == body_kind::image ? "no image of a known kind" : of.what;
    }
    return style.colours(text_colour::heading, heading(of) + subtype_text(of) + ": ") + what + ", " +
           std::to_string(of.body->size()) + " byte" + (of.body->size() == 1 ? "" : "s") + "\n";
}

}  // namespace dabspi
