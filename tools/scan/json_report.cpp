#include <nlohmann/json.hpp>

#include "tools/air/fic/protection.h"
#include "tools/scan/report.h"

namespace dabspi::scan {

namespace {

using nlohmann::ordered_json;

std::string hex(unsigned long value, int digits) {
    char text[32];
    std::snprintf(text, sizeof text, "%0*lX", digits, value);
    return text;
}

std::string hex(const std::vector<std::uint8_t>& of) {
    std::string text;
    for (const std::uint8_t byte : of)
        text += hex(byte, 2);
    return text;
}

// Eight digits, also of 16-bit services.
std::string sid_text(std::uint32_t sid) {
    return hex(sid, 8);
}

template <class T>
ordered_json if_known(const std::optional<T>& of) {
    return of ? ordered_json(*of) : ordered_json();
}

const char* name_of(air::transport mode) {
    switch (mode) {
        case air::transport::audio: return "audio";
        case air::transport::stream_data: return "stream";
        case air::transport::packet: return "packet";
        case air::transport::reserved: break;
    }
    return "reserved";
}

ordered_json to_json(const air::described_component& of) {
    ordered_json json;
    json["mode"] = name_of(of.organisation.mode);
    json["type"] = of.packet ? of.packet->type : of.organisation.type;
    json["scids"] = if_known(of.scids);
    json["primary"] = of.organisation.primary;
    json["access_control"] = of.organisation.access_control;
    json["sub_channel"] = if_known(of.sub_channel);
    if (of.organisation.mode == air::transport::packet) {
        json["scid"] = of.organisation.where;
        json["address"] = of.packet ? ordered_json(of.packet->address) : ordered_json();
    }
    if (!of.label.empty()) json["label"] = of.label;
    ordered_json& applications = json["user_applications"] = ordered_json::array();
    for (const air::user_application& each : of.user_applications)
        applications.push_back({{"type", each.type}, {"data", hex(each.data)}});
    return json;
}

ordered_json services_of(const air::ensemble& of) {
    ordered_json all = ordered_json::array();
    for (const air::described_service& each : of.services) {
        ordered_json components = ordered_json::array();
        for (const air::described_component& component : each.components)
            components.push_back(to_json(component));
        all.push_back({{"sid", sid_text(each.sid)}, {"label", each.label}, {"components", components}});
    }
    return all;
}

ordered_json sub_channels_of(const air::ensemble& of) {
    ordered_json all = ordered_json::array();
    for (const air::described_sub_channel& each : of.sub_channels)
        all.push_back({{"id", each.id},
                       {"start", each.organisation.start},
                       {"size", each.organisation.size},
                       {"bit_rate", each.organisation.bit_rate},
                       {"protection", protection_text(each.organisation)},
                       {"fec", each.fec_scheme.value_or(0)}});
    return all;
}

ordered_json spi_of(const scanned_multiplex& of) {
    ordered_json all = ordered_json::array();
    for (const spi_found& each : of.spi) {
        ordered_json json = {
            {"sid", sid_text(each.what.sid)},  {"scids", each.what.scids},
            {"label", each.what.label},        {"sub_channel", each.what.sub_channel},
            {"address", each.what.address},    {"fec", each.what.fec_scheme},
            {"bit_rate", each.what.bit_rate},  {"application_data", hex(each.what.application_data)},
            {"first_frame", each.first_frame}, {"last_frame", each.last_frame}};
        const air::carousel_report* const carousel = of.carousel_of(each);
        json["carousel"] = carousel == nullptr
                               ? ordered_json()
                               : carousel_json(*carousel, of.packets_of(each.what.sub_channel));
        all.push_back(std::move(json));
    }
    return all;
}

ordered_json flows_of(const scanned_multiplex& of) {
    ordered_json all = ordered_json::array();
    for (std::size_t i = 0; i < of.flows.size(); ++i)
        all.push_back({{"destination", destination_text(of.flows[i].flow)},
                       {"kind", of.flows[i].fragments ? "pf" : "af"},
                       {"datagrams", of.flows[i].datagrams},
                       {"read", of.chosen == i}});
    return all;
}

ordered_json counters_of(const scanned_multiplex& of) {
    ordered_json json = ordered_json::object();
    for (const air::named_counter& each : air::loss_counters())
        json[each.key] = of.container.*each.value;
    for (const air::fic_counter& each : air::kFicLossCounters)
        json[each.key] = of.fic.*each.value;
    json["carousels_not_read"] = of.carousels_beyond_limit;
    return json;
}

ordered_json clock_of(const scanned_multiplex& of) {
    const auto text = [](const std::optional<air::local_minute>& minute) {
        return minute ? ordered_json(minute_text(*minute)) : ordered_json();
    };
    return {{"first", text(of.first_minute)}, {"last", text(of.last_minute)}};
}

}  // namespace

std::string json_report(const scanned_multiplex& of) {
    ordered_json json;
    json["input"] = of.name;
    json["form"] = short_name(of.form.kind);
    json["interrupted"] = of.interrupted;
    json["frames"] = of.container.frames;
    json["frames_missing"] = of.container.frames_missing;
    json["frames_damaged"] = of.container.frames_damaged;
    json["seconds"] = of.seconds();
    json["clock"] = clock_of(of);
    json["ensemble"] = {{"eid", of.ensemble.eid ? ordered_json(hex(*of.ensemble.eid, 4)) : ordered_json()},
                        {"ecc", of.ensemble.ecc ? ordered_json(hex(*of.ensemble.ecc, 2)) : ordered_json()},
                        {"label", of.ensemble.label},
                        {"lto_half_hours", if_known(of.ensemble.offset_half_hours)},
                        {"reconfigurations", of.fic.reconfigurations}};
    json["services"] = services_of(of.ensemble);
    json["sub_channels"] = sub_channels_of(of.ensemble);
    json["spi"] = spi_of(of);
    json["spi_unreadable"] = of.unreadable_spi;
    if (!of.flows.empty()) json["flows"] = flows_of(of);
    json["counters"] = counters_of(of);
    // The input's name may be any bytes.
    return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace dabspi::scan
