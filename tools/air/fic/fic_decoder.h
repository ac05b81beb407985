// Puts the description of an ensemble together from the FIC of its frames, and follows it while it changes:
// FIGs of the current configuration take effect at once; those of the next one are kept until the frame that
// FIG 0/0 names. Another ensemble identifier begins anew.
//
// FIGs are repeated many times a second: one that was read, with nothing changed since, is passed over. One
// thread; any bytes are legal; memory is bounded by the limits of configuration.h.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "tools/air/fic/broadcast_clock.h"
#include "tools/air/fic/configuration.h"
#include "tools/air/fic/ensemble.h"
#include "tools/air/fic/fib.h"
#include "tools/air/fic/organisation_figs.h"
#include "tools/air/frame.h"

namespace dabspi::air {

// What one frame brought.
struct fic_news {
    bool changed = false;                // ask for the description again
    std::optional<local_minute> minute;  // it has begun, or is the first that is known
};

class fic_decoder {
 public:
    fic_news feed(const frame& of);

    // Joined anew each time: to be asked for when something has changed.
    ensemble describe() const;
    const broadcast_clock& clock() const { return clock_; }
    const fic_statistics& statistics() const { return statistics_; }

 private:
    // Bytes of FIGs that were read since anything changed, by their hash.
    struct known_fig {
        std::array<std::uint8_t, 32> bytes;
        std::uint32_t generation = 0;
    };

    void read_fib(byte_view fib);
    void read_fig(const fig& of);
    void read_type_0(byte_view data);
    void read_type_1(byte_view data);
    void read_ensemble(byte_view fields);
    void read_label(std::uint8_t extension, std::uint8_t charset, byte_view rest);
    template <class Map, class Key>
    void put_label(Map& into, const Key& key, std::uint8_t charset, byte_view rest);
    void take(const fig_reading& reading);
    void switch_configuration();
    void begin_anew();
    known_fig& place_of(const fig& of);
    void change();

    configuration current_;
    configuration next_;
    std::optional<std::uint16_t> eid_;
    std::string label_;
    std::map<std::uint32_t, std::string> service_labels_;
    std::map<component_id, std::string> component_labels_;
    broadcast_clock clock_;
    std::optional<local_minute> last_minute_;
    std::optional<std::uint8_t> occurrence_;  // of the announced change: low part of the CIF count
    bool change_announced_ = false;

    std::array<known_fig, 512> known_{};
    std::uint32_t generation_ = 1;
    bool changed_ = false;
    bool read_well_ = false;
    fic_statistics statistics_;
};

}  // namespace dabspi::air
