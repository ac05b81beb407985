#include "tools/air/mot/entity_store.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kMemoryOfEntity = sizeof(mot_entity) - sizeof(segmented_entity) + 64;

}  // namespace

std::uint32_t entity_store::key_of(entity_type type, std::uint16_t transport_id) {
    return static_cast<std::uint32_t>(type) << 16 | transport_id;
}

mot_entity* entity_store::find(entity_type type, std::uint16_t transport_id) {
    const auto found = all_.find(key_of(type, transport_id));
    return found == all_.end() ? nullptr : &found->second;
}

const mot_entity* entity_store::find(entity_type type, std::uint16_t transport_id) const {
    const auto found = all_.find(key_of(type, transport_id));
    return found == all_.end() ? nullptr : &found->second;
}

mot_entity& entity_store::get(entity_type type, std::uint16_t transport_id, bool listed) {
    const std::uint32_t key = key_of(type, transport_id);
    const auto [found, made] = all_.try_emplace(key);
    mot_entity& entity = found->second;
    if (made) {
        entity.key = key;
        entity.serial = ++made_;
        entity.listed = listed;
        group& to = group_of(entity);
        entity.place = to.order.insert(to.order.begin(), &entity);
    } else {
        set_listed(entity, listed);
    }
    return entity;
}

std::size_t entity_store::changed(mot_entity& of) {
    group& in = group_of(of);
    in.order.splice(in.order.begin(), in.order, of.place);
    in.memory -= of.memory;
    of.memory = kMemoryOfEntity + of.segments.memory();
    in.memory += of.memory;
    std::size_t removed = 0;
    while (unlisted_.memory > most_unlisted_ && unlisted_.order.size() > (of.listed ? 0U : 1U))
        removed += remove_oldest(unlisted_, of);
    while (memory() > most_ && all_.size() > 1) {
        const bool others_unlisted = unlisted_.order.size() > (of.listed ? 0U : 1U);
        removed += remove_oldest(others_unlisted ? unlisted_ : listed_, of);
    }
    if (memory() > most_ || unlisted_.memory > most_unlisted_) {
        remove(of);
        ++removed;
    }
    return removed;
}

// `but` is the first of its group, so that it is the oldest only where it is alone.
std::size_t entity_store::remove_oldest(group& from, const mot_entity& but) {
    if (from.order.empty() || from.order.back() == &but) return 0;
    remove(*from.order.back());
    return 1;
}

void entity_store::set_listed(mot_entity& of, bool listed) {
    if (of.listed == listed) return;
    group& from = group_of(of);
    of.listed = listed;
    group& to = group_of(of);
    to.order.splice(to.order.begin(), from.order, of.place);
    from.memory -= of.memory;
    to.memory += of.memory;
}

void entity_store::erase(entity_type type, std::uint16_t transport_id) {
    mot_entity* const found = find(type, transport_id);
    if (found != nullptr) remove(*found);
}

std::vector<entity_store::name> entity_store::names() const {
    std::vector<name> all;
    for (const group* of : {&listed_, &unlisted_})
        for (auto entity = of->order.rbegin(); entity != of->order.rend(); ++entity) {
            const std::uint32_t key = (*entity)->key;
            all.push_back({static_cast<entity_type>(key >> 16), static_cast<std::uint16_t>(key & 0xFFFF)});
        }
    return all;
}

void entity_store::remove(mot_entity& of) {
    group& in = group_of(of);
    in.memory -= of.memory;
    in.order.erase(of.place);
    all_.erase(of.key);
}

}  // namespace dabspi::air
