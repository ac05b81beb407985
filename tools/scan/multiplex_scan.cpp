#include "tools/scan/multiplex_scan.h"

#include <algorithm>

namespace dabspi::scan {

namespace {

// One that says it is somewhere else all the time is listed so often, and no more.
constexpr std::size_t kMostFound = 256;

bool is_same_location(const air::spi_component& a, const air::spi_component& b) {
    return a.sid == b.sid && a.scids == b.scids && a.sub_channel == b.sub_channel && a.address == b.address;
}

}  // namespace

void multiplex_scan::minute(const air::local_minute& begun) {
    if (!first_minute_) first_minute_ = begun;
    last_minute_ = begun;
}

void multiplex_scan::ensemble_changed(const air::ensemble& ensemble) {
    const std::uint64_t frame = reception_.frame_number();
    for (const std::string& each : air::unreadable_spi(ensemble)) {
        const bool known = std::find(unreadable_.begin(), unreadable_.end(), each) != unreadable_.end();
        if (!known && unreadable_.size() < kMostFound) unreadable_.push_back(each);
    }
    for (spi_found& each : spi_) {
        if (each.present) each.last_frame = frame == 0 ? 0 : frame - 1;
        each.present = false;
    }
    for (const air::spi_component& each : air::spi_components(ensemble)) {
        const auto place = std::find_if(spi_.begin(), spi_.end(), [&](const spi_found& found) {
            return is_same_location(found.what, each);
        });
        if (place != spi_.end()) {
            place->what = each;
            place->present = true;
        } else if (spi_.size() < kMostFound) {
            spi_.push_back({each, frame, frame, true});
        }
    }
}

scanned_multiplex multiplex_scan::result() const {
    scanned_multiplex all;
    all.fic = reception_.fic().statistics();
    all.ensemble = reception_.description();
    all.spi = spi_;
    for (spi_found& each : all.spi)
        if (each.present) each.last_frame = reception_.frame_number();
    all.carousels = reception_.carousels();
    all.sub_channels = reception_.sub_channels();
    all.carousels_beyond_limit = reception_.carousels_beyond_limit();
    all.unreadable_spi = unreadable_;
    all.first_minute = first_minute_;
    all.last_minute = last_minute_;
    return all;
}

}  // namespace dabspi::scan
