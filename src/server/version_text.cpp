#include "src/server/version_text.h"

namespace spi {

std::string version_text(const std::string& revision, const std::string& build_date) {
    return "Morvex R" + revision.substr(6, 4) + " " + build_date;
}

}  // namespace spi
