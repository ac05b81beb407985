// The header of one MOT object (EN 301 234, 6.1, 6.2; TS 102 371, 6.4). Pure functions, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/air/mot/mot_parameters.h"

namespace dabspi::air {

// What a MOT parameter is called in table 2.
enum class header_parameter : std::uint8_t {
    expiration = 0x09,
    priority = 0x0A,
    content_name = 0x0C,
    unique_body_version = 0x0D,
    mime_type = 0x10,
    compression_type = 0x11,
    ca_info = 0x23,
    scope_start = 0x25,
    scope_end = 0x26,
    scope_id = 0x27
};

constexpr std::uint8_t kGzip = 1;  // CompressionType

struct object_header {
    std::uint32_t body_size = 0;        // bytes, as sent
    std::uint8_t content_type = 0;      // 0..63
    std::uint16_t content_subtype = 0;  // 0..511
    // ContentName as UTF-8, whatever `name_charset` (0 EBU Latin, 4 ISO 8859-1, 15 UTF-8) it came in.
    std::optional<std::string> name;
    std::uint8_t name_charset = 0;
    std::string mime_type;
    std::optional<std::uint8_t> compression;
    std::optional<std::uint32_t> unique_body_version;
    std::optional<std::uint8_t> priority;
    std::optional<mot_time> expires;
    std::optional<std::uint8_t> expires_after;  // as coded, for an expiration relative to the reception
    bool scrambled = false;                     // CAInfo is there
    // The numbers of these belong to the user application: they are what they say for SPI.
    std::optional<mot_time> scope_start;
    std::optional<mot_time> scope_end;
    std::vector<std::uint8_t> scope_id;
    std::vector<std::uint8_t> parameters;  // all of them, as sent: parameters_of() reads them

    // Not an object, but other parameters for one that was sent before (7.1).
    bool is_update() const { return content_type == 5 && content_subtype == 0 && body_size == 0; }
};

// The header at the beginning of `from`. Returns its size, or 0 when it does not fit or is ill-formed; a
// parameter that reaches beyond its end makes it so.
std::size_t read_object_header(byte_view from, object_header& read);

// The parameters of `update` replace those of `header`; what it says of the body stays.
void apply_update(object_header& header, const object_header& update);

// Ill-formed UTF-8, and a character set that is not one of a name, are read as ISO 8859-1.
std::string name_as_utf8(std::uint8_t charset, byte_view text);

}  // namespace dabspi::air
