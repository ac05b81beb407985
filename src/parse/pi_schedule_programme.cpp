#include "src/parse/pi_schedule_programme.h"

#include <tuple>

#include "src/parse/reader/spi_name.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_tags.h"
#include "src/parse/reader/spi_token_table.h"

namespace spi {

// programme (TS 102 371, element 0x1C)
int PiScheduleProgramme::parse(spi_parseable& programme, SpiTokenTable& tokens, EnsemblesNamed* named) {
    while (programme.has_more()) {
        spi_parseable child(programme);
        switch (child.tag) {
            case attribute::programme::short_id: parse_crid(child); break;
            // The long name wins over a medium name, in either order; short names are not read for
            // programmes.
            case tag::long_name: parse_name(child, tokens); break;
            case tag::medium_name:
                if (name.empty()) parse_name(child, tokens);
                break;
            case tag::location:
                parse_location(child, named);
                break;       // every one: what a later location codes wins
            default: break;  // passed over when `child` closes
        }
    }
    return 0;
}

int PiScheduleProgramme::parse_name(spi_parseable& name_element, SpiTokenTable& tokens) {
    read_name(name_element, tokens, name);
    return 0;
}

int PiScheduleProgramme::parse_crid(spi_parseable& attr) {
    // The 24-bit read itself wants a fourth byte in the body, see ReadBuffer::ru24.
    crid = attr.holds(3) ? attr.buf.ru24() : 0xFFFFFF;
    return 0;
}

// location (TS 102 371, element 0x19)
int PiScheduleProgramme::parse_location(spi_parseable& location, EnsemblesNamed* named) {
    while (location.has_more()) {
        spi_parseable child(location);
        switch (child.tag) {
            case tag::time: parse_time(child); break;
            case tag::bearer: parse_bearer(child, named); break;
            default: break;  // passed over when `child` closes
        }
    }
    return 0;
}

// time (TS 102 371, element 0x2C); actual times are not read
int PiScheduleProgramme::parse_time(spi_parseable& time_element) {
    while (time_element.has_more()) {
        spi_parseable attr(time_element);
        switch (attr.tag) {
            case attribute::time::time: time.parse(attr); break;
            // Bounded by the element, not by the attribute. Deliberate: an attribute of one byte takes the
            // next byte of the element as its second.
            case attribute::time::duration: duration = time_element.ru16(); break;
            default: break;
        }
    }
    return 0;
}

// bearer (TS 102 371, element 0x2D); one on another ensemble is ignored
int PiScheduleProgramme::parse_bearer(spi_parseable& bearer_element, EnsemblesNamed* named) {
    while (bearer_element.has_more()) {
        spi_parseable attr(bearer_element);
        if (attr.tag == attribute::bearer::id) bearer.parse(attr, eid, named);
    }
    return 0;
}

std::string PiScheduleProgramme::sig() const {
    return time.local_time(0).time() + " " + name + " (" + std::to_string(duration / 60) + "min)";
}

bool PiScheduleProgramme::match_tp(const MotDateTime& now) const {
    const auto key = [](const MotDateTime& t) {
        return std::make_tuple(t.year, t.month, t.day, t.hour, t.minute);
    };
    const auto at = key(now);
    return at >= key(time.local_time(0)) && at <= key(time.local_time(duration));
}

}  // namespace spi
