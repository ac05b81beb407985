#include "tools/air/reception/spi_carousel.h"

#include <algorithm>
#include <set>

namespace dabspi::air {

std::vector<spi_component> carousels_announced(const ensemble& in) {
    std::vector<spi_component> all = spi_components(in);
    std::stable_partition(all.begin(), all.end(), [](const spi_component& each) { return each.long_id; });
    std::set<carousel_place> known;
    std::vector<spi_component> carousels;
    for (const spi_component& each : all)
        if (known.insert({each.sub_channel, each.address}).second) carousels.push_back(each);
    return carousels;
}

}  // namespace dabspi::air
