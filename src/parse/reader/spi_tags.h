// The tags of binary SPI objects (ETSI TS 102 371), by the standard's element and attribute names: the one
// table of this system. The library reads some of them only. An attribute's tag means something only inside
// its element (0x80 is a MIME type here and a content ID there), therefore attributes are grouped by element.
#pragma once

#include <cstdint>

namespace spi {

namespace tag {
enum element : std::uint8_t {
    text = 0x01,  // the text of an element ("CDATA")
    epg = 0x02,
    service_information = 0x03,
    token_table = 0x04,         // not in XML
    default_content_id = 0x05,  // not in XML
    default_language = 0x06,    // in XML the top element's xml:lang
    short_name = 0x10,
    medium_name = 0x11,
    long_name = 0x12,
    media_description = 0x13,
    genre = 0x14,
    keywords = 0x16,
    member_of = 0x17,
    link = 0x18,
    location = 0x19,
    short_description = 0x1A,
    long_description = 0x1B,
    programme = 0x1C,
    programme_groups = 0x20,
    schedule = 0x21,
    programme_group = 0x23,
    scope = 0x24,
    service_scope = 0x25,
    ensemble = 0x26,
    service = 0x28,
    service_bearer = 0x29,  // in XML "bearer", like 0x2D
    multimedia = 0x2B,
    time = 0x2C,
    bearer = 0x2D,
    programme_event = 0x2E,
    relative_time = 0x2F,
    radiodns = 0x31,
    geolocation = 0x32,
    country = 0x33,
    point = 0x34,
    polygon = 0x35,
    on_demand = 0x36,
    presentation_time = 0x37,
    acquisition_time = 0x38,

    first_attribute = 0x80,  // this and all above are attributes
};
}  // namespace tag

namespace attribute {
namespace service_information {
enum : std::uint8_t { version = 0x80, creation_time = 0x81, originator = 0x82, service_provider = 0x83 };
}
namespace schedule {  // and of programmeGroups
enum : std::uint8_t { version = 0x80, creation_time = 0x81, originator = 0x82 };
}
namespace programme_group {
enum : std::uint8_t { id = 0x80, short_id = 0x81, version = 0x82, type = 0x83, items = 0x84 };
}
namespace scope {
enum : std::uint8_t { start_time = 0x80, stop_time = 0x81 };
}
namespace service_scope {
enum : std::uint8_t { id = 0x80 };
}
namespace programme {  // and of programmeEvent
enum : std::uint8_t {
    id = 0x80,
    short_id = 0x81,
    version = 0x82,
    recommendation = 0x83,
    broadcast = 0x84,
    language = 0x86
};
}
namespace name {  // and of every other text
enum : std::uint8_t { language = 0x80 };
}
namespace genre {
enum : std::uint8_t { href = 0x80, type = 0x81 };
}
namespace member_of {
enum : std::uint8_t { id = 0x80, short_id = 0x81, index = 0x82 };
}
namespace link {
enum : std::uint8_t { uri = 0x80, mime = 0x81, language = 0x82, description = 0x83, expiry_time = 0x84 };
}
namespace time {  // and of relativeTime
enum : std::uint8_t { time = 0x80, duration = 0x81, actual_time = 0x82, actual_duration = 0x83 };
}
namespace bearer {  // of a programme's location
enum : std::uint8_t { id = 0x80, url = 0x82 };
}
namespace ensemble {
enum : std::uint8_t { id = 0x80 };
}
namespace service {
enum : std::uint8_t { version = 0x80 };
}
namespace service_bearer {
enum : std::uint8_t { id = 0x80, url = 0x82 };
}
namespace multimedia {
enum : std::uint8_t { mime = 0x80, language = 0x81, url = 0x82, type = 0x83, width = 0x84, height = 0x85 };
}
namespace radiodns {
enum : std::uint8_t { fqdn = 0x80, service_identifier = 0x81 };
}
namespace geolocation {
enum : std::uint8_t { id = 0x80, ref = 0x81 };
}
namespace presentation_time {
enum : std::uint8_t { start = 0x80, end = 0x81, duration = 0x82 };
}
namespace acquisition_time {
enum : std::uint8_t { start = 0x80, end = 0x81 };
}
}  // namespace attribute

// Values of the multimedia element's type attribute.
enum logo_type : std::uint8_t { logo_unrestricted = 2, logo_colour_square = 4, logo_colour_rectangle = 6 };

}  // namespace spi
