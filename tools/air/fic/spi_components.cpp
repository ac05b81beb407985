// Where the SPI of an ensemble is.
#include <algorithm>
#include <cstdio>

#include "tools/air/fic/ensemble.h"

namespace dabspi::air {

namespace {

constexpr std::uint16_t kSpiApplication = 7;
constexpr std::uint8_t kMot = 60;  // DSCTy

const user_application* spi_of(const described_component& of) {
    for (const user_application& each : of.user_applications)
        if (each.type == kSpiApplication) return &each;
    return nullptr;
}

// Why its SPI cannot be read; empty if it can, or as long as not all is known.
std::string obstacle(const described_component& of) {
    if (of.organisation.access_control) return "is under access control";
    if (of.organisation.mode == transport::audio)
        return "is in the X-PAD of an audio component, which is not read";
    if (of.organisation.mode != transport::packet) return "is not in packet mode";
    if (of.packet && of.packet->type != kMot) return "is not carried by MOT";
    if (of.packet && !of.packet->data_groups) return "is carried without data groups";
    return {};
}

const described_sub_channel* find(const ensemble& in, std::uint8_t id) {
    for (const described_sub_channel& each : in.sub_channels)
        if (each.id == id) return &each;
    return nullptr;
}

}  // namespace

std::string service_id_text(std::uint32_t sid, bool long_id) {
    char text[16];
    std::snprintf(text, sizeof text, long_id ? "%08X" : "%04X", static_cast<unsigned>(sid));
    return text;
}

std::vector<spi_component> spi_components(const ensemble& of) {
    std::vector<spi_component> all;
    for (const described_service& service : of.services)
        for (const described_component& each : service.components) {
            const user_application* const application = spi_of(each);
            if (application == nullptr || !each.packet || !obstacle(each).empty()) continue;
            spi_component found;
            found.sid = service.sid;
            found.long_id = service.long_id;
            found.scids = each.scids.value_or(0);
            found.label = service.label;
            found.sub_channel = each.packet->sub_channel;
            found.address = each.packet->address;
            if (const described_sub_channel* const in = find(of, found.sub_channel)) {
                found.fec_scheme = in->fec_scheme.value_or(0);
                found.bit_rate = in->organisation.bit_rate;
            }
            found.application_data = application->data;
            all.push_back(found);
        }
    std::stable_sort(all.begin(), all.end(), [](const spi_component& a, const spi_component& b) {
        return a.sid != b.sid ? a.sid < b.sid : a.scids < b.scids;
    });
    return all;
}

std::vector<std::string> unreadable_spi(const ensemble& of) {
    std::vector<std::string> all;
    for (const described_service& service : of.services)
        for (const described_component& each : service.components) {
            const std::string why = spi_of(each) == nullptr ? "" : obstacle(each);
            if (!why.empty())
                all.push_back("the SPI of service " + service_id_text(service.sid, service.long_id) + " " +
                              why);
        }
    return all;
}

}  // namespace dabspi::air
