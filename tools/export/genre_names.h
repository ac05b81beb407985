// Names of genres, in English.
#pragma once

#include <string>

#include "tools/spi/values.h"

namespace dabspi {

// "Music: Jazz": the names of the first two levels, as far as they are listed here; the URN where not even
// the first is. The schemes are those of TV-Anytime (ETSI TS 102 822-3-1) that TS 102 371 codes.
std::string genre_name(const spi_object::genre_value& of);

}  // namespace dabspi
