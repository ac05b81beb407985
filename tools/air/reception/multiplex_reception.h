// Receives a multiplex: frames in, the objects of all SPI carousels out, with the broadcast's clock. The FIC
// of a frame is read first, then what it says to be there.
//
// Owned by the caller, used on one thread; calls the sink from within take() and finish(). Any bytes are
// legal. Frames are logical frames of 24 ms, numbered from 0; missing ones are counted on, so numbers are
// times.
//
// - A damaged frame is read like any other: packets have checksums of their own.
// - The last seconds of every sub-channel that may carry SPI are kept. When a component is announced, its
//   carousel begins with these.
// - A carousel follows its component to another place, and goes on after a pause.
//
// Memory: reception_limits::memory for all carousels, their statistics, and at most 512 KiB for each
// sub-channel that may carry SPI (see sub_channel_backlog.h).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "tools/air/fic/fic_decoder.h"
#include "tools/air/frame.h"
#include "tools/air/reception/reception_sink.h"
#include "tools/air/reception/spi_carousel.h"
#include "tools/air/reception/spi_sub_channel.h"
#include "tools/air/reception/sub_channel_backlog.h"

namespace dabspi::air {

struct reception_limits {
    carousel_limits carousel;
    // Bytes. A carousel gets half of what is left of it, and not more than carousel.memory.
    std::size_t memory = std::size_t{32} << 20;
    std::size_t carousels = 8;
};

// What is known of one carousel.
struct carousel_report {
    spi_component component;
    std::uint64_t first_frame = 0;  // in which it was announced
    bool present = false;           // it still is announced
    carousel_statistics carousel;
    address_counts packets;
};

struct sub_channel_report {
    std::uint8_t id = 0;
    packet_counts counts;
};

class multiplex_reception {
 public:
    // `sink` must outlive the reception.
    explicit multiplex_reception(reception_sink& sink, delivery which = delivery::every,
                                 const reception_limits& limits = {});

    // The next frame; its bytes are not needed afterwards.
    void take(const frame& of);
    // Nothing follows: hands on what was waiting for more.
    void finish();

    // The number of the frame that was taken last, and of the logical frames so far.
    std::uint64_t frame_number() const { return frame_; }
    std::uint64_t frames() const { return begun_ ? frame_ + 1 : 0; }

    const fic_decoder& fic() const { return fic_; }
    const ensemble& description() const { return ensemble_; }
    std::vector<carousel_report> carousels() const;  // by place
    // Those with SPI, by their number.
    std::vector<sub_channel_report> sub_channels() const;
    // Announced carousels that were not read, because there were too many at a time.
    std::uint64_t carousels_beyond_limit() const { return beyond_limit_; }

 private:
    struct held_carousel {
        std::unique_ptr<spi_carousel> carousel;
        std::uint64_t first_frame = 0;
        std::uint64_t last_frame = 0;  // of an earlier announcement
        bool present = false;
        bool begins_here = true;  // nothing was read at its place yet
    };
    using carousels_by_place = std::map<carousel_place, held_carousel>;

    void read_sub_channels(const frame& of);
    void follow_ensemble();
    void find_candidates();
    void stop_or_move(const std::vector<spi_component>& announced);
    void begin(const spi_component& announced);
    bool make_room();
    void stop(held_carousel& of);
    void attach(held_carousel& to);
    void read_backlog(spi_carousel& of, spi_sub_channel* live);

    reception_sink& sink_;
    const delivery delivery_;
    const reception_limits limits_;
    std::uint64_t frame_ = 0;
    bool begun_ = false;
    fic_decoder fic_;
    ensemble ensemble_;
    carousels_by_place carousels_;
    std::size_t memory_left_;
    std::uint64_t beyond_limit_ = 0;
    // Frames of backlogs that may be read, one more with each frame: so the work stays linear in the input,
    // however often the FIC announces something else.
    std::uint64_t backlog_credit_ = 16 * sub_channel_backlog::kHalfFrames;
    // By their numbers.
    std::array<bool, 64> is_candidate_{};
    std::array<std::unique_ptr<sub_channel_backlog>, 64> backlogs_;
    std::array<std::unique_ptr<spi_sub_channel>, 64> sub_channels_;
};

}  // namespace dabspi::air
