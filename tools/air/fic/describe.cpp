// Joins what the FIGs said into the description of the ensemble.
#include <algorithm>

#include "tools/air/fic/fic_decoder.h"

namespace dabspi::air {

namespace {

template <class Map, class Key>
std::string text_of(const Map& labels, const Key& key) {
    const auto place = labels.find(key);
    return place == labels.end() ? std::string() : place->second;
}

// 0/8 says it; without it only the primary component's is known.
std::optional<std::uint8_t> scids_of(const configuration& in, std::uint32_t sid,
                                     const service_component& of) {
    const component_location wanted{of.mode == transport::packet, of.where};
    for (auto at = in.definitions.lower_bound({sid, 0}); at != in.definitions.end() && at->first.first == sid;
         ++at)
        if (at->second == wanted) return at->first.second;
    if (of.primary) return std::uint8_t{0};
    return std::nullopt;
}

}  // namespace

ensemble fic_decoder::describe() const {
    ensemble result;
    result.eid = eid_;
    result.ecc = clock_.ecc();
    result.label = label_;
    result.offset_half_hours = clock_.offset_half_hours();
    for (const auto& [id, organisation] : current_.sub_channels) {
        const auto scheme = current_.fec_schemes.find(id);
        result.sub_channels.push_back({id, organisation,
                                       scheme == current_.fec_schemes.end()
                                           ? std::nullopt
                                           : std::optional<std::uint8_t>(scheme->second)});
    }
    for (const auto& [sid, organisation] : current_.services) {
        described_service service;
        service.sid = sid;
        service.long_id = organisation.long_id;
        service.ca_system = organisation.ca_system;
        service.label = text_of(service_labels_, sid);
        for (const service_component& each : organisation.components) {
            described_component component;
            component.organisation = each;
            component.scids = scids_of(current_, sid, each);
            const auto packet = current_.packet_components.find(each.where);
            if (each.mode != transport::packet) {
                component.sub_channel = static_cast<std::uint8_t>(each.where);
            } else if (packet != current_.packet_components.end()) {
                component.packet = packet->second;
                component.sub_channel = packet->second.sub_channel;
            }
            if (component.scids) {
                const component_id id(sid, *component.scids);
                component.label = text_of(component_labels_, id);
                const auto applications = current_.user_applications.find(id);
                if (applications != current_.user_applications.end())
                    component.user_applications = applications->second;
            }
            service.components.push_back(std::move(component));
        }
        result.services.push_back(std::move(service));
    }
    return result;
}

}  // namespace dabspi::air
