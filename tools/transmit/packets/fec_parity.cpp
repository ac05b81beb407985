#include "tools/transmit/packets/fec_parity.h"

#include <algorithm>
#include <array>
#include <new>

#include "tools/air/packets/fec_table.h"
#include "tools/air/packets/packet.h"

extern "C" {
#include <fec.h>
}

namespace dabspi::transmit {

namespace {

using air::kCell;

constexpr std::size_t kRows = 12;
constexpr std::size_t kDataColumns = 188;
constexpr std::size_t kParityColumns = 16;
constexpr std::size_t kHeader = 2;
constexpr std::size_t kPayload = kCell - kHeader;
// RS(255,239) over the field 0x11D with the roots 0 to 15, shortened by 51 in front.
constexpr int kSymbolBits = 8;
constexpr int kFieldPolynomial = 0x11D;
constexpr int kShortenedBy = 51;

}  // namespace

void fec_parity::free_code::operator()(void* code) const {
    free_rs_char(code);
}

fec_parity::fec_parity()
    : code_(
          init_rs_char(kSymbolBits, kFieldPolynomial, 0, 1, static_cast<int>(kParityColumns), kShortenedBy)) {
    if (code_ == nullptr) throw std::bad_alloc();
}

void fec_parity::append_to(std::uint8_t* frame) {
    std::uint8_t* const packets = frame + air::kFecDataCells * kCell;
    std::fill_n(packets, air::kFecPackets * kCell, std::uint8_t{0});
    for (std::size_t counter = 0; counter < air::kFecPackets; ++counter) {
        packets[counter * kCell] = static_cast<std::uint8_t>(counter << 2 | air::kFecAddress >> 8);
        packets[counter * kCell + 1] = static_cast<std::uint8_t>(air::kFecAddress & 0xFF);
    }
    std::array<std::uint8_t, kDataColumns> data;
    std::array<std::uint8_t, kParityColumns> parity;
    for (std::size_t row = 0; row < kRows; ++row) {
        for (std::size_t column = 0; column < kDataColumns; ++column)
            data[column] = frame[column * kRows + row];
        encode_rs_char(code_.get(), data.data(), parity.data());
        for (std::size_t column = 0; column < kParityColumns; ++column) {
            const std::size_t at = column * kRows + row;
            packets[at / kPayload * kCell + kHeader + at % kPayload] = parity[column];
        }
    }
}

}  // namespace dabspi::transmit
