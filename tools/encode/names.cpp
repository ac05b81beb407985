// Names of elements and attributes: what a mistaken name may have meant.

#include <algorithm>

#include "tools/encode/element_encoder.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kLongestName = 40;

// Characters to insert, drop or replace.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0u : 1u)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

}  // namespace

bool is_named(pugi::xml_node element, std::string_view name) {
    const std::string_view written = element.name();
    return written.substr(written.find(':') + 1) == name;
}

std::string similar_name(std::string_view mistaken, const std::vector<std::string>& known) {
    if (mistaken.size() > kLongestName) return {};
    std::string best;
    std::size_t least = 3;  // more mistakes make another name
    for (const std::string& each : known) {
        const std::size_t apart = distance(lower(mistaken), lower(each));
        if (apart < least && apart < each.size()) {
            least = apart;
            best = each;
        }
    }
    return best.empty() ? best : "did you mean " + in_quotes(best) + "?";
}

}  // namespace dabspi
