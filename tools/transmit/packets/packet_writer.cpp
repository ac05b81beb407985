#include "tools/transmit/packets/packet_writer.h"

#include <algorithm>
#include <array>

#include "tools/air/crc16.h"
#include "tools/air/packets/fec_table.h"
#include "tools/air/packets/packet.h"
#include "tools/transmit/packets/fec_parity.h"

namespace dabspi::transmit {

namespace {

using air::kCell;

constexpr std::size_t kPacketHeader = 3;
constexpr std::size_t kPacketCrc = 2;
constexpr std::size_t kPacketOverhead = kPacketHeader + kPacketCrc;
constexpr std::size_t kShortestField = kCell - kPacketOverhead;
constexpr unsigned kContinuityValues = 4;

// `cells` cells with header, field, filling and CRC.
void put_packet(std::uint8_t* to, std::size_t cells, std::uint32_t header, byte_view useful) {
    const std::size_t size = cells * kCell;
    header |= static_cast<std::uint32_t>(cells - 1) << 22 | static_cast<std::uint32_t>(useful.size());
    to[0] = static_cast<std::uint8_t>(header >> 16);
    to[1] = static_cast<std::uint8_t>(header >> 8);
    to[2] = static_cast<std::uint8_t>(header);
    std::uint8_t* const filling = std::copy(useful.begin(), useful.end(), to + kPacketHeader);
    std::fill(filling, to + size - kPacketCrc, std::uint8_t{0});
    const std::uint16_t crc = air::crc16({to, size - kPacketCrc});
    to[size - 2] = static_cast<std::uint8_t>(crc >> 8);
    to[size - 1] = static_cast<std::uint8_t>(crc);
}

// A padding packet is always the same.
std::array<std::uint8_t, kCell> padding_packet() {
    std::array<std::uint8_t, kCell> made;
    put_packet(made.data(), 1, 0, {});
    return made;
}

}  // namespace

// Gathers what is sent, and has the FEC packets of the FEC frame before once that is whole.
class packet_writer::fec_encoder {
 public:
    std::size_t cells_to_parity() const { return air::kFecDataCells - std::min(cells_, air::kFecDataCells); }
    bool between_frames() const { return cells_ == 0; }

    void took(const std::uint8_t* packet, std::size_t cells) {
        std::copy_n(packet, cells * kCell, frame_.begin() + static_cast<std::ptrdiff_t>(cells_ * kCell));
        cells_ += cells;
        if (cells_ == air::kFecDataCells) parity_.append_to(frame_.data());
    }

    void write_packet(std::uint8_t* to) {
        std::copy_n(frame_.begin() + static_cast<std::ptrdiff_t>(cells_ * kCell), kCell, to);
        if (++cells_ == kCellsOfFrame) cells_ = 0;
    }

 private:
    static constexpr std::size_t kCellsOfFrame = air::kFecDataCells + air::kFecPackets;
    fec_parity parity_;
    std::array<std::uint8_t, kCellsOfFrame * kCell> frame_{};
    std::size_t cells_ = 0;
};

packet_writer::packet_writer(const packet_settings& settings, group_source& source)
    : settings_(settings), source_(source), fec_(settings.fec ? std::make_unique<fec_encoder>() : nullptr) {}

packet_writer::~packet_writer() = default;

void packet_writer::write_frame(std::uint8_t* to) {
    std::size_t room = settings_.frame_size / kCell;
    while (room != 0) {
        std::size_t cells = 1;
        if (fec_ != nullptr && fec_->cells_to_parity() == 0) {
            fec_->write_packet(to);
        } else {
            cells = std::min(room, settings_.packet_size / kCell);
            if (fec_ != nullptr) cells = std::min(cells, fec_->cells_to_parity());
            cells = write_packet(to, cells);
            if (fec_ != nullptr) fec_->took(to, cells);
        }
        to += cells * kCell;
        room -= cells;
        cells_ += cells;
    }
}

std::size_t packet_writer::packets_of_stretch_end() const {
    std::size_t count = (group_.size() + kShortestField - 1) / kShortestField;
    while ((continuity_ + count) % kContinuityValues != 0)
        ++count;
    return count;
}

void packet_writer::begin_group() {
    group_ = source_.next_group();
    sent_ = 0;
    packets_left_ = !group_.empty() && source_.ends_stretch() ? packets_of_stretch_end() : 0;
}

// How many cells the packet has.
std::size_t packet_writer::write_packet(std::uint8_t* to, std::size_t most_cells) {
    if (between_groups()) begin_group();
    if (group_.empty()) {
        static const std::array<std::uint8_t, kCell> padding = padding_packet();
        std::copy(padding.begin(), padding.end(), to);
        return 1;
    }
    const std::size_t left = group_.size() - sent_;
    std::size_t cells = 1;
    std::size_t useful = 0;
    if (packets_left_ != 0) {
        useful = (left + packets_left_ - 1) / packets_left_;
        --packets_left_;
    } else {
        cells = std::min(most_cells, (left + kPacketOverhead + kCell - 1) / kCell);
        useful = std::min(left, cells * kCell - kPacketOverhead);
    }
    const std::uint32_t first = sent_ == 0 ? 1 : 0;
    const std::uint32_t last = useful == left ? 1 : 0;
    put_packet(
        to, cells,
        std::uint32_t{continuity_} << 20 | first << 19 | last << 18 | std::uint32_t{settings_.address} << 8,
        group_.part(sent_, useful));
    continuity_ = static_cast<std::uint8_t>((continuity_ + 1) % kContinuityValues);
    sent_ += useful;
    return cells;
}

bool packet_writer::at_seam() const {
    return between_groups() && continuity_ == 0 && (fec_ == nullptr || fec_->between_frames());
}

}  // namespace dabspi::transmit
