// The library's version text.
#pragma once

#include <string>

namespace spi {

// "Morvex R", the four characters of the revision keyword from position 6, a blank and the build date:
// ("$Rev: 2286 $", "Jul  1 2026 10:29:36") gives "Morvex R2286 Jul  1 2026 10:29:36". A revision of fewer
// than 6 characters throws std::out_of_range.
std::string version_text(const std::string& revision, const std::string& build_date);

}  // namespace spi
