#include "tools/check/html_text.h"

#include "tools/text/base64.h"
#include "tools/text/utf8.h"

namespace dabspi::check::html {

namespace {

constexpr std::size_t kMostCharacters = 120;  // of a name; receivers show a few dozen
constexpr std::size_t kMostMarks = 6;         // over one character

// Many marks over one character spread over what stands around: the rest of them is cut.
std::string with_few_marks(std::string_view text) {
    std::string result;
    std::size_t marks = 0;
    while (!text.empty()) {
        const utf8_part part = first_utf8_part(text);
        marks = is_combining(part.code_point) ? marks + 1 : 0;
        if (marks <= kMostMarks) result += text.substr(0, part.length);
        if (marks == kMostMarks + 1) result += "\u2026";
        text.remove_prefix(part.length);
    }
    return result;
}

}  // namespace

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : with_few_marks(printable(text))) {
        switch (c) {
            case '&': result += "&amp;"; break;
            case '<': result += "&lt;"; break;
            case '>': result += "&gt;"; break;
            case '"': result += "&quot;"; break;
            case '\'': result += "&#39;"; break;
            default: result += c; break;
        }
    }
    return result;
}

std::string shortened(std::string_view text) {
    std::size_t at = 0;
    for (std::size_t count = 0; at < text.size(); ++count) {
        if (count == kMostCharacters) return std::string(text.substr(0, at)) + "\xE2\x80\xA6";
        at += first_utf8_part(text.substr(at)).length;
    }
    return std::string(text);
}

std::string from_broadcast(std::string_view text) {
    return "<bdi>" + escaped(shortened(text)) + "</bdi>";
}

std::string link_to(const std::string& id, const std::string& markup) {
    return "<a href=\"#" + id + "\">" + markup + "</a>";
}

std::string data_uri(const char* mime, const bytes& content) {
    return std::string("data:") + mime + ";base64," + encode_base64(content);
}

}  // namespace dabspi::check::html
