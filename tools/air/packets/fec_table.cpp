#include "tools/air/packets/fec_table.h"

#include <algorithm>
#include <new>

extern "C" {
#include <fec.h>
}

namespace dabspi::air {

namespace {

constexpr int kSymbolBits = 8;
constexpr int kFieldPolynomial = 0x11D;
constexpr int kFirstRoot = 0;
constexpr int kRootStep = 1;
constexpr int kRoots = 16;
constexpr int kShortenedBy = 51;  // of RS(255,239)
constexpr std::size_t kFecHeader = 2;
constexpr std::size_t kFecPayload = kCell - kFecHeader;

// Where the byte of a row and column stands among the cells (5.3.5.1): data and parity run down the columns.
std::size_t cell_index(std::size_t row, std::size_t column, std::size_t rows, std::size_t data_columns) {
    if (column < data_columns) return column * rows + row;
    const std::size_t parity = (column - data_columns) * rows + row;
    return (kFecDataCells + parity / kFecPayload) * kCell + kFecHeader + parity % kFecPayload;
}

}  // namespace

void fec_table::free_code::operator()(void* code) const {
    free_rs_char(code);
}

fec_table::fec_table()
    : code_(init_rs_char(kSymbolBits, kFieldPolynomial, kFirstRoot, kRootStep, kRoots, kShortenedBy)) {
    if (code_ == nullptr) throw std::bad_alloc();
}

fec_table::result fec_table::correct(std::uint8_t* cells,
                                     const std::array<cell_state, kFecFrameCells>& states) {
    result total;
    total.complete = true;
    for (std::size_t r = 0; r < kRows; ++r) {
        row received;
        for (std::size_t column = 0; column < kColumns; ++column)
            received[column] = cells[cell_index(r, column, kRows, kDataColumns)];
        row corrected = received;
        if (!correct(corrected, erased(r, states, cell_state::missing))) {
            corrected = received;
            if (!correct(corrected, erased(r, states, cell_state::suspect))) {
                total.complete = false;
                continue;
            }
        }
        for (std::size_t column = 0; column < kColumns; ++column) {
            if (corrected[column] == received[column]) continue;
            cells[cell_index(r, column, kRows, kDataColumns)] = corrected[column];
            ++total.corrected_bytes;
        }
    }
    return total;
}

fec_table::erased_columns fec_table::erased(std::size_t of_row,
                                            const std::array<cell_state, kFecFrameCells>& states,
                                            cell_state least) {
    erased_columns all;
    for (std::size_t column = 0; column < kColumns; ++column) {
        if (states[cell_index(of_row, column, kRows, kDataColumns) / kCell] < least) continue;
        if (all.count == kParityColumns) {
            all.too_many = true;
            break;
        }
        all.columns[all.count++] = static_cast<int>(column);
    }
    return all;
}

// libfec counts columns from the first that is sent. It may "correct" columns in front of that, which were
// cut off and are zero by definition: such a row is not a codeword of ours.
bool fec_table::correct(row& columns, const erased_columns& erasures) {
    if (erasures.too_many) return false;
    std::array<int, kParityColumns> positions = erasures.columns;
    const int found =
        decode_rs_char(code_.get(), columns.data(), positions.data(), static_cast<int>(erasures.count));
    if (found < 0) return false;
    const auto end = positions.begin() + std::min<std::ptrdiff_t>(found, kRoots);
    return std::all_of(positions.begin(), end, [](int cell_index) {
        return cell_index >= 0 && cell_index < static_cast<int>(kColumns);
    });
}

}  // namespace dabspi::air
