// Goes through a multiplex and gathers what is on it.
#pragma once

#include <cstdint>

#include "tools/air/frame.h"
#include "tools/air/reception/multiplex_reception.h"
#include "tools/scan/scanned_multiplex.h"

namespace dabspi::scan {

class multiplex_scan final : private air::reception_sink {
 public:
    // Takes the next frame; its bytes are not kept.
    void take(const air::frame& of) { reception_.take(of); }
    // Nothing follows.
    void finish() { reception_.finish(); }

    // What has been found so far, but for name, form and container.
    scanned_multiplex result() const;

 private:
    void ensemble_changed(const air::ensemble& now) override;
    void minute(const air::local_minute& begun) override;
    // The carousels' own statistics say all that is reported of objects.
    void object(const air::spi_component&, const air::mot_object&) override {}

    air::multiplex_reception reception_{*this, air::delivery::once};
    std::vector<spi_found> spi_;
    std::vector<std::string> unreadable_;
    std::optional<air::local_minute> first_minute_;
    std::optional<air::local_minute> last_minute_;
};

}  // namespace dabspi::scan
