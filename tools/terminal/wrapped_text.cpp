#include "tools/terminal/wrapped_text.h"

#include <algorithm>

namespace dabspi::check {

std::string wrapped_text(std::string_view text, const std::string& indent) {
    constexpr std::size_t width = 100;
    std::string result;
    std::string line;
    const auto end_line = [&] {
        if (!line.empty()) result += indent + line + "\n";
        line.clear();
    };
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of(" \n"), text.size());
        const std::string_view word = text.substr(0, length);
        if (!line.empty() && indent.size() + line.size() + 1 + word.size() > width) end_line();
        if (!word.empty()) {
            if (!line.empty()) line += ' ';
            line += word;
        }
        text.remove_prefix(length);
        if (text.substr(0, 2) == "\n\n") {
            end_line();
            result += "\n";
        }
        if (!text.empty()) text.remove_prefix(1);
    }
    end_line();
    return result;
}

}  // namespace dabspi::check
