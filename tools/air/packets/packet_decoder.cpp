#include "tools/air/packets/packet_decoder.h"

#include <algorithm>

#include "tools/air/crc16.h"

namespace dabspi::air {

namespace {

// Bytes taken at a time: bounds the memory, whatever is fed in one call.
constexpr std::size_t kPortion = 4096;
// A longer gap is passed over: no FEC frame reaches across it.
constexpr std::size_t kLongestGap = 2 * kFecFrameCells * kCell;
// An FEC packet is known by 16 bits alone. Two agree by chance where a set is expected, five anywhere, less
// often than a CRC is right by chance.
constexpr std::size_t kSeenWhereExpected = 2;
constexpr std::size_t kSeenAnywhere = 5;
// After so many sets that are absent, none is expected until one is found.
constexpr unsigned kAbsentAtMost = 3;

}  // namespace

packet_decoder::packet_decoder(data_group_sink& sink, packet_fec fec, const packet_limits& limits)
    : groups_(sink, counts_, limits.groups), fec_(fec) {}

void packet_decoder::feed(byte_view bytes) {
    while (!bytes.empty()) {
        append(bytes.part(0, kPortion), false);
        bytes = bytes.part(kPortion);
    }
}

void packet_decoder::missing(std::size_t size) {
    if (size > kLongestGap) {
        skip(size);
    } else {
        append_missing(size);
    }
}

void packet_decoder::append_missing(std::size_t size) {
    const std::array<std::uint8_t, kCell> zeros{};
    for (; size != 0; size -= std::min(size, kCell))
        append({zeros.data(), std::min(size, kCell)}, true);
}

void packet_decoder::append(byte_view bytes, bool are_missing) {
    if (bytes.empty()) return;
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    part_missing_ = part_missing_ || are_missing;
    while (bytes_.size() >= (end_ - base_ + 1) * kCell) {
        missing_.push_back(part_missing_ ? 1 : 0);
        part_missing_ = are_missing;
        ++end_;
        if (fec_ != packet_fec::none) complete_cell();
    }
    if (bytes_.size() == (end_ - base_) * kCell) part_missing_ = false;
    read(end_, unreadable::wait);
    discard_old_cells();
}

// With FEC: another cell is there, the last one.
void packet_decoder::complete_cell() {
    const std::uint64_t cell = end_ - 1;
    const std::size_t seen = fec_packets_seen(cell);
    read(end_, unreadable::wait);
    if (seen >= kSeenAnywhere || (expected_ != 0 && cell == expected_)) end_fec_frame(cell, seen);
    // The FEC frame of what is held back is over, and no FEC packets were found in it.
    while (held_ && end_ - next_ >= kFecFrameCells) {
        held_ = false;
        drop_cell();
        read(end_, unreadable::wait);
    }
}

// Counts an FEC packet in `cell` for its set. How many were seen of the set that ends here.
std::size_t packet_decoder::fec_packets_seen(std::uint64_t cell) {
    const int counter = missing_[cell - base_] != 0 ? -1 : fec_packet_counter(cells(cell, 1));
    if (counter >= 0) {
        const std::uint64_t end = cell + kFecPackets - 1 - static_cast<std::uint64_t>(counter);
        fec_candidate& candidate = candidates_[end % candidates_.size()];
        if (candidate.end != end) candidate = {end, 0};
        ++candidate.seen;
    }
    const fec_candidate& ends_here = candidates_[cell % candidates_.size()];
    return ends_here.end == cell ? ends_here.seen : 0;
}

void packet_decoder::end_fec_frame(std::uint64_t last_cell, std::size_t seen) {
    const bool was_expected = last_cell == expected_;
    const bool found = seen >= (was_expected ? kSeenWhereExpected : kSeenAnywhere);
    expected_ = last_cell;
    if (found) {
        ++counts_.fec_sets;
        absent_ = 0;
        if (held_) repair(last_cell);
    } else if (!any_missing(last_cell + 1 - kFecPackets, last_cell)) {
        ++counts_.fec_sets_absent;
        ++absent_;
    }
    held_ = false;
    read(last_cell + 1, unreadable::drop);
    expected_ = absent_ < kAbsentAtMost ? last_cell + kFecFrameCells : 0;
}

void packet_decoder::repair(std::uint64_t last_cell) {
    ++counts_.fec_sets_used;
    std::array<std::uint8_t, kFecFrameCells * kCell> frame{};
    std::array<std::uint8_t, kFecFrameCells> missing{};
    std::array<cell_state, kFecFrameCells> states{};
    states.fill(cell_state::suspect);
    // The frame may have begun before the input did.
    const std::uint64_t present = std::min<std::uint64_t>(kFecFrameCells, last_cell + 1 - base_);
    const std::size_t begin = kFecFrameCells - static_cast<std::size_t>(present);
    const std::uint64_t first_cell = last_cell + 1 - present;
    std::fill(missing.begin(), missing.begin() + static_cast<std::ptrdiff_t>(begin), std::uint8_t{1});
    const byte_view held = cells(first_cell, static_cast<std::size_t>(present));
    std::copy(held.begin(), held.end(), frame.begin() + static_cast<std::ptrdiff_t>(begin * kCell));
    for (std::size_t i = begin; i < kFecFrameCells; ++i)
        missing[i] = missing_[first_cell + (i - begin) - base_];

    for (std::size_t i = 0; i < kFecFrameCells;) {
        const std::uint8_t* const at = frame.data() + i * kCell;
        const bool was_read = i >= begin && first_cell + (i - begin) < next_ && i < kFecDataCells;
        std::size_t readable = was_read ? 1 : 0;
        if (!was_read && i < kFecDataCells)
            readable = readable_cells(at, missing.data() + i, kFecDataCells - i);
        if (i >= kFecDataCells && fec_packet_counter({at, kCell}) == static_cast<int>(i - kFecDataCells))
            readable = 1;
        for (std::size_t n = 0; n < readable; ++n)
            states[i + n] = cell_state::readable;
        i += std::max<std::size_t>(readable, 1);
    }
    for (std::size_t i = 0; i < kFecFrameCells; ++i)
        if (missing[i] != 0) states[i] = cell_state::missing;

    if (table_ == nullptr) table_ = std::make_unique<fec_table>();
    const fec_table::result result = table_->correct(frame.data(), states);
    if (result.complete) ++counts_.fec_sets_repaired;
    counts_.repaired_bytes += result.corrected_bytes;
    for (std::size_t i = begin; i < kFecFrameCells; ++i) {
        const std::size_t in_buffer = static_cast<std::size_t>(first_cell - base_) + (i - begin);
        if (first_cell + (i - begin) < next_) continue;  // read before; FEC packets are not looked at again
        std::copy_n(frame.data() + i * kCell, kCell,
                    bytes_.begin() + static_cast<std::ptrdiff_t>(in_buffer * kCell));
        if (result.complete) missing_[in_buffer] = 0;
    }
}

bool packet_decoder::any_missing(std::uint64_t first, std::uint64_t last) const {
    for (std::uint64_t cell = std::max(first, base_); cell <= last; ++cell)
        if (missing_[cell - base_] != 0) return true;
    return false;
}

bool packet_decoder::is_fec_place(std::uint64_t cell) const {
    return expected_ != 0 && cell <= expected_ && cell + kFecPackets > expected_;
}

void packet_decoder::read(std::uint64_t end, unreadable what) {
    while (!held_ && next_ < end && read_at_next(end, what)) {
    }
}

// False: what is there has to wait.
bool packet_decoder::read_at_next(std::uint64_t end, unreadable what) {
    const std::size_t at = static_cast<std::size_t>(next_ - base_);
    const std::uint8_t* const bytes = bytes_.data() + at * kCell;
    const std::size_t there = static_cast<std::size_t>(end - next_);
    if (missing_[at] == 0 && fec_packet_counter({bytes, kCell}) >= 0) {
        ++counts_.fec_packets;
        ++counts_.cells;
        ++next_;
        return true;
    }
    const std::size_t readable = readable_cells(bytes, missing_.data() + at, there);
    if (readable != 0) {
        const packet taken = read_packet({bytes, readable * kCell});
        ++counts_.packets;
        counts_.cells += readable;
        next_ += readable;
        if (taken.address == kPaddingAddress) {
            ++counts_.padding;
        } else {
            groups_.take(taken, readable, unreadable_);
        }
        return true;
    }
    if (is_fec_place(next_)) {  // an FEC packet that is damaged or missing: no packet of anybody is lost
        if (what == unreadable::wait) return false;
        ++counts_.cells;
        ++next_;
        return true;
    }
    if (what == unreadable::wait && missing_[at] == 0 && cells_of_packet(bytes[0]) > there) return false;
    if (what == unreadable::wait && fec_ != packet_fec::none) {
        held_ = true;
        return false;
    }
    drop_cell();
    return true;
}

// Cells of the packet that begins at `at`; 0 if there is none, or not as a whole.
std::size_t packet_decoder::readable_cells(const std::uint8_t* at, const std::uint8_t* missing,
                                           std::size_t cells) const {
    const std::size_t claimed = cells_of_packet(*at);
    if (claimed > cells || std::any_of(missing, missing + claimed, [](std::uint8_t is) { return is != 0; }))
        return 0;
    return ends_with_crc16({at, claimed * kCell}) ? claimed : 0;
}

void packet_decoder::drop_cell() {
    counts_.add(missing_[next_ - base_] != 0 ? packet_drop::missing_cell : packet_drop::wrong_crc);
    ++counts_.cells;
    ++unreadable_;
    ++next_;
}

void packet_decoder::discard_old_cells() {
    const std::uint64_t history = fec_ == packet_fec::none ? 0 : kFecFrameCells;
    const std::uint64_t keep = std::max(base_, std::min(next_, end_ - std::min(end_, history)));
    const auto old = static_cast<std::ptrdiff_t>(keep - base_);
    if (keep != end_ && old < static_cast<std::ptrdiff_t>(kFecFrameCells)) return;
    bytes_.erase(bytes_.begin(), bytes_.begin() + old * static_cast<std::ptrdiff_t>(kCell));
    missing_.erase(missing_.begin(), missing_.begin() + old);
    base_ = keep;
}

byte_view packet_decoder::cells(std::uint64_t first, std::size_t count) const {
    return byte_view(bytes_).part(static_cast<std::size_t>(first - base_) * kCell, count * kCell);
}

// A gap that no FEC frame reaches across. Cells are counted on, so that the next set is expected in its
// place.
void packet_decoder::skip(std::size_t size) {
    const std::size_t part = bytes_.size() - static_cast<std::size_t>(end_ - base_) * kCell;
    held_ = false;
    read(end_, unreadable::drop);
    const std::uint64_t skipped = (size + part) / kCell;
    counts_.cells += skipped;
    counts_.add(packet_drop::missing_cell, skipped);
    unreadable_ += skipped;
    end_ += skipped;
    next_ = base_ = end_;
    missing_.clear();
    bytes_.assign((size + part) % kCell, 0);
    part_missing_ = !bytes_.empty();
    if (expected_ != 0 && expected_ < end_)
        expected_ += (end_ - expected_ + kFecFrameCells - 1) / kFecFrameCells * kFecFrameCells;
}

void packet_decoder::set_fec(packet_fec fec) {
    fec_ = fec;
    if (fec_ != packet_fec::none) return;
    held_ = false;
    expected_ = 0;
    absent_ = 0;
    candidates_.fill({});
    read(end_, unreadable::wait);
}

void packet_decoder::finish() {
    // Of the last set of FEC packets some may be there.
    if (held_ && expected_ >= end_ && expected_ - end_ < kFecPackets) {
        const std::size_t part = bytes_.size() - static_cast<std::size_t>(end_ - base_) * kCell;
        append_missing(static_cast<std::size_t>(expected_ + 1 - end_) * kCell - part);
    }
    held_ = false;
    read(end_, unreadable::drop);
    groups_.finish();
    bytes_.clear();
    missing_.clear();
    part_missing_ = false;
    base_ = next_ = end_;
    expected_ = 0;
    absent_ = 0;
    candidates_.fill({});
}

}  // namespace dabspi::air
