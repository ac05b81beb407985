#include "tools/air/mot/shortened.h"

namespace dabspi::air {

std::string shortened(const std::string& text) {
    constexpr std::size_t kMost = 200;
    if (text.size() <= kMost) return text;
    std::size_t end = kMost;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end) + "...";
}

}  // namespace dabspi::air
