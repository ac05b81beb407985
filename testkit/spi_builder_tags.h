// The tags of binary SPI objects (ETSI TS 102 371), by the standard's element and attribute names.
//
// These are the builder's own: nothing here comes from the code that reads the objects, so that a wrong tag
// on either side shows as a failing test instead of being wrong on both sides alike. An attribute's tag means
// something only inside its element (0x80 is a MIME type here and a content ID there), therefore attributes
// are grouped by element.
#pragma once

#include <cstdint>

namespace spi_builder {

namespace tag {
enum element : std::uint8_t {
    text = 0x01,
    epg = 0x02,
    service_information = 0x03,
    token_table = 0x04,
    default_content_id = 0x05,
    default_language = 0x06,
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
    service_bearer = 0x29,
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
    acquisition_time = 0x38
};
}  // namespace tag

namespace attribute {
namespace service_information {
enum : std::uint8_t { version = 0x80, creation_time = 0x81, originator = 0x82, service_provider = 0x83 };
}
namespace schedule {
enum : std::uint8_t { version = 0x80, creation_time = 0x81, originator = 0x82 };
}
namespace scope {
enum : std::uint8_t { start_time = 0x80, stop_time = 0x81 };
}
namespace service_scope {
enum : std::uint8_t { id = 0x80 };
}
namespace programme {
enum : std::uint8_t { id = 0x80, short_id = 0x81, version = 0x82, recommendation = 0x83, broadcast = 0x84 };
}
namespace name {
enum : std::uint8_t { language = 0x80 };
}
namespace time {
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
}  // namespace attribute

// Values of the multimedia element's type attribute.
enum logo_type : std::uint8_t { logo_unrestricted = 2, logo_colour_square = 4, logo_colour_rectangle = 6 };

}  // namespace spi_builder
