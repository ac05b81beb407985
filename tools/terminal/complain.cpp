#include "tools/terminal/complain.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {
constexpr std::size_t kMostMessages = 100;
}

void complain(const std::string& text) {
    // Whatever a text was made of: printable() leaves what is printable as it is.
    const std::string line = "dabspi: " + printable(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void complain_of(const std::vector<std::string>& messages, const std::string& what) {
    for (std::size_t i = 0; i < std::min(messages.size(), kMostMessages); ++i)
        complain(messages[i]);
    if (messages.size() > kMostMessages)
        complain("and " + std::to_string(messages.size() - kMostMessages) + " more " + what);
}

void complain_of_output(int error) {
    if (error != EPIPE)
        complain("cannot write to standard output: " + std::generic_category().message(error));
}

}  // namespace dabspi
