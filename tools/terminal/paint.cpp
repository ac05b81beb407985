#include "tools/terminal/paint.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace dabspi {

namespace {

const char* sequence(ink with) {
    switch (with) {
        case ink::plain: return "";
        case ink::heading: return "\033[1m";
        case ink::faint: return "\033[2m";
        case ink::fault: return "\033[31m";
        case ink::remark: return "\033[33m";
        case ink::receiver: return "\033[36m";
    }
    return "";
}

}  // namespace

std::string paint::operator()(ink with, const std::string& text) const {
    if (!coloured_ || with == ink::plain || text.empty()) return text;
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
