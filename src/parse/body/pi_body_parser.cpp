#include "src/parse/body/pi_body_parser.h"

#include <utility>

#include "src/parse/reader/spi_tags.h"

namespace spi {
namespace {

// An identifier counts only with a service identifier and an ECC.
bool is_set(const ServElemId& service) {
    return service.sid != 0 && service.ecc != 0;
}

no_service why_dropped(const EnsemblesNamed& by_object, const EnsemblesNamed& by_programme) {
    if (by_object.received || by_programme.received) return {no_service::zero_identifier, 0};
    for (const EnsemblesNamed& named : {by_object, by_programme})
        if (named.other) return {no_service::other_ensemble, named.first_other};
    return {no_service::not_named, 0};
}

}  // namespace

// scope (TS 102 371, element 0x24)
int PiScheduleScope::parse(spi_parseable& scope) {
    while (scope.has_more()) {
        spi_parseable child(scope);
        switch (child.tag) {
            case attribute::scope::start_time: start.parse(child); break;
            case attribute::scope::stop_time: stop.parse(child); break;
            case tag::service_scope: parse_seid(child, seid); break;
            default: break;  // passed over when `child` closes
        }
    }
    return 0;
}

// serviceScope (TS 102 371, element 0x25). The identifier is read from the attribute's content but bounded by
// the element: an attribute that is too short takes what follows it in the element. Deliberate.
int PiScheduleScope::parse_seid(spi_parseable& service_scope, ServElemId& service) {
    while (service_scope.has_more()) {
        spi_parseable attr(service_scope);
        if (attr.tag == attribute::service_scope::id) service.parse(service_scope, eid, &named);
    }
    return 0;
}

int PiScheduleScope::parse_content_id(spi_parseable& element) {
    seid.parse(element, eid, &named);
    return 0;
}

PiBodyParser::PiBodyParser(SpiBodyListener& listener, std::uint16_t eid) : eid_(eid), listener_(listener) {
    scope_.eid = eid;
}

int PiBodyParser::parse(MotBody&& body) {
    ReadBuffer buffer(std::move(body));
    while (buffer.in_body()) {
        spi_parseable element(buffer);
        if (element.tag == tag::epg) parse_epg(element);
    }
    return 0;
}

// epg (TS 102 371, element 0x02)
int PiBodyParser::parse_epg(spi_parseable& epg) {
    while (epg.has_more()) {
        spi_parseable child(epg);
        switch (child.tag) {
            case tag::token_table: tokens_.parse(child); break;
            case tag::default_content_id: scope_.parse_content_id(child); break;
            case tag::schedule: parse_schedule(child); break;
            default: break;  // passed over when `child` closes
        }
    }
    return 0;
}

// schedule (TS 102 371, element 0x21)
int PiBodyParser::parse_schedule(spi_parseable& schedule) {
    while (schedule.has_more()) {
        offset_ = schedule.buf.pos;
        spi_parseable child(schedule);
        switch (child.tag) {
            case tag::scope: scope_.parse(child); break;
            case tag::programme: parse_programme(child); break;
            default: break;  // passed over when `child` closes
        }
    }
    return 0;
}

int PiBodyParser::parse_programme(spi_parseable& element) {
    PiScheduleProgramme programme;
    programme.eid = eid_;
    EnsemblesNamed by_bearers;
    programme.parse(element, tokens_, &by_bearers);

    // The schedule's own service wins over the programme's bearer, whatever that says.
    const ServElemId service = is_set(scope_.seid) ? scope_.seid : programme.bearer;
    if (is_set(service)) {
        listener_.programme_read(service, std::move(programme), offset_);
    } else {
        listener_.programme_dropped(why_dropped(scope_.named, by_bearers), std::move(programme), offset_);
    }
    return 0;
}

}  // namespace spi
