// The entities of one carousel: headers, bodies and directories that are being collected or held, within a
// bound of memory.
//
// Owned by a carousel, used on its thread. Where there is too much, the entity that was not sent for the
// longest time goes: first of the unlisted bodies, which have a bound of their own, then of the others. All
// work is constant per call, but for the entities that go.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_map>
#include <vector>

#include "tools/air/mot/segmented_entity.h"

namespace dabspi::air {

// Types of data groups (EN 301 234, 5.2.3; EN 300 401, 5.3.3.1).
enum class entity_type : std::uint8_t { header = 3, body = 4, directory = 6, compressed_directory = 7 };

struct mot_entity {
    segmented_entity segments;
    std::uint64_t bytes_on_air = 0;  // of its data groups
    std::uint64_t groups = 0;
    std::uint32_t processed = 0;  // 1 + the version that was looked into; 0: none was
    bool unusable = false;        // that version is of no use

    // Differs for whatever was held under any key.
    std::uint64_t content_id() const { return serial << 32 | segments.version(); }

    // The store's own.
    std::uint64_t serial = 0;
    std::uint32_t key = 0;
    bool listed = true;
    std::size_t memory = 0;
    std::list<mot_entity*>::iterator place;
};

class entity_store {
 public:
    entity_store(std::size_t memory, std::size_t unlisted_memory)
        : most_(memory), most_unlisted_(unlisted_memory) {}

    mot_entity* find(entity_type type, std::uint16_t transport_id);
    const mot_entity* find(entity_type type, std::uint16_t transport_id) const;

    // Makes it if there is none.
    mot_entity& get(entity_type type, std::uint16_t transport_id, bool listed);

    // After it changed: counts its memory anew, and makes place for it. Returns how many entities went; `of`
    // itself is among them if it alone is too large, and must not be used then: check with find().
    std::size_t changed(mot_entity& of);

    void set_listed(mot_entity& of, bool listed);
    void erase(entity_type type, std::uint16_t transport_id);

    struct name {
        entity_type type;
        std::uint16_t transport_id;
    };
    // Of all entities: that which was not sent for the longest time first.
    std::vector<name> names() const;

    // What the carousel keeps elsewhere counts as well.
    void set_other_memory(std::size_t size) { other_ = size; }
    std::size_t memory() const { return other_ + listed_.memory + unlisted_.memory; }
    std::size_t size() const { return all_.size(); }
    std::size_t unlisted() const { return unlisted_.order.size(); }

 private:
    struct group {
        std::list<mot_entity*> order;  // that which was sent last in front
        std::size_t memory = 0;
    };
    static std::uint32_t key_of(entity_type type, std::uint16_t transport_id);
    group& group_of(const mot_entity& of) { return of.listed ? listed_ : unlisted_; }
    void remove(mot_entity& of);
    std::size_t remove_oldest(group& from, const mot_entity& but);

    const std::size_t most_;
    const std::size_t most_unlisted_;
    std::size_t other_ = 0;
    std::uint64_t made_ = 0;
    std::unordered_map<std::uint32_t, mot_entity> all_;
    group listed_;
    group unlisted_;
};

}  // namespace dabspi::air
