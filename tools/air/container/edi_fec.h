// Forward error correction of PF fragments (TS 102 821): RS(255,207) over the field 0x11D with the roots
// a^1..a^48, shortened by zeros between data and parity. By libfec.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace dabspi::air {

class edi_fec {
 public:
    static constexpr std::size_t kMostData = 207;
    static constexpr std::size_t kParity = 48;
    using code_word = std::array<std::uint8_t, kMostData + kParity>;

    edi_fec();
    ~edi_fec();
    edi_fec(const edi_fec&) = delete;
    edi_fec& operator=(const edi_fec&) = delete;

    // `word` holds the data, zeros up to kMostData, and the parity. `missing` holds the places whose bytes
    // are not known, in its first `count`, which is at most kParity. False: not recoverable.
    bool repair(code_word& word, std::array<int, kMostData + kParity>& missing, std::size_t count) const;

 private:
    void* decoder_;
};

}  // namespace dabspi::air
