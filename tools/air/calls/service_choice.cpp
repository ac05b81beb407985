#include "tools/air/calls/service_choice.h"

#include <algorithm>
#include <cctype>

#include "tools/text/dab_identifier.h"
#include "tools/text/utf8.h"

namespace dabspi::air {

namespace {

// Letters beyond ASCII are compared as they are.
std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

service_id id_of(const described_service& service, const ensemble& in) {
    service_id id;
    id.sid = service.sid;
    id.ecc = service.long_id ? static_cast<std::uint8_t>(service.sid >> 24) : in.ecc.value_or(0);
    return id;
}

bool is_audio(const described_service& service) {
    return std::any_of(service.components.begin(), service.components.end(),
                       [](const described_component& each) {
                           return each.organisation.mode == transport::audio && each.organisation.primary;
                       });
}

bool is_meant(const dab_identifier& wanted, const service_id& id) {
    return wanted.sid == id.sid && (!wanted.ecc || *wanted.ecc == id.ecc);
}

}  // namespace

std::vector<service_id> audio_services(const ensemble& in) {
    std::vector<service_id> all;
    for (const described_service& each : in.services)
        if (is_audio(each)) all.push_back(id_of(each, in));
    return all;
}

std::optional<service_id> choose_service(const ensemble& in, const std::string& wanted) {
    if (wanted.empty()) {
        const std::vector<service_id> all = audio_services(in);
        return all.empty() ? std::nullopt : std::optional(all.front());
    }
    if (const auto identifier = dab_identifier::of_service(wanted))
        for (const described_service& each : in.services) {
            service_id id = id_of(each, in);
            if (!is_meant(*identifier, id)) continue;
            id.scids = identifier->scids.value_or(0);
            return id;
        }
    for (const described_service& each : in.services)
        if (folded(each.label) == folded(wanted)) return id_of(each, in);
    return std::nullopt;
}

std::string services_text(const ensemble& in) {
    std::string text;
    for (const described_service& each : in.services)
        text += (text.empty() ? "" : ", ") + service_id_text(each.sid, each.long_id) +
                (each.label.empty() ? "" : " " + printable(each.label));
    return text;
}

service_id data_service_of(const spi_component& component, std::uint8_t ecc) {
    service_id id;
    id.ecc = component.long_id ? static_cast<std::uint8_t>(component.sid >> 24) : ecc;
    id.sid = component.long_id ? component.sid : std::uint32_t{ecc} << 24 | component.sid;
    id.scids = component.scids;
    return id;
}

}  // namespace dabspi::air
