#include "tools/transmit/fic/label.h"

#include <algorithm>

#include "tools/text/ebu_latin.h"
#include "tools/text/utf8.h"

namespace dabspi::transmit {

namespace {

constexpr std::size_t kLabelBytes = 16;
constexpr std::size_t kShortLabel = 8;

std::string_view without_cut_character(std::string_view text) {
    std::size_t end = 0;
    while (end < text.size()) {
        const std::size_t next = end + first_utf8_part(text.substr(end)).length;
        if (next > kLabelBytes) break;
        end = next;
    }
    return text.substr(0, end);
}

}  // namespace

label_field label_of(std::string_view text) {
    label_field made;
    std::string sent;
    if (const std::optional<std::string> latin = utf8_to_ebu_latin(text)) {
        sent = latin->substr(0, kLabelBytes);
    } else {
        made.charset = static_cast<std::uint8_t>(name_charset::utf_8);
        sent = without_cut_character(text);
    }
    const std::size_t short_size = std::min(sent.size(), kShortLabel);
    made.flags = static_cast<std::uint16_t>(0xFFFF << (kLabelBytes - short_size));
    made.characters.assign(sent.begin(), sent.end());
    made.characters.resize(kLabelBytes);
    return made;
}

}  // namespace dabspi::transmit
