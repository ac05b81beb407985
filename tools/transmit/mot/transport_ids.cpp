#include "tools/transmit/mot/transport_ids.h"

#include <stdexcept>

namespace dabspi::transmit {

namespace {

constexpr std::size_t kIdentifiers = 1 << 16;
// Room for the version before, and for finding a free one in few steps.
constexpr std::size_t kMostEntities = kIdentifiers / 2 - 1;

}  // namespace

std::vector<std::uint16_t> transport_ids::assign(const std::vector<entity>& next) {
    if (next.size() > kMostEntities)
        throw std::length_error("a carousel has " + std::to_string(kMostEntities) + " objects at most here");
    std::vector<bool> taken(kIdentifiers);
    taken[0] = true;  // some senders use 0 for "none"
    for (const auto& [key, was] : current_)
        taken[was.id] = true;
    std::vector<std::uint16_t> ids(next.size());
    std::map<std::string, given> made;
    for (std::size_t i = 0; i < next.size(); ++i) {
        const auto known = current_.find(next[i].key);
        if (known != current_.end() && known->second.fingerprint == next[i].fingerprint) {
            ids[i] = known->second.id;
        } else {
            std::uint32_t id = (next[i].fingerprint ^ next[i].fingerprint >> 16) & 0xFFFF;
            while (taken[id])
                id = (id + 1) & 0xFFFF;
            taken[id] = true;
            ids[i] = static_cast<std::uint16_t>(id);
        }
        made[next[i].key] = {next[i].fingerprint, ids[i]};
    }
    current_ = std::move(made);
    return ids;
}

}  // namespace dabspi::transmit
