// Reads ETI(NI) recordings: raw (frames of 6,144 bytes), streamed (a length in front of each frame) and
// framed (a count in front of all). They may begin and end anywhere. A synchronisation word counts only if
// another stands where the next frame must begin, or the input ends there.
//
// Where the parts of a frame are is taken from its header if they fit. Checksums are not needed for that;
// they tell of damage once a recording has shown that it has them. Work is linear in the input, memory
// constant.
#pragma once

#include <vector>

#include "tools/air/container/eti_frame.h"
#include "tools/air/container/frame_counter.h"
#include "tools/air/container/frame_source.h"
#include "tools/air/container/input_window.h"

namespace dabspi::air {

enum class eti_form { raw, streamed, framed };

class eti_reader final : public frame_source {
 public:
    eti_reader(input_window& input, eti_form form);

    bool next(frame& to) override;
    const container_statistics& statistics() const override { return statistics_; }
    std::uint64_t position() const override { return input_.position(); }

 private:
    bool find_frame();
    bool begins_frame(byte_view at) const;
    bool is_confirmed();
    std::size_t stated_size(byte_view at) const;
    bool size_of_next(std::size_t& size);
    bool take(frame& to);
    bool same_layout() const;
    bool header_is_damaged();
    bool body_is_damaged();
    void skip_counted(std::size_t count);

    struct unit {
        std::uint8_t id;
        std::uint16_t start;
        std::size_t size;
    };

    input_window& input_;
    const bool raw_;
    const std::size_t prefix_;  // bytes in front of each frame
    bool in_step_ = false;      // the next frame is expected where the one before ended
    std::size_t pending_ = 0;   // bytes of the frame that was handed on
    bool header_crcs_seen_ = false;
    bool body_crcs_seen_ = false;
    eti_frame current_;
    std::vector<unit> layout_;  // of the last frame with a right header CRC
    frame_counter counter_{250};
    container_statistics statistics_;
};

}  // namespace dabspi::air
