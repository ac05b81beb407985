// What receivers dump: one sub-channel's bytes in one file, and the FIC in another. Both are read side by
// side, a logical frame at a time; how long one is in the sub-channel's file is said by the FIC.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/air/container/byte_source.h"
#include "tools/air/container/frame_source.h"
#include "tools/air/container/input_window.h"
#include "tools/air/fic/ensemble.h"

namespace dabspi::air {

// The SPI component whose sub-channel a FIC of whole FIBs (of 32 bytes) describes: that with the packet
// address, if one is wanted. Reads no further than it must. Nothing, and `error` filled for the user, if
// there is none.
bool find_dumped_component(byte_view fic, int address, spi_component& found, std::string& error);

class dump_reader final : public frame_source {
 public:
    static constexpr std::size_t kFicOfFrame = 96;

    // `fic` is a whole file; `of` must have a bit rate.
    dump_reader(input_window& sub_channel, std::vector<std::uint8_t> fic, const spi_component& of)
        : input_(sub_channel),
          fic_(std::move(fic)),
          id_(of.sub_channel),
          size_(std::size_t{3} * of.bit_rate) {}

    bool next(frame& to) override;
    const container_statistics& statistics() const override { return statistics_; }
    std::uint64_t position() const override { return input_.position(); }

 private:
    input_window& input_;
    const std::vector<std::uint8_t> fic_;
    const std::uint8_t id_;
    const std::size_t size_;  // of a frame's part
    std::size_t pending_ = 0;
    container_statistics statistics_;
};

}  // namespace dabspi::air
