// Objects that there are headers of: their bodies, and when they are handed on.
#include <algorithm>
#include <utility>

#include "tools/air/mot/carousel.h"
#include "tools/air/mot/content_hash.h"
#include "tools/air/mot/shortened.h"

namespace dabspi::air {

namespace {

// A header's bytes stand in several forms, and as UTF-8 a name may have three bytes for each.
constexpr std::size_t kFormsOfHeader = 6;
constexpr std::size_t kMemoryOfNode = 64;
// What is unpacked is kept for the next round while all of that takes at most this part of the memory.
constexpr std::size_t kPartForUnpacked = 4;
constexpr std::size_t kMostNamesHandedOn = 32768;

}  // namespace

carousel::listed_object* carousel::find(std::uint16_t transport_id) {
    const auto found = objects_.find(transport_id);
    return found == objects_.end() ? nullptr : &found->second;
}

bool carousel::has_room_for_objects() const {
    return objects_.size() < limits_.objects && objects_memory_ < limits_.memory / 2;
}

void carousel::list(std::uint16_t transport_id, object_header header, byte_view header_bytes) {
    listed_object& object = objects_[transport_id];
    object.statistics.transport_id = transport_id;
    object.statistics.listed = frame_;
    set_header(object, std::move(header), header_bytes);
    mot_entity* const body = entities_.find(entity_type::body, transport_id);
    if (body == nullptr) return;
    if (object.header.scrambled) {
        entities_.erase(entity_type::body, transport_id);
        return;
    }
    entities_.set_listed(*body, true);
    object.statistics.bytes_on_air += body->bytes_on_air;
    other_bytes_ -= body->bytes_on_air;
    object.statistics.before_listing = true;
    if (body->segments.whole()) waiting_.push_back(transport_id);
}

// A body of another size or version than the new header's is void. It may be the new one, which came first.
void carousel::change_header(std::uint16_t transport_id, listed_object& object, object_header header,
                             byte_view header_bytes) {
    const mot_entity* const body = entities_.find(entity_type::body, transport_id);
    const bool other_size = header.body_size != object.header.body_size;
    const bool other_version = header.unique_body_version != object.header.unique_body_version;
    const bool other_object = mode_ == carousel_mode::headers;
    if (body != nullptr && (other_size || other_version || other_object || header.scrambled)) {
        const bool fits = body->segments.whole() && body->segments.body()->size() == header.body_size;
        if (other_size && fits && !header.scrambled) {
            waiting_.push_back(transport_id);
        } else {
            entities_.erase(entity_type::body, transport_id);
        }
    }
    set_header(object, std::move(header), header_bytes);
}

void carousel::set_header(listed_object& object, object_header header, byte_view header_bytes) {
    object.header = std::move(header);
    if (byte_view(object.header_bytes).begin() != header_bytes.begin())
        object.header_bytes.assign(header_bytes.begin(), header_bytes.end());
    object.looked_into = 0;
    object.unpacked.reset();
    object_statistics& statistics = object.statistics;
    statistics.name = shortened(object.header.name.value_or(std::string()));
    statistics.mime_type = shortened(object.header.mime_type);
    statistics.content_type = object.header.content_type;
    statistics.content_subtype = object.header.content_subtype;
    statistics.compressed = object.header.compression.value_or(0) != 0;
    statistics.body_size = object.header.body_size;
    if (object.header.scrambled) statistics.state = object_state::scrambled;
    count_memory(object);
}

void carousel::count_memory(listed_object& object) {
    objects_memory_ -= object.memory;
    object.memory = sizeof object + kMemoryOfNode +
                    (object.unpacked != nullptr ? object.unpacked->capacity() : 0) +
                    kFormsOfHeader * std::max(object.header_bytes.size(), object.header.parameters.size());
    objects_memory_ += object.memory;
    entities_.set_other_memory(objects_memory_);
}

// It is gone, and its body with it.
void carousel::remove(std::uint16_t transport_id, const listed_object& object) {
    gone_.push_back(statistics_of(object));
    gone_.back().gone = frame_;
    if (gone_.size() > limits_.gone_objects) gone_.pop_front();
    ++gone_count_;
    objects_memory_ -= object.memory;
    entities_.set_other_memory(objects_memory_);
    entities_.erase(entity_type::body, transport_id);
}

void carousel::hand_on_waiting() {
    if (waiting_.empty()) return;
    const std::vector<std::uint16_t> waiting = std::exchange(waiting_, {});
    for (const std::uint16_t id : waiting) {
        listed_object* const object = find(id);
        const mot_entity* const body = entities_.find(entity_type::body, id);
        if (object != nullptr && body != nullptr && body->segments.whole()) hand_on(id, *object, *body);
    }
}

void carousel::received_body(std::uint16_t transport_id, const mot_entity& entity) {
    listed_object* const object = find(transport_id);
    if (object == nullptr) {
        counts_.add(carousel_drop::unlisted);
    } else if (directory_ && has_directory_aged()) {
        if (std::find(waiting_.begin(), waiting_.end(), transport_id) == waiting_.end())
            waiting_.push_back(transport_id);
    } else {
        hand_on(transport_id, *object, entity);
    }
}

void carousel::hand_on(std::uint16_t transport_id, listed_object& object, const mot_entity& entity) {
    object_statistics& statistics = object.statistics;
    statistics.cause = look_into(object, entity);
    if (statistics.cause != carousel_drop::count) {
        statistics.state = object_state::unusable;
        counts_.add(statistics.cause);
        return;
    }
    const bool compressed = statistics.compressed;
    const std::shared_ptr<const bytes> body = compressed ? object.unpacked : entity.segments.body();
    statistics.state = object_state::received;
    statistics.unpacked_size = body->size();
    statistics.times.add(frame_);
    ++counts_.objects;
    const bool news = is_news(object);
    if (news) ++statistics.versions;
    if (news || delivery_ == delivery::every)
        sink_.object({transport_id, object.header, body, compressed, frame_, news});
    const std::size_t most = limits_.memory / kPartForUnpacked;
    count_memory(object);
    if (compressed && objects_memory_ > most) {
        object.unpacked.reset();
        count_memory(object);
    }
}

// Why it cannot be used; carousel_drop::count if it can.
carousel_drop carousel::look_into(listed_object& object, const mot_entity& entity) {
    const bytes& body = *entity.segments.body();
    if (body.size() != object.header.body_size) return carousel_drop::body_size;
    if (!object.header.name) return carousel_drop::without_name;
    const bool known = object.looked_into == entity.content_id();
    if (known && object.statistics.cause != carousel_drop::count) return object.statistics.cause;
    if (object.statistics.compressed && (!known || object.unpacked == nullptr)) {
        const carousel_drop cause = unpack_body(object, body);
        if (cause != carousel_drop::count) {
            object.looked_into = entity.content_id();
            return cause;
        }
    }
    if (!known)
        object.hash = version_hash(object.header, object.statistics.compressed ? *object.unpacked : body);
    object.looked_into = entity.content_id();
    return carousel_drop::count;
}

carousel_drop carousel::unpack_body(listed_object& object, const bytes& body) {
    object.unpacked.reset();
    if (object.header.compression != kGzip) return carousel_drop::unknown_compression;
    bytes plain;
    const unpack_fault fault = unpack(body, limits_.unpacked, plain);
    if (fault == unpack_fault::damaged) return carousel_drop::not_unpacked;
    if (fault == unpack_fault::too_large) return carousel_drop::too_large_unpacked;
    plain.shrink_to_fit();
    object.unpacked = std::make_shared<const bytes>(std::move(plain));
    return carousel_drop::count;
}

// Other than what was handed on last of this object, and under its name.
bool carousel::is_news(listed_object& object) {
    if (handed_on_.size() >= kMostNamesHandedOn) handed_on_.clear();
    const auto [by_name, first] = handed_on_.try_emplace(name_hash(object.header), object.hash);
    const bool repeated = object.handed_on == object.hash || (!first && by_name->second == object.hash);
    by_name->second = object.hash;
    object.handed_on = object.hash;
    return !repeated;
}

object_statistics carousel::statistics_of(const listed_object& object) const {
    object_statistics all = object.statistics;
    const mot_entity* const body = entities_.find(entity_type::body, all.transport_id);
    if (body == nullptr) return all;
    all.segments_held = body->segments.segments_held();
    all.segments = body->segments.segments();
    const std::size_t size = body->segments.segment_size();
    if (all.segments == 0 && size != 0) all.segments = (all.body_size + size - 1) / size;
    return all;
}

}  // namespace dabspi::air
