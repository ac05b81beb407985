// Header mode (EN 301 234, 7.1): each object has a header of its own, under the transport identifier of its
// body.
#include <utility>

#include "tools/air/mot/carousel.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kMostParameters = 16384;  // bytes, after updates

}  // namespace

void carousel::received_header(std::uint16_t transport_id, mot_entity& entity) {
    const std::uint32_t version = entity.segments.version() + 1;
    const bool repeated = entity.processed == version;
    entity.processed = version;
    const std::shared_ptr<const bytes> sent = entity.segments.body();
    object_header header;
    if (read_object_header(*sent, header) == 0) {
        counts_.add(carousel_drop::header_ill_formed);
        return;
    }
    if (header.is_update()) {
        if (!repeated) update_header(transport_id, header);
        return;
    }
    mode_ = carousel_mode::headers;
    listed_object* const object = find(transport_id);
    if (object != nullptr) {
        if (object->header_bytes != *sent) change_header(transport_id, *object, std::move(header), *sent);
    } else {
        while (!has_room_for_objects() && !header_order_.empty()) {
            const auto oldest = objects_.find(header_order_.front());
            header_order_.pop_front();
            counts_.add(carousel_drop::objects_beyond_limit);
            remove(oldest->first, oldest->second);
            objects_.erase(oldest);
        }
        list(transport_id, std::move(header), *sent);
        header_order_.push_back(transport_id);
    }
    hand_on_waiting();
}

void carousel::update_header(std::uint16_t transport_id, const object_header& update) {
    listed_object* const object = find(transport_id);
    if (object == nullptr) {
        counts_.add(carousel_drop::update_without_object);
        return;
    }
    ++counts_.header_updates;
    object_header updated = object->header;
    apply_update(updated, update);
    if (updated.parameters.size() > kMostParameters) {
        counts_.add(carousel_drop::header_ill_formed);
        return;
    }
    set_header(*object, std::move(updated), object->header_bytes);
}

// The sender has changed from directory mode to header mode.
void carousel::leave_directory() {
    for (const auto& [id, object] : objects_)
        remove(id, object);
    objects_.clear();
    waiting_.clear();
    objects_memory_ -= directory_->plain.capacity();
    directory_.reset();
    entities_.set_other_memory(objects_memory_);
}

}  // namespace dabspi::air
