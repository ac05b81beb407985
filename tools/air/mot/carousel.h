// The carousel of one packet address: from its data groups to MOT objects (EN 301 234), in header mode and in
// directory mode.
//
// Owned by the caller, used on one thread; calls the sink from within take() and finish(). Any bytes are
// legal: what cannot be used is dropped and counted by cause. Times are logical frames (24 ms), counted by
// the caller, never less than before.
//
// - A complete directory replaces the one before; objects that it does not list are gone. One object's body
// stays
//   as long as its header says nothing else.
// - Bodies that come before their directory or header are kept, within a bound.
// - After an hour without directory segments, bodies wait for the directory (7.2.7.7).
// - Bodies compressed with gzip or zlib are unpacked; scrambled objects are left out.
//
// Memory is bounded by carousel_limits::memory, however long the input; the statistics add at most a few
// megabytes. Work is linear in the bytes taken and in what they unpack to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "tools/air/data_groups/data_group.h"
#include "tools/air/mot/carousel_counts.h"
#include "tools/air/mot/carousel_statistics.h"
#include "tools/air/mot/entity_store.h"
#include "tools/air/mot/mot_directory.h"
#include "tools/air/mot/mot_object.h"
#include "tools/air/mot/unpack.h"

namespace dabspi::air {

enum class delivery : std::uint8_t {
    every,  // each time an object was received whole
    once    // each version of it once
};

struct carousel_limits {
    std::size_t memory = std::size_t{16} << 20;    // bytes: bodies, unpacked bodies, headers, directories
    std::size_t unlisted = std::size_t{4} << 20;   // bytes, of these: bodies that nothing lists
    std::size_t unpacked = std::size_t{8} << 20;   // bytes of one body
    std::size_t directory = std::size_t{1} << 20;  // bytes of one directory, unpacked
    std::size_t objects = 8192;       // at a time, while their headers take half of `memory` at most
    std::size_t gone_objects = 1024;  // kept in the statistics
    std::size_t directories = 64;     // kept in the statistics
};

class carousel {
 public:
    // `sink` must outlive the carousel.
    explicit carousel(object_sink& sink, delivery which = delivery::every,
                      const carousel_limits& limits = {});

    // One MSC data group of the address.
    void take(byte_view group, std::uint64_t frame);

    // Nothing follows: hands on what only waited for the end of its round.
    void finish();

    const carousel_counts& counts() const { return counts_; }
    carousel_statistics statistics() const;

 private:
    // An object that there is a header of.
    struct listed_object {
        object_header header;
        bytes header_bytes;  // as sent, without updates
        object_statistics statistics;
        std::size_t memory = 0;
        // Of the body that was looked into last:
        std::uint64_t looked_into = 0;
        std::shared_ptr<const bytes> unpacked;  // where it was compressed; may be null, then it is done again
        std::uint64_t hash = 0;                 // of what makes it news
        std::optional<std::uint64_t> handed_on;
    };
    struct current_directory {
        std::uint16_t transport_id = 0;
        bytes plain;
    };
    using objects_by_id = std::map<std::uint16_t, listed_object>;

    // carousel.cpp: segments
    void take_segment(entity_type type, const data_group& group, std::size_t size);
    void received(entity_type type, std::uint16_t transport_id, mot_entity& entity);
    void drop_scrambled(const data_group& group, std::size_t size);

    // carousel_headers.cpp: header mode
    void received_header(std::uint16_t transport_id, mot_entity& entity);
    void update_header(std::uint16_t transport_id, const object_header& update);
    void leave_directory();

    // carousel_directory.cpp: directory mode
    void received_directory(entity_type type, std::uint16_t transport_id, mot_entity& entity);
    std::optional<bytes> plain_directory(entity_type type, const bytes& entity);
    bool replace_directory(entity_type type, std::uint16_t transport_id, bytes plain);
    std::vector<std::uint16_t> list_entries(mot_directory& read);
    void note_directory(entity_type type, std::uint16_t transport_id, const mot_directory& read);
    void note_changes(const std::vector<std::uint16_t>& listed, const objects_by_id& removed,
                      directory_version& version) const;
    bool has_directory_aged() const;

    // carousel_objects.cpp: objects
    listed_object* find(std::uint16_t transport_id);
    bool has_room_for_objects() const;
    void list(std::uint16_t transport_id, object_header header, byte_view header_bytes);
    void change_header(std::uint16_t transport_id, listed_object& object, object_header header,
                       byte_view header_bytes);
    void set_header(listed_object& object, object_header header, byte_view header_bytes);
    void count_memory(listed_object& object);
    void remove(std::uint16_t transport_id, const listed_object& object);
    void hand_on_waiting();
    void received_body(std::uint16_t transport_id, const mot_entity& entity);
    void hand_on(std::uint16_t transport_id, listed_object& object, const mot_entity& entity);
    carousel_drop look_into(listed_object& object, const mot_entity& entity);
    carousel_drop unpack_body(listed_object& object, const bytes& body);
    bool is_news(listed_object& object);
    object_statistics statistics_of(const listed_object& object) const;

    object_sink& sink_;
    const delivery delivery_;
    const carousel_limits limits_;
    std::uint64_t frame_ = 0;
    carousel_counts counts_;
    entity_store entities_;

    carousel_mode mode_ = carousel_mode::unknown;
    std::optional<current_directory> directory_;
    std::uint64_t directory_segment_ = 0;  // the frame of the last one
    objects_by_id objects_;
    std::deque<std::uint16_t> header_order_;  // header mode: objects by age, oldest first
    std::vector<std::uint16_t> waiting_;      // received, but not handed on: for a header or a directory
    std::size_t objects_memory_ = 0;
    // By the hash of a name that of the version handed on last: another transport identifier alone is no
    // news.
    std::unordered_map<std::uint64_t, std::uint64_t> handed_on_;

    std::deque<object_statistics> gone_;
    std::uint64_t gone_count_ = 0;
    std::deque<directory_version> directories_;
    std::uint64_t directory_versions_ = 0;
    receptions directory_times_;
    std::uint64_t directory_bytes_ = 0;
    std::uint64_t other_bytes_ = 0;
};

}  // namespace dabspi::air
