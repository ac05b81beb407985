// Feeds FIGs to a decoder, frame by frame.
#pragma once

#include <string>
#include <vector>

#include "testkit/multiplex/fic_builder.h"
#include "tools/air/fic/fic_decoder.h"

namespace air_tests {

// One after another, three FIBs a frame.
class fic_feeder {
 public:
    fic_feeder& operator()(const std::vector<multiplex_builder::bytes>& figs) {
        const multiplex_builder::bytes all = multiplex_builder::fibs(figs);
        for (std::size_t at = 0; at < all.size(); at += 96) {
            dabspi::air::frame each;
            each.fic = dabspi::air::byte_view(all).part(at, 96);
            last = decoder.feed(each);
            changed = changed || last.changed;
            if (last.minute) minutes.push_back(dabspi::air::minute_text(*last.minute));
        }
        return *this;
    }
    dabspi::air::ensemble described() const { return decoder.describe(); }
    std::vector<dabspi::air::spi_component> spi() const { return spi_components(decoder.describe()); }

    dabspi::air::fic_decoder decoder;
    dabspi::air::fic_news last;
    bool changed = false;
    std::vector<std::string> minutes;
};

}  // namespace air_tests
