// Findings in announcements of logos: those that lead to nothing, whatever image comes.

#include <set>
#include <string>

#include "tools/check/input.h"
#include "tools/check/logo_text.h"
#include "tools/check/rules.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

using logo_name = std::pair<spi::ServElemId, std::string>;  // data service and content name

std::string called(const announced_service& service) {
    return service.name.empty() ? "the service at byte " + std::to_string(service.offset)
                                : in_quotes(service.name);
}

// Once for each service, not for each of its logos.
void note_station(const history& in, const announcement& of, finding what, finding_list& found) {
    const announced_service& service = in.services[of.service];
    what.byte = service.offset;
    const spi::logo_refusal refusal = spi::refusal_of_station(of.station);
    if (refusal == spi::logo_refusal::no_station) {
        what.code = finding_code::logo_no_station;
        const bool later = spi::refusal_of_station(service.service) != spi::logo_refusal::no_station;
        if (later) what.service = service.service;
        what.text = called(service) + ": " +
                    (later ? "its bearers stand behind its media" : "it has no bearer that counts");
    } else if (refusal == spi::logo_refusal::long_service_id) {
        what.code = finding_code::logo_32_bit;
        what.text = called(service) + ": " + service_text(of.station);
    } else {
        return;
    }
    found.add(what, std::to_string(service.offset));
}

void note_kind(const announcement& of, finding what, finding_list& found) {
    const std::string key = std::to_string(of.offset);
    what.text = logo_text(of);
    if (spi::refusal_of_format(of.format) != spi::logo_refusal::none) {
        what.code = of.format == spi::LOGO_FORMAT_JPEG ? finding_code::logo_jpeg : finding_code::logo_format;
        found.add(what, key);
    }
    if (spi::refusal_of_size(of.size_code) != spi::logo_refusal::none) {
        what.code = finding_code::logo_size;
        found.add(what, key);
    }
}

}  // namespace

void look_at_announcements(const history& in, finding_list& found) {
    std::set<logo_name> sent;
    std::map<std::string, spi::ServElemId> elsewhere;
    for (const image_arrival& each : in.images) {
        const sent_object& object = in.objects[each.object];
        sent.insert({object.data_service, object.content_name});
        elsewhere.emplace(object.content_name, object.data_service);
    }
    std::set<logo_name> missing;
    for (const announcement& each : in.announcements) {
        finding what{finding_code::logo_not_sent, each.line, each.object, each.offset};
        if (each.station.sid != 0) what.service = each.station;
        note_station(in, each, what, found);
        note_kind(each, what, found);
        const logo_name name{each.data_service, each.content_name};
        if (sent.count(name) != 0 || in.cannot_tell.count(each.content_name) != 0 ||
            !missing.insert(name).second)
            continue;
        what.code = finding_code::logo_not_sent;
        what.text = logo_text(each);
        const auto other = elsewhere.find(each.content_name);
        if (other != elsewhere.end())
            what.text += "; an image of this name came on data service " + service_text(other->second) +
                         ", not on " + service_text(each.data_service);
        found.add(what, each.content_name);
    }
}

}  // namespace dabspi::check
