#include "tools/terminal/error_messages.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {
constexpr std::size_t kMostMessages = 100;
}

void print_error(const std::string& text) {
    // Whatever a text was made of: printable() leaves what is printable as it is.
    const std::string line = "dabspi: " + printable(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void print_errors(const std::vector<std::string>& messages, const std::string& what) {
    for (std::size_t i = 0; i < std::min(messages.size(), kMostMessages); ++i)
        print_error(messages[i]);
    if (messages.size() > kMostMessages)
        print_error("and " + std::to_string(messages.size() - kMostMessages) + " more " + what);
}

void print_output_error(int error) {
    if (error != EPIPE)
        print_error("cannot write to standard output: " + std::generic_category().message(error));
}

}  // namespace dabspi
