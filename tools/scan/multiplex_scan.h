// Goes through a multiplex and gathers what is on it. The layers are asked in their order for each frame: the
// FIC first, then what it says to be there.
#pragma once

#include <cstdint>

#include "tools/air/fic/fic_decoder.h"
#include "tools/air/frame.h"
#include "tools/scan/scanned_multiplex.h"

namespace dabspi::scan {

class multiplex_scan {
 public:
    // Takes the next frame; its bytes are not kept.
    void take(const air::frame& of);

    // What has been found so far, but for name, form and container.
    scanned_multiplex result() const;

 private:
    void look_for_spi(std::uint64_t frame);

    air::fic_decoder fic_;
    std::vector<spi_found> spi_;
    std::vector<std::string> unreadable_;
    std::optional<air::local_minute> first_minute_;
    std::optional<air::local_minute> last_minute_;
    std::uint64_t last_frame_ = 0;
};

}  // namespace dabspi::scan
