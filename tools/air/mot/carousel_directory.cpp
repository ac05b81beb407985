// Directory mode (EN 301 234, 7.2): one directory has the headers of all objects.
#include <algorithm>
#include <string_view>
#include <utility>

#include "tools/air/mot/carousel.h"
#include "tools/air/mot/shortened.h"

namespace dabspi::air {

namespace {

constexpr std::uint64_t kDirectoryAges = 150'000;  // frames: an hour (7.2.7.7)
constexpr std::size_t kParametersKept = 16;        // of a directory, in the statistics
constexpr std::size_t kParameterBytesKept = 64;

}  // namespace

bool carousel::has_directory_aged() const {
    return frame_ - directory_segment_ > kDirectoryAges;
}

void carousel::received_directory(entity_type type, std::uint16_t transport_id, mot_entity& entity) {
    const std::uint32_t version = entity.segments.version() + 1;
    const bool looked_into = entity.processed == version;
    const bool is_current = directory_ && directory_->transport_id == transport_id;
    if (!looked_into || (!is_current && !entity.unusable)) {
        entity.processed = version;
        entity.unusable = false;
        const std::shared_ptr<const bytes> sent = entity.segments.body();
        std::optional<bytes> plain = plain_directory(type, *sent);
        const bool repeated = plain && is_current && directory_->plain == *plain;
        entity.unusable = !plain || (!repeated && !replace_directory(type, transport_id, std::move(*plain)));
    }
    if (entity.unusable) return;
    directory_times_.add(frame_);
    directory_segment_ = frame_;
    hand_on_waiting();
}

// Nothing, and the cause counted, if it cannot be used.
std::optional<bytes> carousel::plain_directory(entity_type type, const bytes& entity) {
    if (type == entity_type::directory) {
        if (entity.size() <= limits_.directory) return entity;
        counts_.add(carousel_drop::directory_too_large);
        return std::nullopt;
    }
    compressed_directory compressed;
    if (!read_compressed_directory(entity, compressed)) {
        counts_.add(carousel_drop::directory_ill_formed);
        return std::nullopt;
    }
    bytes plain;
    const unpack_fault fault = compressed.compression == kGzip
                                   ? unpack(compressed.coded, limits_.directory, plain)
                                   : unpack_fault::damaged;
    if (fault == unpack_fault::none) return plain;
    counts_.add(fault == unpack_fault::too_large ? carousel_drop::directory_too_large
                                                 : carousel_drop::directory_not_unpacked);
    return std::nullopt;
}

// False, and nothing is changed, if it is ill-formed.
bool carousel::replace_directory(entity_type type, std::uint16_t transport_id, bytes plain) {
    mot_directory read;
    if (!read_directory(plain, limits_.objects, read)) {
        counts_.add(carousel_drop::directory_ill_formed);
        return false;
    }
    if (read.cut) counts_.add(carousel_drop::objects_beyond_limit, read.objects - read.entries.size());
    note_directory(type, transport_id, read);
    std::vector<bool> stays(std::size_t{1} << 16);
    for (const mot_directory::entry& entry : read.entries)
        stays[entry.transport_id] = true;
    objects_by_id removed;
    for (auto object = objects_.begin(); object != objects_.end();) {
        const auto at = object++;
        if (stays[at->first]) continue;
        remove(at->first, at->second);
        removed.insert(objects_.extract(at));
    }
    header_order_.clear();
    note_changes(list_entries(read), removed, directories_.back());
    if (directory_ && directory_->transport_id != transport_id) {
        entities_.erase(entity_type::directory, directory_->transport_id);
        entities_.erase(entity_type::compressed_directory, directory_->transport_id);
    }
    mode_ = carousel_mode::directory;
    objects_memory_ -= directory_ ? directory_->plain.capacity() : 0;
    directory_ = current_directory{transport_id, std::move(plain)};
    objects_memory_ += directory_->plain.capacity();
    entities_.set_other_memory(objects_memory_);
    return true;
}

// Those that are listed now and were not before.
std::vector<std::uint16_t> carousel::list_entries(mot_directory& read) {
    std::vector<std::uint16_t> added;
    std::vector<bool> seen(std::size_t{1} << 16);
    for (mot_directory::entry& entry : read.entries) {
        const std::uint16_t id = entry.transport_id;
        if (seen[id]) {
            counts_.add(carousel_drop::listed_twice);
            continue;
        }
        seen[id] = true;
        listed_object* const object = find(id);
        if (object != nullptr) {
            if (byte_view(object->header_bytes).text() == entry.bytes.text()) continue;
            directories_.back().changed.add(shortened(entry.header.name.value_or(std::string())));
            change_header(id, *object, std::move(entry.header), entry.bytes);
        } else if (has_room_for_objects()) {
            list(id, std::move(entry.header), entry.bytes);
            added.push_back(id);
        } else {
            counts_.add(carousel_drop::objects_beyond_limit);
        }
    }
    return added;
}

void carousel::note_directory(entity_type type, std::uint16_t transport_id, const mot_directory& read) {
    directory_version version;
    version.frame = frame_;
    version.transport_id = transport_id;
    version.compressed = type == entity_type::compressed_directory;
    version.objects = read.objects;
    version.period_tenths = read.period_tenths;
    version.segment_size = read.segment_size;
    byte_view left = read.parameters;
    while (const auto parameter = take_parameter(left)) {
        if (version.parameters.size() == kParametersKept) break;
        const byte_view value = parameter->value.part(0, kParameterBytesKept);
        version.parameters.emplace_back(parameter->id, bytes(value.begin(), value.end()));
    }
    directories_.push_back(std::move(version));
    if (directories_.size() > std::max<std::size_t>(limits_.directories, 1)) directories_.pop_front();
    ++directory_versions_;
}

// An object with another transport identifier under the name of one that is gone has changed.
void carousel::note_changes(const std::vector<std::uint16_t>& listed, const objects_by_id& removed,
                            directory_version& version) const {
    std::unordered_map<std::string_view, bool> names;  // of those listed now: is it one that is gone?
    for (const std::uint16_t id : listed)
        names.emplace(objects_.at(id).statistics.name, false);
    for (const auto& [id, object] : removed) {
        const auto found = names.find(object.statistics.name);
        if (found == names.end()) {
            version.removed.add(object.statistics.name);
        } else {
            found->second = true;
        }
    }
    for (const std::uint16_t id : listed) {
        const std::string& name = objects_.at(id).statistics.name;
        (names.at(name) ? version.changed : version.added).add(name);
    }
}

}  // namespace dabspi::air
