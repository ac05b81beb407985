#include "tools/air/container/pf_collector.h"

#include <algorithm>

#include "tools/air/crc16.h"

namespace dabspi::air {

namespace {

constexpr std::uint64_t kPatience = 4;          // packets
constexpr std::int32_t kFarAway = 1000;         // packets: a sender that has begun anew
constexpr std::uint64_t kFirstOrder = 1 << 20;  // far from 0, so that the first fragments may come late

// What a repair may cost: a code word for so many bytes received. A packet that asks for more was made to
// cost time.
constexpr std::size_t kBytesForACodeWord = 24;

}  // namespace

// Sequence numbers have 16 bits and begin again; orders do not.
std::uint64_t pf_collector::order_of(std::uint16_t sequence) {
    if (!begun_) {
        begun_ = true;
        newest_ = kFirstOrder + sequence;
        next_ = newest_;
        return newest_;
    }
    const auto step = static_cast<std::int16_t>(sequence - static_cast<std::uint16_t>(newest_));
    return newest_ + static_cast<std::uint64_t>(static_cast<std::int64_t>(step));
}

bool pf_collector::is_usable(const pf_fragment& fragment) const {
    if (fragment.count == 0 || fragment.count > kMostFragments || fragment.index >= fragment.count)
        return false;
    if (fragment.payload.empty() || fragment.count * fragment.payload.size() > kMostSetBytes) return false;
    return !fragment.fec || (fragment.chunk_data != 0 && fragment.chunk_data <= edi_fec::kMostData);
}

bool pf_collector::fits(const set& open, const pf_fragment& fragment) const {
    if (open.count != fragment.count || open.fec != fragment.fec) return false;
    if (open.held + fragment.payload.size() > kMostSetBytes) return false;
    return !open.fec || (open.chunk_data == fragment.chunk_data && open.filling == fragment.filling &&
                         open.size == fragment.payload.size());
}

void pf_collector::add(const pf_fragment& fragment) {
    if (!is_usable(fragment)) {
        ++statistics_.pf_unusable;
        return;
    }
    std::uint64_t order = order_of(fragment.sequence);
    const auto step = static_cast<std::int64_t>(order - newest_);
    if (step > kFarAway || step < -kFarAway) {
        // What is still open is then taken without waiting, and nothing between is missing.
        statistics_.pf_sets_lost += open_.size();
        open_.clear();
        begun_ = false;
        order = order_of(fragment.sequence);
    }
    if (order < next_) {
        ++statistics_.pf_repeated;
        return;
    }
    newest_ = std::max(newest_, order);
    const auto [unit, is_new] = open_.try_emplace(order);
    set& into = unit->second;
    if (is_new) {
        into.count = fragment.count;
        into.fec = fragment.fec;
        into.chunk_data = fragment.chunk_data;
        into.filling = fragment.filling;
        into.size = fragment.payload.size();
    }
    if (!fits(into, fragment)) {
        ++statistics_.pf_unusable;
        return;
    }
    const auto [held, taken] = into.fragments.try_emplace(fragment.index);
    if (!taken) {
        ++statistics_.pf_repeated;
        return;
    }
    held->second.assign(fragment.payload.begin(), fragment.payload.end());
    into.held += fragment.payload.size();
}

byte_view pf_collector::take() {
    while (!open_.empty()) {
        const auto first = open_.begin();
        const bool in_turn = first->first == next_;
        const bool waited = finished_ || newest_ - next_ >= kPatience || open_.size() > kMostSets;
        if (!waited && !(in_turn && first->second.whole())) return {};
        if (!in_turn) {
            statistics_.pf_sets_missing += first->first - next_;
            next_ = first->first;
            continue;
        }
        const set current = std::move(first->second);
        open_.erase(first);
        ++next_;
        statistics_.pf_missing += current.count - current.fragments.size();
        if (current.fec ? put_together_with_fec(current) : put_together(current)) return packet_;
        ++statistics_.pf_sets_lost;
    }
    return {};
}

bool pf_collector::put_together(const set& from) {
    if (!from.whole()) return false;
    packet_.clear();
    for (const auto& [index, bytes] : from.fragments)
        packet_.insert(packet_.end(), bytes.begin(), bytes.end());
    return true;
}

// Byte j of fragment i is byte j * count + i of the block.
bool pf_collector::put_together_with_fec(const set& from) {
    std::vector<std::uint8_t> block(from.size * from.count);
    for (const auto& [index, bytes] : from.fragments)
        for (std::size_t j = 0; j < bytes.size(); ++j)
            block[j * from.count + index] = bytes[j];
    if (from.whole()) {
        if (unpack(from, block, false) && ends_with_crc16(packet_)) return true;
        // Damaged: corrected if that helps, and else handed on for the damage to be counted there.
        if (unpack(from, block, true) && ends_with_crc16(packet_)) {
            ++statistics_.pf_sets_repaired;
            return true;
        }
        return unpack(from, block, false);
    }
    if (!unpack(from, block, true)) return false;
    ++statistics_.pf_sets_repaired;
    return true;
}

// The data of all code words of the block, without the filling; corrected first if that is asked for.
bool pf_collector::unpack(const set& from, const std::vector<std::uint8_t>& block, bool correct) {
    const std::size_t coded = from.chunk_data + edi_fec::kParity;
    const std::size_t words = block.size() / coded;
    if (correct && words > from.held / kBytesForACodeWord + 1) return false;
    packet_.clear();
    for (std::size_t number = 0; number < words; ++number) {
        const std::size_t begin = number * coded;
        edi_fec::code_word word{};
        const auto data = block.begin() + static_cast<std::ptrdiff_t>(begin);
        const auto parity = data + static_cast<std::ptrdiff_t>(from.chunk_data);
        std::copy(data, parity, word.begin());
        std::copy(parity, parity + edi_fec::kParity, word.begin() + edi_fec::kMostData);
        if (correct) {
            std::array<int, edi_fec::kMostData + edi_fec::kParity> missing{};
            std::size_t count = 0;
            for (std::size_t i = 0; i < coded; ++i) {
                const auto fragment = static_cast<std::uint32_t>((begin + i) % from.count);
                if (from.fragments.find(fragment) != from.fragments.end()) continue;
                const std::size_t at = i < from.chunk_data ? i : i + edi_fec::kMostData - from.chunk_data;
                missing[count++] = static_cast<int>(at);
            }
            if (!fec_.repair(word, missing, count)) return false;
        }
        packet_.insert(packet_.end(), word.begin(),
                       word.begin() + static_cast<std::ptrdiff_t>(from.chunk_data));
    }
    if (packet_.size() < from.filling) return false;
    packet_.resize(packet_.size() - from.filling);
    return true;
}

}  // namespace dabspi::air
