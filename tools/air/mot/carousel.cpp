#include "tools/air/mot/carousel.h"

#include <algorithm>

namespace dabspi::air {

namespace {

constexpr std::uint8_t kCaMessages = 1;
constexpr std::uint8_t kScrambledBody = 5;
constexpr std::size_t kSegmentHeader = 2;

carousel_drop drop_of(group_fault fault) {
    return fault == group_fault::wrong_crc ? carousel_drop::group_crc : carousel_drop::group_ill_formed;
}

}  // namespace

carousel::carousel(object_sink& sink, delivery which, const carousel_limits& limits)
    : sink_(sink), delivery_(which), limits_(limits), entities_(limits.memory, limits.unlisted) {}

void carousel::take(byte_view sent, std::uint64_t frame) {
    frame_ = std::max(frame_, frame);
    ++counts_.groups;
    counts_.bytes += sent.size();
    data_group group;
    const group_fault fault = read_data_group(sent, group);
    if (fault != group_fault::none) {
        counts_.add(drop_of(fault));
        return;
    }
    switch (group.type) {
        case kCaMessages: ++counts_.ca_messages; break;
        case kScrambledBody: drop_scrambled(group, sent.size()); break;
        case static_cast<std::uint8_t>(entity_type::header):
        case static_cast<std::uint8_t>(entity_type::body):
        case static_cast<std::uint8_t>(entity_type::directory):
        case static_cast<std::uint8_t>(entity_type::compressed_directory):
            take_segment(static_cast<entity_type>(group.type), group, sent.size());
            break;
        default: counts_.add(carousel_drop::group_of_other_type);
    }
}

void carousel::drop_scrambled(const data_group& group, std::size_t size) {
    counts_.add(carousel_drop::scrambled);
    listed_object* const object = group.transport_id ? find(*group.transport_id) : nullptr;
    (object != nullptr ? object->statistics.bytes_on_air : other_bytes_) += size;
}

// 5.1.1
void carousel::take_segment(entity_type type, const data_group& group, std::size_t size) {
    if (!group.has_segment || !group.transport_id) {
        counts_.add(carousel_drop::group_without_segment);
        return;
    }
    const std::size_t length = group.data.number(0, kSegmentHeader) & 0x1FFF;
    if (group.data.size() < kSegmentHeader + length) {
        counts_.add(carousel_drop::segment_size);
        return;
    }
    const std::uint16_t id = *group.transport_id;
    listed_object* const object = type == entity_type::body ? find(id) : nullptr;
    if (object != nullptr && object->header.scrambled) {
        drop_scrambled(group, size);
        return;
    }
    if (type == entity_type::header && directory_) {
        if (!has_directory_aged()) {
            counts_.add(carousel_drop::header_beside_directory);
            return;
        }
        leave_directory();
    }
    if (type != entity_type::body) directory_bytes_ += size;
    if (type == entity_type::body)
        (object != nullptr ? object->statistics.bytes_on_air : other_bytes_) += size;
    mot_entity& entity = entities_.get(type, id, type != entity_type::body || object != nullptr);
    entity.bytes_on_air += size;
    const segmented_entity::taken taken =
        entity.segments.take(group.segment, group.last, group.data.part(kSegmentHeader, length));
    if (taken.restarted)
        counts_.add(taken.misfit ? carousel_drop::misfitting_segments : carousel_drop::other_version);
    counts_.add(carousel_drop::memory_limit, entities_.changed(entity));
    mot_entity* const still_held = entities_.find(type, id);
    if (taken.received && still_held != nullptr) received(type, id, *still_held);
    if (type == entity_type::directory || type == entity_type::compressed_directory)
        directory_segment_ = frame_;
}

void carousel::received(entity_type type, std::uint16_t transport_id, mot_entity& entity) {
    switch (type) {
        case entity_type::header: received_header(transport_id, entity); break;
        case entity_type::body: received_body(transport_id, entity); break;
        case entity_type::directory:
        case entity_type::compressed_directory: received_directory(type, transport_id, entity); break;
    }
}

void carousel::finish() {
    std::vector<entity_store::name> names = entities_.names();
    std::stable_partition(names.begin(), names.end(),
                          [](const entity_store::name& of) { return of.type != entity_type::body; });
    for (const entity_store::name& name : names) {
        mot_entity* const entity = entities_.find(name.type, name.transport_id);
        if (entity != nullptr && entity->segments.finish()) received(name.type, name.transport_id, *entity);
    }
}

carousel_statistics carousel::statistics() const {
    carousel_statistics all;
    all.mode = mode_;
    all.counts = counts_;
    for (const auto& [id, object] : objects_)
        all.objects.push_back(statistics_of(object));
    all.gone.assign(gone_.begin(), gone_.end());
    all.gone_count = gone_count_;
    all.directories.assign(directories_.begin(), directories_.end());
    all.directory_versions = directory_versions_;
    all.directory_times = directory_times_;
    all.directory_bytes = directory_bytes_;
    all.other_bytes = other_bytes_;
    all.unlisted_bodies = entities_.unlisted();
    all.memory = entities_.memory();
    return all;
}

}  // namespace dabspi::air
