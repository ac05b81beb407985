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

void multiplex_scan::take(const air::frame& of) {
    const air::fic_news news = fic_.feed(of);
    if (news.minute) {
        if (!first_minute_) first_minute_ = news.minute;
        last_minute_ = news.minute;
    }
    last_frame_ = of.index;
    if (news.changed) look_for_spi(of.index);
    // The carousels follow here: the bytes of the sub-channels in spi_, to packets, data groups and MOT.
}

void multiplex_scan::look_for_spi(std::uint64_t frame) {
    const air::ensemble ensemble = fic_.describe();
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
    all.fic = fic_.statistics();
    all.ensemble = fic_.describe();
    all.spi = spi_;
    for (spi_found& each : all.spi)
        if (each.present) each.last_frame = last_frame_;
    all.unreadable_spi = unreadable_;
    all.first_minute = first_minute_;
    all.last_minute = last_minute_;
    return all;
}

}  // namespace dabspi::scan
