#include "tools/air/packets/group_collector.h"

namespace dabspi::air {

namespace {

// Headers with all fields, the longest end user address, a data field of 8,191 bytes and the CRC (5.3.3).
constexpr std::size_t kLongestGroup = 2 + 2 + 2 + 1 + 15 + 8191 + 2;
constexpr unsigned kContinuityValues = 4;
constexpr std::size_t kAddressesThatKeepMemory = 16;

}  // namespace

void group_collector::take(const packet& taken, std::size_t cells, std::uint64_t unreadable) {
    std::unique_ptr<collected>& slot = by_address_[taken.address];
    if (slot == nullptr) {
        slot = std::make_unique<collected>();
        slot->counts.address = taken.address;
        ++used_;
    }
    collected& at = *slot;
    ++at.counts.packets;
    at.counts.cells += cells;
    if (taken.command) {
        ++counts_.commands;
        ++at.commands;
        return;
    }
    if (at.open && !taken.first) {
        if (!follows(at, taken, unreadable)) {
            const bool repeated = taken.continuity == at.continuity && unreadable == at.unreadable;
            drop(at, repeated ? packet_drop::repeated_packet : packet_drop::lost_packets);
        }
    } else if (at.open) {
        drop(at, follows(at, taken, unreadable) ? packet_drop::unfinished_group : packet_drop::lost_packets);
    }
    at.continuity = taken.continuity;
    at.unreadable = unreadable;
    at.commands = 0;
    if (taken.first) at.open = true;
    append(at, taken);
}

// Command packets may be counted with the data packets of their address or not: both are accepted.
bool group_collector::follows(const collected& at, const packet& taken, std::uint64_t unreadable) {
    if (unreadable - at.unreadable >= kContinuityValues) return false;
    const unsigned step = (taken.continuity + kContinuityValues - at.continuity) % kContinuityValues;
    return step == 1 || (at.commands != 0 && step == (1 + at.commands) % kContinuityValues);
}

void group_collector::append(collected& at, const packet& taken) {
    if (!at.open) {
        counts_.add(packet_drop::without_begin);
        return;
    }
    if (!taken.well_formed) {
        drop(at, packet_drop::ill_formed);
        return;
    }
    if (at.group.size() + taken.useful.size() > kLongestGroup) {
        drop(at, packet_drop::group_too_long);
        return;
    }
    if (held_ + taken.useful.size() > memory_) {
        drop(at, packet_drop::memory_limit);
        return;
    }
    held_ += taken.useful.size();
    at.group.insert(at.group.end(), taken.useful.begin(), taken.useful.end());
    if (!taken.last) return;
    ++counts_.groups;
    ++at.counts.groups;
    sink_.data_group(taken.address, at.group);
    close(at);
}

void group_collector::drop(collected& at, packet_drop cause) {
    counts_.add(cause);
    ++at.counts.groups_dropped;
    close(at);
}

// Its memory is kept for the next group, but not where there are many addresses with one group each.
void group_collector::close(collected& at) {
    held_ -= at.group.size();
    at.open = false;
    at.group.clear();
    if (used_ > kAddressesThatKeepMemory) at.group.shrink_to_fit();
}

void group_collector::finish() {
    for (const auto& at : by_address_)
        if (at != nullptr && at->open) drop(*at, packet_drop::unfinished_group);
}

std::vector<address_counts> group_collector::addresses() const {
    std::vector<address_counts> all;
    for (const auto& at : by_address_)
        if (at != nullptr) all.push_back(at->counts);
    return all;
}

}  // namespace dabspi::air
