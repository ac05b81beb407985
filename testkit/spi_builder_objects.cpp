#include "testkit/spi_builder_objects.h"

namespace spi_builder {

bytes content_id(const service_id& id) {
    return content_id(id.ecc, id.eid, id.sid, id.scids);
}

bytes time_point(const utc_time& time) {
    return time_point(time.day, time.hour, time.minute, time.offset_half_hours, time.fraction);
}

utc_time local_time(std::uint32_t day, unsigned hour, unsigned minute, int offset_half_hours) {
    constexpr std::int64_t day_minutes = 1440;
    const std::int64_t utc = std::int64_t{day} * day_minutes + hour * 60 + minute - offset_half_hours * 30;
    utc_time out;
    out.day = static_cast<std::uint32_t>(utc / day_minutes);
    out.hour = static_cast<unsigned>(utc % day_minutes / 60);
    out.minute = static_cast<unsigned>(utc % 60);
    out.offset_half_hours = offset_half_hours;
    return out;
}

bytes name_elements(const names& name) {
    bytes out;
    const auto add = [&out](std::uint8_t tag, const std::string& value) {
        if (!value.empty()) out = join({out, elem(tag, {text(value)})});
    };
    add(tag::short_name, name.short_name);
    add(tag::medium_name, name.medium_name);
    add(tag::long_name, name.long_name);
    return out;
}

bytes programme(const programme_data& data) {
    std::vector<bytes> parts;
    if (data.short_id) parts.push_back(attr(attribute::programme::short_id, u24(*data.short_id)));
    parts.push_back(name_elements(data.name));
    std::vector<bytes> location = {elem(tag::time, {attr(attribute::time::time, time_point(data.start)),
                                                    attr(attribute::time::duration, u16(data.duration))})};
    for (const service_id& id : data.bearers) {
        location.push_back(elem(tag::bearer, {attr(attribute::bearer::id, content_id(id))}));
    }
    parts.push_back(elem(tag::location, location));
    return elem(tag::programme, parts);
}

bytes schedule(const schedule_data& data) {
    std::vector<bytes> scope;
    if (data.scope_start) scope.push_back(attr(attribute::scope::start_time, time_point(*data.scope_start)));
    if (data.scope_stop) scope.push_back(attr(attribute::scope::stop_time, time_point(*data.scope_stop)));
    if (data.scope) {
        scope.push_back(
            elem(tag::service_scope, {attr(attribute::service_scope::id, content_id(*data.scope))}));
    }
    std::vector<bytes> parts;
    if (!scope.empty()) parts.push_back(elem(tag::scope, scope));
    for (const programme_data& one : data.programmes)
        parts.push_back(programme(one));
    return elem(tag::schedule, parts);
}

bytes pi_object(const std::vector<schedule_data>& schedules, const tokens& table) {
    std::vector<bytes> parts;
    if (!table.empty()) parts.push_back(token_table(table));
    for (const schedule_data& one : schedules)
        parts.push_back(schedule(one));
    return elem(tag::epg, parts);
}

bytes multimedia(const logo_data& data) {
    std::vector<bytes> parts;
    if (!data.mime.empty()) parts.push_back(attr(attribute::multimedia::mime, str(data.mime)));
    if (!data.url.empty()) parts.push_back(attr(attribute::multimedia::url, str(data.url)));
    if (data.type) parts.push_back(attr(attribute::multimedia::type, u8(*data.type)));
    if (data.width) parts.push_back(attr(attribute::multimedia::width, u16(*data.width)));
    if (data.height) parts.push_back(attr(attribute::multimedia::height, u16(*data.height)));
    return elem(tag::multimedia, parts);
}

bytes service(const service_data& data) {
    std::vector<bytes> parts = {name_elements(data.name)};
    for (const service_id& id : data.bearers) {
        parts.push_back(elem(tag::service_bearer, {attr(attribute::service_bearer::id, content_id(id))}));
    }
    for (const logo_data& logo : data.logos) {
        parts.push_back(elem(tag::media_description, {multimedia(logo)}));
    }
    return elem(tag::service, parts);
}

bytes si_object(std::uint8_t ecc, std::uint16_t eid, const std::vector<service_data>& services,
                const tokens& table) {
    std::vector<bytes> ensemble = {attr(attribute::ensemble::id, join({u8(ecc), u16(eid)}))};
    for (const service_data& one : services)
        ensemble.push_back(service(one));
    std::vector<bytes> parts;
    if (!table.empty()) parts.push_back(token_table(table));
    parts.push_back(elem(tag::ensemble, ensemble));
    return elem(tag::service_information, parts);
}

}  // namespace spi_builder
