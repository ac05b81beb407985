#include "tools/encode/mot_header.h"

#include <algorithm>
#include <cstdio>

#include "tools/receiver/receiver_view.h"

namespace dabspi {

namespace {

using spi_object::content_id;
using spi_object::kMinutesOfDay;
using spi_object::node;
using spi_object::object_kind;
using spi_object::time_value;
namespace tag = spi_object::tag;

constexpr std::int64_t kLongestDay = 2 * kMinutesOfDay;

template <class Value>
const Value* attribute_of(const node* of, std::uint8_t attribute) {
    const node* const found = of == nullptr ? nullptr : of->attribute_at(attribute);
    return found == nullptr ? nullptr : std::get_if<Value>(&found->decoded);
}

const node* child_of(const node* of, std::uint8_t element) {
    return of == nullptr ? nullptr : of->child(element);
}

// "w20260302", of local time.
std::string day_part(const time_value& time) {
    std::string day = local_text(time).substr(0, 10);
    day.erase(std::remove(day.begin(), day.end(), '-'), day.end());
    return "w" + day;
}

time_value middle(const time_value& start, const time_value& stop) {
    const auto minutes = [](const time_value& of) {
        return std::int64_t{of.mjd} * kMinutesOfDay + of.hour * 60 + of.minute;
    };
    const std::int64_t length = minutes(stop) - minutes(start);
    time_value result = start;
    if (length < 0 || length > kLongestDay) return result;
    const std::int64_t at = minutes(start) + length / 2;
    result.mjd = static_cast<std::uint32_t>(at / kMinutesOfDay);
    result.hour = static_cast<unsigned>(at % kMinutesOfDay / 60);
    result.minute = static_cast<unsigned>(at % 60);
    return result;
}

std::string service_part(const content_id& id) {
    char text[24];
    std::snprintf(text, sizeof text, id.long_sid ? "d%08X" : "d%04X", static_cast<unsigned>(id.sid));
    std::string part = text;
    if (id.scids != 0) {
        std::snprintf(text, sizeof text, "c%X", unsigned{id.scids});
        part += text;
    }
    return part;
}

void programme_information(const node& epg, mot_header& header) {
    const node* const schedule = epg.child(tag::schedule);
    const node* const scope = child_of(schedule, tag::scope);
    const auto* const start = attribute_of<time_value>(scope, 0x80);
    const auto* const stop = attribute_of<time_value>(scope, 0x81);
    if (start != nullptr) header.scope_start = *start;
    if (stop != nullptr) header.scope_end = *stop;

    const node* const location = child_of(child_of(schedule, tag::programme), tag::location);
    const auto* service = attribute_of<content_id>(child_of(scope, tag::service_scope), 0x80);
    if (service == nullptr) service = attribute_of<content_id>(child_of(location, tag::bearer), 0x80);
    if (service != nullptr) header.scope_id = content_id_text(*service);

    const auto* day = start;
    if (day == nullptr) day = attribute_of<time_value>(child_of(location, tag::time), 0x80);
    if (day != nullptr)
        header.content_name = day_part(start != nullptr && stop != nullptr ? middle(*start, *stop) : *day);
    if (service != nullptr) header.content_name += service_part(*service);
    if (header.content_name.empty()) header.content_name = "epg";
    header.content_name += ".EHB";
}

void group_information(const node& epg, mot_header& header) {
    const auto* const created = attribute_of<time_value>(epg.child(tag::programme_groups), 0x81);
    header.content_name = (created == nullptr ? "groups" : day_part(*created)) + ".EHG";
}

void service_information(const node& top, mot_header& header) {
    const auto* const created = attribute_of<time_value>(&top, 0x81);
    if (created != nullptr) header.content_name = day_part(*created);
    const auto* const ensemble =
        attribute_of<spi_object::ensemble_id>(top.child(tag::ensemble), tag::first_attribute);
    if (ensemble != nullptr) {
        char text[16];
        std::snprintf(text, sizeof text, "d%04X", unsigned{ensemble->eid});
        header.content_name += text;
        header.scope_id = ensemble_id_text(*ensemble);
    }
    header.content_name += ".EHS";
}

}  // namespace

mot_header header_of(const spi_object::object& of) {
    mot_header header;
    header.content_subtype = spi_object::natural_subtype(of);
    if (of.tops.empty()) return header;
    switch (of.kind) {
        case object_kind::service_information: service_information(of.tops.front(), header); break;
        case object_kind::group_information: group_information(of.tops.front(), header); break;
        case object_kind::programme_information:
        case object_kind::unknown: programme_information(of.tops.front(), header); break;
    }
    return header;
}

std::vector<mot_parameter> mot_header::parameters() const {
    std::vector<mot_parameter> all = {{0x0C, "ContentName", content_name}};
    if (scope_start) all.push_back({0x25, "ScopeStart", utc_text(*scope_start)});
    if (scope_end) all.push_back({0x26, "ScopeEnd", utc_text(*scope_end)});
    if (!scope_id.empty()) all.push_back({0x27, "ScopeID", scope_id});
    return all;
}

}  // namespace dabspi
