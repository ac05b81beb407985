#include "tools/terminal/colours.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace dabspi {

namespace {

const char* sequence(text_colour with) {
    switch (with) {
        case text_colour::plain: return "";
        case text_colour::heading: return "\033[1m";
        case text_colour::faint: return "\033[2m";
        case text_colour::fault: return "\033[31m";
        case text_colour::remark: return "\033[33m";
        case text_colour::receiver: return "\033[36m";
    }
    return "";
}

}  // namespace

std::string colouring::operator()(text_colour with, const std::string& text) const {
    if (!coloured_ || with == text_colour::plain || text.empty()) return text;
    return sequence(with) + text + "\033[0m";
}

bool wants_colour(const std::string& mode, int descriptor) {
    if (mode != "auto") return mode == "always";
    const char* const no_colour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return ::isatty(descriptor) != 0 && (no_colour == nullptr || *no_colour == '\0') &&
           (terminal == nullptr || std::string_view(terminal) != "dumb");
}

}  // namespace dabspi
