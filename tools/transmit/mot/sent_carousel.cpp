#include "tools/transmit/mot/sent_carousel.h"

#include <algorithm>

namespace dabspi::transmit {

std::size_t sent_entity::bytes_of_groups() const {
    std::size_t all = 0;
    for (const bytes& each : groups)
        all += each.size();
    return all;
}

void carousel_maker::add(sent_carousel& to, group_type type, std::uint16_t id,
                         std::optional<std::size_t> object, byte_view entity) const {
    to.entities.push_back(
        {type, id, object, entity.size(), segment_groups(type, id, entity, settings_.segment_size)});
}

sent_carousel carousel_maker::make(const std::vector<sent_object>& objects, std::uint32_t period_tenths) {
    std::vector<bytes> headers;
    std::vector<transport_ids::entity> wanted;
    for (const sent_object& each : objects) {
        headers.push_back(header_bytes(each, settings_.charset));
        bytes all = headers.back();
        append_bytes(all, each.sent_body());
        wanted.push_back({each.name, version_of(all)});
    }
    // Identifiers are kept only with a version that can be sent.
    transport_ids next = object_ids_;
    const std::vector<std::uint16_t> ids = next.assign(wanted);
    sent_carousel made;
    if (settings_.mode == carousel_mode::directory) {
        std::vector<directory_entry> entries;
        for (std::size_t i = 0; i < objects.size(); ++i)
            entries.push_back(
                {ids[i],
                 content_name_bytes(*in_charset(objects[i].name, settings_.charset), settings_.charset),
                 headers[i]});
        const bytes directory = directory_bytes(
            std::move(entries), {period_tenths, static_cast<std::uint16_t>(settings_.segment_size)});
        made.directory_size = directory.size();
        transport_ids next_directories = directory_ids_;
        const std::uint16_t id = next_directories.assign({{"directory", version_of(directory)}}).front();
        if (settings_.directory != directory_form::compressed)
            add(made, group_type::directory, id, std::nullopt, directory);
        if (settings_.directory != directory_form::plain)
            add(made, group_type::compressed_directory, id, std::nullopt,
                compressed_directory_bytes(directory));
        directory_ids_ = std::move(next_directories);
    }
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (settings_.mode == carousel_mode::header) add(made, group_type::header, ids[i], i, headers[i]);
        add(made, group_type::body, ids[i], i, objects[i].sent_body());
    }
    object_ids_ = std::move(next);
    return made;
}

}  // namespace dabspi::transmit
