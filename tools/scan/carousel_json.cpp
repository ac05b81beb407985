// What is on an SPI carousel, for scripts.
#include <nlohmann/json.hpp>

#include "tools/scan/report.h"
#include "tools/scan/verdict.h"
#include "tools/text/hexadecimal.h"

namespace dabspi::scan {

namespace {

using nlohmann::ordered_json;

const char* mode_key(air::carousel_mode mode) {
    switch (mode) {
        case air::carousel_mode::headers: return "headers";
        case air::carousel_mode::directory: return "directory";
        case air::carousel_mode::unknown: break;
    }
    return "unknown";
}

const char* state_key(air::object_state state) {
    switch (state) {
        case air::object_state::incomplete: return "incomplete";
        case air::object_state::received: return "received";
        case air::object_state::scrambled: return "scrambled";
        case air::object_state::unusable: return "unusable";
    }
    return "";
}

template <class Frames>
ordered_json seconds_if(const std::optional<Frames>& of) {
    return of ? ordered_json(air::seconds_of(*of)) : ordered_json();
}

ordered_json receptions_json(const air::receptions& of) {
    ordered_json json = {{"times", of.count}};
    if (of.count == 0) return json;
    json["first_frame"] = of.first;
    json["first_seconds"] = air::seconds_of(of.first);
    json["last_frame"] = of.last;
    json["mean_interval_seconds"] = seconds_if(of.mean_interval());
    json["longest_interval_seconds"] = air::seconds_of(of.longest_interval);
    return json;
}

ordered_json object_json(const air::object_statistics& of, std::uint64_t bytes_of_all) {
    ordered_json json = {{"transport_id", of.transport_id},
                         {"name", of.name},
                         {"kind", kind_words(of)},
                         {"content_type", of.content_type},
                         {"content_subtype", of.content_subtype},
                         {"size", of.body_size},
                         {"compressed", of.compressed},
                         {"segments_received", of.segments_held},
                         {"segments", of.segments == 0 ? ordered_json() : ordered_json(of.segments)},
                         {"state", state_key(of.state)}};
    if (!of.mime_type.empty()) json["mime_type"] = of.mime_type;
    if (of.state == air::object_state::unusable) json["cause"] = words_of(of.cause).key;
    if (of.state == air::object_state::received && of.compressed) json["unpacked_size"] = of.unpacked_size;
    json.update(receptions_json(of.times));
    json["versions"] = of.versions;
    json["listed_frame"] = of.listed;
    if (of.gone) json["gone_frame"] = *of.gone;
    json["bytes_on_air"] = of.bytes_on_air;
    json["share_percent"] =
        bytes_of_all == 0 ? 0
                          : 100.0 * static_cast<double>(of.bytes_on_air) / static_cast<double>(bytes_of_all);
    return json;
}

template <class Objects>
ordered_json objects_json(const Objects& of, std::uint64_t bytes_of_all) {
    ordered_json all = ordered_json::array();
    for (const air::object_statistics& each : of)
        all.push_back(object_json(each, bytes_of_all));
    return all;
}

ordered_json directory_json(const air::directory_version& of) {
    ordered_json parameters = ordered_json::object();
    for (const auto& [id, value] : of.parameters)
        parameters[spi::hexadecimal(id, 2)] = all_bytes(value);
    ordered_json json = {{"frame", of.frame},
                         {"seconds", air::seconds_of(of.frame)},
                         {"transport_id", of.transport_id},
                         {"compressed", of.compressed},
                         {"objects", of.objects},
                         {"period_tenths", of.period_tenths},
                         {"segment_size", of.segment_size},
                         {"parameters", parameters}};
    const auto names = [&json](const char* what, const air::directory_version::names& changed) {
        json[what] = {{"count", changed.count}, {"names", changed.first}};
    };
    names("added", of.added);
    names("removed", of.removed);
    names("changed", of.changed);
    return json;
}

template <class Drop, class Counts>
void add_drops(ordered_json& to, const Counts& of, Drop end) {
    for (unsigned i = 0; i < static_cast<unsigned>(end); ++i)
        to[words_of(static_cast<Drop>(i)).key] = of.of(static_cast<Drop>(i));
}

ordered_json packets_json(const air::packet_counts& of) {
    ordered_json json = {{"cells", of.cells},
                         {"packets", of.packets},
                         {"padding", of.padding},
                         {"commands", of.commands},
                         {"groups", of.groups},
                         {"fec_packets", of.fec_packets},
                         {"fec_sets", of.fec_sets},
                         {"fec_sets_needed", of.fec_sets_used},
                         {"fec_sets_repaired", of.fec_sets_repaired},
                         {"fec_sets_absent", of.fec_sets_absent},
                         {"repaired_bytes", of.repaired_bytes}};
    add_drops(json["dropped"], of, air::packet_drop::count);
    return json;
}

}  // namespace

ordered_json carousel_json(const air::carousel_report& of, const air::packet_counts& packets) {
    const air::carousel_statistics& carousel = of.carousel;
    const std::uint64_t bytes_of_all = packets.cells * air::kCell;
    ordered_json json = {{"verdict", verdict_of(of, packets)},
                         {"mode", mode_key(carousel.mode)},
                         {"objects_listed", carousel.objects.size()},
                         {"objects_received", objects_received(carousel)},
                         {"cycle_seconds", seconds_if(carousel.cycle())}};
    json["objects"] = objects_json(carousel.objects, bytes_of_all);
    json["gone"] = objects_json(carousel.gone, bytes_of_all);
    json["gone_count"] = carousel.gone_count;
    ordered_json directories = ordered_json::array();
    for (const air::directory_version& each : carousel.directories)
        directories.push_back(directory_json(each));
    json["directories"] = directories;
    json["directory_versions"] = carousel.directory_versions;
    json["directory"] = receptions_json(carousel.directory_times);
    json["groups"] = carousel.counts.groups;
    json["group_bytes"] = carousel.counts.bytes;
    json["ca_messages"] = carousel.counts.ca_messages;
    json["header_updates"] = carousel.counts.header_updates;
    json["objects_handed_on"] = carousel.counts.objects;
    add_drops(json["dropped"], carousel.counts, air::carousel_drop::count);
    json["sub_channel_packets"] = packets_json(packets);
    return json;
}

}  // namespace dabspi::scan
