#include "tools/scan/scanned_multiplex.h"

namespace dabspi::scan {

const air::carousel_report* scanned_multiplex::carousel_of(const spi_found& component) const {
    for (const air::carousel_report& each : carousels)
        if (each.component.sub_channel == component.what.sub_channel &&
            each.component.address == component.what.address)
            return &each;
    return nullptr;
}

air::packet_counts scanned_multiplex::packets_of(std::uint8_t sub_channel) const {
    for (const air::sub_channel_report& each : sub_channels)
        if (each.id == sub_channel) return each.counts;
    return {};
}

}  // namespace dabspi::scan
