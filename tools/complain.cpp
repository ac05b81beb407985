#include "tools/complain.h"

#include <cstdio>

namespace dabspi {

void complain(const std::string& text) {
    const std::string line = "dabspi: " + text + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace dabspi
