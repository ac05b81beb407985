// Element and attribute tags of binary SPI objects (ETSI TS 102 371) that the library reads. Attribute tags
// mean something else in each element, so they are grouped by element.
#pragma once

#include <cstdint>

namespace spi {

enum spi_tag : std::uint8_t {
    TAG_CDATA = 0x01,                // the text of names
    TAG_EPG = 0x02,                  // top of a programme information object
    TAG_SERVICE_INFORMATION = 0x03,  // top of a service information object
    TAG_TOKEN_TABLE = 0x04,
    TAG_DEFAULT_CONTENT_ID = 0x05,
    TAG_SHORT_NAME = 0x10,
    TAG_MEDIUM_NAME = 0x11,
    TAG_LONG_NAME = 0x12,
    TAG_MEDIA_DESCRIPTION = 0x13,
    TAG_LOCATION = 0x19,
    TAG_PROGRAMME = 0x1C,
    TAG_SCHEDULE = 0x21,
    TAG_SCOPE = 0x24,
    TAG_SERVICE_SCOPE = 0x25,
    TAG_ENSEMBLE = 0x26,
    TAG_SERVICE = 0x28,
    TAG_SERVICE_BEARER = 0x29,
    TAG_MULTIMEDIA = 0x2B,
    TAG_TIME = 0x2C,
    TAG_BEARER = 0x2D,

    // scope
    TAG_SCOPE_START_TIME = 0x80,
    TAG_SCOPE_STOP_TIME = 0x81,
    // serviceScope
    TAG_SERVICE_SCOPE_ID = 0x80,
    // programme
    TAG_PROGRAMME_SHORT_ID = 0x81,
    // time (of a location)
    TAG_TIME_TIME = 0x80,
    TAG_TIME_DURATION = 0x81,
    // bearer, of a location and of a service
    TAG_BEARER_ID = 0x80,
    // multimedia
    TAG_MULTIMEDIA_MIME_VALUE = 0x80,
    TAG_MULTIMEDIA_URL = 0x82,
    TAG_MULTIMEDIA_TYPE = 0x83,
    TAG_MULTIMEDIA_WIDTH = 0x84,
    TAG_MULTIMEDIA_HEIGHT = 0x85,
};

}  // namespace spi
