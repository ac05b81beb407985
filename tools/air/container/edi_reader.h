// Reads EDI recordings: AF packets and PF fragments one after another, also in file framing. They may begin
// and end anywhere. After damage a packet is looked for; work stays linear in the input: a CRC over a packet
// that nothing confirms is computed at most once for a byte.
#pragma once

#include "tools/air/container/edi_frame.h"
#include "tools/air/container/frame_source.h"
#include "tools/air/container/input_window.h"
#include "tools/air/container/pf_collector.h"

namespace dabspi::air {

class edi_reader final : public frame_source {
 public:
    explicit edi_reader(input_window& input) : input_(input) {}

    bool next(frame& to) override;
    const container_statistics& statistics() const override { return statistics_; }
    std::uint64_t position() const override { return input_.position(); }

 private:
    bool step(frame& to);
    bool take_packet(std::size_t size, frame& to);
    void take_fragment(std::size_t size);
    bool is_confirmed(std::size_t size);
    void look_on();

    input_window& input_;
    std::size_t pending_ = 0;     // bytes of the packet that was handed on
    std::uint64_t tried_to_ = 0;  // up to there a packet was tried without being confirmed, and was wrong
    bool in_step_ = true;         // what stands here is where the packet before ended
    bool ended_ = false;
    container_statistics statistics_;
    pf_collector fragments_{statistics_};
    edi_frames frames_{statistics_};
};

}  // namespace dabspi::air
