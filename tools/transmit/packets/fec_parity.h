// The FEC packets of one FEC frame (EN 300 401, 5.3.5): twelve rows of RS(204,188) over 94 cells of packets.
// Used on one thread; Reed-Solomon is libfec's.
#pragma once

#include <cstdint>
#include <memory>

namespace dabspi::transmit {

class fec_parity {
 public:
    fec_parity();

    // `frame`: 94 cells of packets, and room for the nine FEC packets behind them, which are filled in.
    void append_to(std::uint8_t* frame);

 private:
    struct free_code {
        void operator()(void* code) const;
    };
    std::unique_ptr<void, free_code> code_;
};

}  // namespace dabspi::transmit
