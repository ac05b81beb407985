// A multiplex with an SPI service, frame by frame: its FIC, the SPI sub-channel and, where services have one,
// a sub-channel without sound, in the form of a file.
//
// Owned by the caller, used on one thread. Memory: one frame.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/transmit/fic/fic_writer.h"

namespace dabspi::transmit {

enum class multiplex_form : std::uint8_t { raw, streamed, framed, edi };

class multiplex_writer {
 public:
    // `begin`: UTC of the first frame, milliseconds since 1858-11-17.
    multiplex_writer(const announced_ensemble& of, multiplex_form form, std::int64_t begin);

    // What stands at the beginning of a file of so many frames.
    bytes file_header(std::uint64_t frames) const;

    // The next frame; `spi` has the bytes of its sub-channel.
    void append_frame(bytes& to, byte_view spi);

 private:
    const announced_ensemble of_;
    const multiplex_form form_;
    const std::int64_t begin_;
    fic_writer fic_;
    std::uint64_t count_ = 0;
    std::uint8_t fic_bytes_[kFicBytes];
    bytes silence_;
    bytes eti_;
};

}  // namespace dabspi::transmit
