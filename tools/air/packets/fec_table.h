// One FEC frame of packet mode (EN 300 401, 5.3.5): 94 cells of packets and nine FEC packets, twelve rows of
// RS(204,188). Used on one thread; Reed-Solomon is libfec's.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "tools/air/packets/packet.h"

namespace dabspi::air {

constexpr std::size_t kFecDataCells = 94;
constexpr std::size_t kFecFrameCells = kFecDataCells + kFecPackets;

// What is known of a cell before it is corrected.
enum class cell_state : std::uint8_t {
    readable,  // a packet was read there
    suspect,   // no packet could be read there
    missing    // its logical frame is missing
};

class fec_table {
 public:
    struct result {
        bool complete = false;  // every row is a codeword now
        std::size_t corrected_bytes = 0;
    };

    fec_table();

    // Corrects `cells` (kFecFrameCells * kCell bytes) in place. Rows that cannot be corrected stay as they
    // are. Missing cells are erasures; where that does not suffice, suspect ones are too.
    result correct(std::uint8_t* cells, const std::array<cell_state, kFecFrameCells>& states);

 private:
    static constexpr std::size_t kRows = 12;
    static constexpr std::size_t kDataColumns = 188;
    static constexpr std::size_t kParityColumns = 16;
    static constexpr std::size_t kColumns = kDataColumns + kParityColumns;
    using row = std::array<std::uint8_t, kColumns>;

    struct erased_columns {
        std::array<int, kParityColumns> columns{};
        std::size_t count = 0;
        bool too_many = false;
    };

    static erased_columns erased(std::size_t of_row, const std::array<cell_state, kFecFrameCells>& states,
                                 cell_state least);
    bool correct(row& columns, const erased_columns& erasures);

    struct free_code {
        void operator()(void* code) const;
    };
    std::unique_ptr<void, free_code> code_;
};

}  // namespace dabspi::air
